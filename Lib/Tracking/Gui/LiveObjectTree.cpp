#include "Tracking/Gui/LiveObjectTree.h"

#include <QStringList>

namespace Velkor::KT::Tracking
{

namespace
{

QString Segment(const QObject* object)
{
    const QString name = object->objectName();
    return name.isEmpty() ? QLatin1Char('(') + QLatin1String(object->metaObject()->className()) +
                                QLatin1Char(')')
                          : name;
}

}  // namespace

QString LiveObjectTree::Path(Node node)
{
    return ObjectPath(node);
}

QString ObjectPath(const QObject* object)
{
    QStringList segments;
    for (; object; object = object->parent())
    {
        QString segment = Segment(object);
        if (const QObject* parent = object->parent())
        {
            int same = 1;
            for (const QObject* sibling : parent->children())
            {
                if (sibling == object)
                {
                    break;
                }
                same += Segment(sibling) == segment ? 1 : 0;
            }
            if (same > 1)
            {
                segment += QLatin1Char('#') + QString::number(same);
            }
        }
        segments.prepend(segment);
    }
    return segments.join(QLatin1Char('/'));
}

}  // namespace Velkor::KT::Tracking
