#pragma once

#include <QByteArray>
#include <QHash>
#include <QJsonDocument>
#include <QMetaObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <deque>
#include <memory>
#include <optional>
#include <vector>

class QJsonObject;
class QObject;

namespace Velkor::KT::Tracking::Gui
{

// One object of a dumped tree.
struct DumpedNode
{
    QString name;
    QString path;
    QString className;
    QStringList classChain;
    // Every signal of its class and the classes it inherits, normalised, without code prefix.
    const QSet<QByteArray>* signatures = nullptr;
    // The paths of a widget's actions.
    QStringList actions;
    // Its dynamic properties, and an action's Qt properties, as text.
    QHash<QString, QString> properties;
    std::vector<const DumpedNode*> children;
};

// A tree dump (see "Tracking/Gui/ObjectTree.h") read back. Each object of the dump is one node,
// also when the tree of another root holds it.
class DumpedTree
{
public:
    // Null, with the reason in `error`, for a document that is not such a tree (a missing or
    // mistyped member, a reference to an object the dump does not hold, a cycle).
    static std::unique_ptr<DumpedTree> Read(const QJsonDocument& document, QString& error);

    const std::vector<const DumpedNode*>& Roots() const { return m_roots; }
    // The actions that the roots list, each once, in the order they are first listed.
    const std::vector<const DumpedNode*>& RootActions() const { return m_rootActions; }

private:
    class Reader;

    std::deque<DumpedNode> m_nodes;
    std::deque<QSet<QByteArray>> m_signatures;
    std::vector<const DumpedNode*> m_roots;
    std::vector<const DumpedNode*> m_rootActions;
};

// A dumped tree as the section walk, the object search and the report recorder read it: classes
// are known by name.
struct DumpedObjectTree
{
    using Node = const DumpedNode*;
    using Class = const char*;

    static Class ClassOf(const QMetaObject& meta) { return meta.className(); }
    static QString Name(Node node) { return node->name; }
    static bool IsA(Node node, Class type)
    {
        return node->classChain.contains(QLatin1String(type));
    }

    template <class Visit>
    static void ForEachDescendant(Node node, const Visit& visit)
    {
        for (Node child : node->children)
        {
            visit(child);
            ForEachDescendant(child, visit);
        }
    }

    static QObject* Object(Node) { return nullptr; }
    static QString Path(Node node) { return node->path; }
    static QString ClassName(Node node) { return node->className; }
    static bool HasSignal(Node node, const QByteArray& signature)
    {
        return node->signatures && node->signatures->contains(signature);
    }
    static std::optional<QString> Property(Node node, const QByteArray& name)
    {
        const auto found = node->properties.constFind(QString::fromUtf8(name));
        return found == node->properties.constEnd() ? std::nullopt : std::optional<QString>(*found);
    }
};

}  // namespace Velkor::KT::Tracking::Gui
