#include "Tracking/Gui/AttachedMarker_p.h"
#include "Tracking/Gui/LiveObjectTree_p.h"
#include "Tracking/Gui/ObjectTree.h"

#include <QAction>
#include <QApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QSet>
#include <QWidget>

namespace Velkor::KT::Tracking
{

namespace
{

class TreeWriter
{
public:
    explicit TreeWriter(const QObjectList& roots) : m_roots(roots.begin(), roots.end()) {}

    QJsonObject Root(QObject* root) { return Object(root); }

    // Actions that widgets list and that no dumped tree holds.
    QJsonArray OtherObjects()
    {
        QJsonArray others;
        for (int i = 0; i < m_listedActions.size(); ++i)
        {
            QObject* action = m_listedActions.at(i);
            if (!m_written.contains(action))
            {
                others.append(Object(action));
            }
        }
        return others;
    }

    QJsonObject Classes() const { return m_classes; }

private:
    QJsonObject Object(QObject* object)
    {
        m_written.insert(object);
        QJsonObject node;
        node.insert("objectName", object->objectName());
        node.insert("className", QLatin1String(object->metaObject()->className()));
        QJsonArray chain;
        for (const QMetaObject* meta = object->metaObject(); meta; meta = meta->superClass())
        {
            chain.append(QLatin1String(meta->className()));
            AddClass(*meta);
        }
        node.insert("classChain", chain);
        const QString path = ObjectPath(object);
        node.insert("path", path);
        node.insert("parentPath", object->parent() ? ObjectPath(object->parent()) : QString());
        QJsonObject properties;
        // An action's own properties too: conditions of action entries may name them.
        if (qobject_cast<QAction*>(object))
        {
            const QMetaObject* meta = object->metaObject();
            for (int i = 0; i < meta->propertyCount(); ++i)
            {
                const QMetaProperty property = meta->property(i);
                if (property.isReadable())
                {
                    properties.insert(QLatin1String(property.name()),
                                      property.read(object).toString());
                }
            }
        }
        for (const QByteArray& name : object->dynamicPropertyNames())
        {
            if (!name.startsWith("_q_"))
            {
                properties.insert(QString::fromUtf8(name), object->property(name).toString());
            }
        }
        node.insert("properties", properties);
        if (object->isWidgetType())
        {
            QJsonArray actions;
            for (QAction* action : static_cast<QWidget*>(object)->actions())
            {
                actions.append(ObjectPath(action));
                if (!m_listedActions.contains(action))
                {
                    m_listedActions.append(action);
                }
            }
            node.insert("actions", actions);
        }
        QJsonArray children;
        for (QObject* child : object->children())
        {
            children.append(m_roots.contains(child) ? QJsonObject{{"seeRoot", ObjectPath(child)}}
                                                    : Object(child));
        }
        node.insert("children", children);
        return node;
    }

    void AddClass(const QMetaObject& meta)
    {
        const QString name = QLatin1String(meta.className());
        if (m_classes.contains(name))
        {
            return;
        }
        QJsonArray signalList;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        {
            const QMetaMethod method = meta.method(i);
            if (method.methodType() == QMetaMethod::Signal)
            {
                signalList.append(QString::fromLatin1(method.methodSignature()));
            }
        }
        QJsonObject entry{{"signals", signalList}};
        if (const QMetaObject* super = meta.superClass())
        {
            entry.insert("superClass", QLatin1String(super->className()));
        }
        m_classes.insert(name, entry);
    }

    const QSet<QObject*> m_roots;
    QSet<QObject*> m_written;
    QObjectList m_listedActions;
    QJsonObject m_classes;
};

}  // namespace

QJsonDocument DumpObjectTree(const QObjectList& roots)
{
    TreeWriter writer(roots);
    QJsonArray rootArray;
    for (QObject* root : roots)
    {
        rootArray.append(writer.Root(root));
    }
    QJsonObject document{{"format", "KtTracking object tree"}, {"version", 1}};
    document.insert("roots", rootArray);
    document.insert("otherObjects", writer.OtherObjects());
    document.insert("classes", writer.Classes());
    return QJsonDocument(document);
}

QJsonDocument DumpTopLevelWidgets()
{
    QObjectList roots;
    for (QWidget* widget : QApplication::topLevelWidgets())
    {
        if (!IsLibraryWindow(widget))
        {
            roots.append(widget);
        }
    }
    return DumpObjectTree(roots);
}

}  // namespace Velkor::KT::Tracking
