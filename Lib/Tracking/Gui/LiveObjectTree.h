#pragma once

#include "Tracking/Gui/ObjectSearch.h"

#include <QList>
#include <QMetaObject>
#include <QObject>

#include <vector>

namespace Velkor::KT::Tracking
{

// The running application's object tree as the object search reads it: classes are meta-objects,
// descendants are visited in the order QObject::findChildren() lists them.
struct LiveObjectTree
{
    using Node = QObject*;
    using Class = const QMetaObject*;

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
};

// Every object of class T that the entry's id path names, starting at `start`.
template <class T>
std::vector<T*> FindObjects(QObject* start, const Config::Object& entry)
{
    const std::vector<QObject*> found = ObjectSearch<LiveObjectTree>::Find(
        start, IdPath::Of(entry), &QObject::staticMetaObject, &T::staticMetaObject);
    std::vector<T*> matches;
    matches.reserve(found.size());
    for (QObject* object : found)
    {
        matches.push_back(static_cast<T*>(object));
    }
    return matches;
}

}  // namespace Velkor::KT::Tracking
