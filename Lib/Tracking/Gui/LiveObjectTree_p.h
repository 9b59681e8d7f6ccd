#pragma once

#include "Tracking/Gui/ObjectSearch_p.h"

#include <QByteArray>
#include <QList>
#include <QMetaObject>
#include <QObject>
#include <QString>
#include <QVariant>

#include <optional>

namespace Velkor::KT::Tracking
{

// The running application's object tree as the object search (ObjectSearch.h) and the attach
// report (ReportRecorder.h) read it: classes are meta-objects, descendants are visited in the
// order QObject::findChildren() lists them.
struct LiveObjectTree
{
    using Node = QObject*;
    using Class = const QMetaObject*;

    static Class ClassOf(const QMetaObject& meta) { return &meta; }
    static QString Name(Node node) { return node->objectName(); }
    static bool IsA(Node node, Class type) { return type->cast(node) != nullptr; }

    template <class Visit>
    static void ForEachDescendant(Node node, const Visit& visit)
    {
        for (QObject* child : node->children())
        {
            visit(child);
            ForEachDescendant(child, visit);
        }
    }

    static QObject* Object(Node node) { return node; }
    static QString Path(Node node);
    static QString ClassName(Node node) { return QLatin1String(node->metaObject()->className()); }
    // `signature` normalised, without the code prefix.
    static bool HasSignal(Node node, const QByteArray& signature)
    {
        return node->metaObject()->indexOfSignal(signature.constData()) >= 0;
    }
    // A Qt or dynamic property as text; none when the object has no such property.
    static std::optional<QString> Property(Node node, const QByteArray& name)
    {
        const QVariant value = node->property(name.constData());
        return value.isValid() ? std::optional<QString>(value.toString()) : std::nullopt;
    }
};

// The path of an object in reports and tree dumps: object names from the top of its tree down,
// joined by "/". An object without a name stands as its class name in parentheses; the second
// and later of siblings that would stand alike get "#2", "#3", ... ("MainWindow/(QWidget)#2").
QString ObjectPath(const QObject* object);

}  // namespace Velkor::KT::Tracking
