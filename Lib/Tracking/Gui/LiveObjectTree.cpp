#include "Tracking/Gui/LiveObjectTree_p.h"

#include <QStringList>

#include <cstring>

namespace Velkor::KT::Tracking
{

namespace
{

// Whether two objects stand alike in a path: by their names, or by their classes when both
// have none.
bool StandAlike(const QObject* a, const QString& name, const QObject* b)
{
    const QString other = b->objectName();
    if (!name.isEmpty() || !other.isEmpty())
    {
        return name == other;
    }
    return std::strcmp(a->metaObject()->className(), b->metaObject()->className()) == 0;
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
        const QString name = object->objectName();
        QString segment = name.isEmpty() ? QLatin1Char('(') +
                                               QLatin1String(object->metaObject()->className()) +
                                               QLatin1Char(')')
                                         : name;
        if (const QObject* parent = object->parent())
        {
            int same = 1;
            for (const QObject* sibling : parent->children())
            {
                if (sibling == object)
                {
                    break;
                }
                same += StandAlike(object, name, sibling) ? 1 : 0;
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
