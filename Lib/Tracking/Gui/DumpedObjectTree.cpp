#include "Tracking/Gui/DumpedObjectTree_p.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>

#include <map>
#include <set>
#include <utility>

namespace Velkor::KT::Tracking::Gui
{

namespace
{

// Thrown inside the reader with the reason a document cannot be read.
struct Unreadable
{
    QString reason;
};

[[noreturn]] void Fail(const QString& where, const QString& what)
{
    throw Unreadable{where + QStringLiteral(": ") + what};
}

QString String(const QJsonObject& object, const char* key, const QString& where)
{
    const QJsonValue value = object.value(QLatin1String(key));
    if (!value.isString())
    {
        Fail(where, QStringLiteral("\"%1\" is missing or not a string").arg(QLatin1String(key)));
    }
    return value.toString();
}

QStringList Strings(const QJsonObject& object, const char* key, const QString& where, bool required)
{
    const QJsonValue value = object.value(QLatin1String(key));
    if (value.isUndefined() && !required)
    {
        return {};
    }
    if (!value.isArray())
    {
        Fail(where, QStringLiteral("\"%1\" is missing or not an array").arg(QLatin1String(key)));
    }
    QStringList strings;
    for (const QJsonValue item : value.toArray())
    {
        if (!item.isString())
        {
            Fail(where, QStringLiteral("\"%1\" holds a value that is not a string")
                            .arg(QLatin1String(key)));
        }
        strings.append(item.toString());
    }
    return strings;
}

// An object of texts; optional.
QHash<QString, QString> Texts(const QJsonObject& object, const char* key, const QString& where)
{
    const QJsonValue value = object.value(QLatin1String(key));
    QHash<QString, QString> texts;
    if (value.isUndefined())
    {
        return texts;
    }
    if (!value.isObject())
    {
        Fail(where, QStringLiteral("\"%1\" is not an object").arg(QLatin1String(key)));
    }
    const QJsonObject members = value.toObject();
    for (auto it = members.constBegin(); it != members.constEnd(); ++it)
    {
        if (!it.value().isString())
        {
            Fail(where, QStringLiteral("\"%1\" holds a value that is not a string")
                            .arg(QLatin1String(key)));
        }
        texts.insert(it.key(), it.value().toString());
    }
    return texts;
}

QJsonArray Array(const QJsonObject& object, const char* key, const QString& where)
{
    const QJsonValue value = object.value(QLatin1String(key));
    if (value.isUndefined())
    {
        return {};
    }
    if (!value.isArray())
    {
        Fail(where, QStringLiteral("\"%1\" is not an array").arg(QLatin1String(key)));
    }
    return value.toArray();
}

}  // namespace

class DumpedTree::Reader
{
public:
    Reader(DumpedTree& tree, const QJsonObject& document) : m_tree(tree)
    {
        const QJsonValue classes = document.value(QStringLiteral("classes"));
        if (!classes.isObject())
        {
            Fail(QStringLiteral("classes"), QStringLiteral("missing or not an object"));
        }
        m_classes = classes.toObject();
    }

    DumpedNode* Node(const QJsonValue& value, const QString& where)
    {
        if (!value.isObject())
        {
            Fail(where, QStringLiteral("not an object"));
        }
        const QJsonObject object = value.toObject();
        m_tree.m_nodes.emplace_back();
        DumpedNode& node = m_tree.m_nodes.back();
        node.name = String(object, "objectName", where);
        node.className = String(object, "className", where);
        node.path = String(object, "path", where);
        node.classChain = Strings(object, "classChain", where, true);
        node.actions = Strings(object, "actions", where, false);
        node.properties = Texts(object, "properties", where);
        node.signatures = &Signatures(node.classChain);
        if (!m_byPath.contains(node.path))
        {
            m_byPath.insert(node.path, &node);
        }
        const QJsonArray children = Array(object, "children", where);
        for (int i = 0; i < children.size(); ++i)
        {
            const QString at = where + QStringLiteral(".children[%1]").arg(i);
            const QJsonObject child = children.at(i).toObject();
            if (child.contains(QStringLiteral("seeRoot")))
            {
                m_references.push_back({&node, String(child, "seeRoot", at), at});
                node.children.push_back(nullptr);
            }
            else
            {
                node.children.push_back(Node(children.at(i), at));
            }
        }
        return &node;
    }

    // Resolves the references to roots, and refuses a reference that would make a cycle.
    void Resolve()
    {
        for (const Reference& reference : m_references)
        {
            const DumpedNode* target = Find(reference.path, reference.where);
            for (const DumpedNode*& child : reference.parent->children)
            {
                if (!child)
                {
                    child = target;
                    break;
                }
            }
        }
        std::set<const DumpedNode*> done;
        for (const DumpedNode& node : m_tree.m_nodes)
        {
            std::set<const DumpedNode*> above;
            CheckAcyclic(&node, above, done);
        }
    }

    const DumpedNode* Find(const QString& path, const QString& where) const
    {
        const DumpedNode* node = m_byPath.value(path);
        if (!node)
        {
            Fail(where, QStringLiteral("no object with the path '%1'").arg(path));
        }
        return node;
    }

private:
    struct Reference
    {
        DumpedNode* parent;
        QString path;
        QString where;
    };

    const QSet<QByteArray>& Signatures(const QStringList& chain)
    {
        const QString key = chain.join(QLatin1Char(' '));
        const auto found = m_signatures.find(key);
        if (found != m_signatures.end())
        {
            return *found->second;
        }
        QSet<QByteArray> signatures;
        for (const QString& className : chain)
        {
            const QJsonObject type = m_classes.value(className).toObject();
            const QString at = QStringLiteral("classes.") + className;
            for (const QString& signature : Strings(type, "signals", at, false))
            {
                signatures.insert(signature.toLatin1());
            }
        }
        m_tree.m_signatures.push_back(std::move(signatures));
        m_signatures.emplace(key, &m_tree.m_signatures.back());
        return m_tree.m_signatures.back();
    }

    void CheckAcyclic(const DumpedNode* node, std::set<const DumpedNode*>& above,
                      std::set<const DumpedNode*>& done) const
    {
        if (done.count(node))
        {
            return;
        }
        if (!above.insert(node).second)
        {
            Fail(node->path, QStringLiteral("the object holds itself"));
        }
        for (const DumpedNode* child : node->children)
        {
            CheckAcyclic(child, above, done);
        }
        above.erase(node);
        done.insert(node);
    }

    DumpedTree& m_tree;
    QJsonObject m_classes;
    QHash<QString, const DumpedNode*> m_byPath;
    std::map<QString, const QSet<QByteArray>*> m_signatures;
    std::vector<Reference> m_references;
};

std::unique_ptr<DumpedTree> DumpedTree::Read(const QJsonDocument& document, QString& error)
{
    const QJsonObject root = document.object();
    if (!document.isObject() ||
        root.value(QStringLiteral("format")).toString() != QLatin1String("KtTracking object tree"))
    {
        error = QStringLiteral(
            "not a KtTracking object tree (no \"format\": \"KtTracking object "
            "tree\")");
        return nullptr;
    }
    if (root.value(QStringLiteral("version")).toInt() != 1)
    {
        error = QStringLiteral("object tree version %1 is not known (1 is)")
                    .arg(root.value(QStringLiteral("version")).toVariant().toString());
        return nullptr;
    }
    auto tree = std::unique_ptr<DumpedTree>(new DumpedTree);
    try
    {
        Reader reader(*tree, root);
        const QJsonArray roots = Array(root, "roots", QStringLiteral("document"));
        for (int i = 0; i < roots.size(); ++i)
        {
            tree->m_roots.push_back(reader.Node(roots.at(i), QStringLiteral("roots[%1]").arg(i)));
        }
        const QJsonArray others = Array(root, "otherObjects", QStringLiteral("document"));
        for (int i = 0; i < others.size(); ++i)
        {
            reader.Node(others.at(i), QStringLiteral("otherObjects[%1]").arg(i));
        }
        reader.Resolve();
        std::set<const DumpedNode*> listed;
        for (const DumpedNode* node : tree->m_roots)
        {
            for (const QString& path : node->actions)
            {
                const DumpedNode* action =
                    reader.Find(path, node->path + QStringLiteral(" actions"));
                if (listed.insert(action).second)
                {
                    tree->m_rootActions.push_back(action);
                }
            }
        }
    }
    catch (const Unreadable& unreadable)
    {
        error = unreadable.reason;
        return nullptr;
    }
    return tree;
}

}  // namespace Velkor::KT::Tracking::Gui
