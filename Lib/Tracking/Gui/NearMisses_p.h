#pragma once

#include <QHash>
#include <QSet>
#include <QString>

#include <vector>

namespace Velkor::KT::Tracking::Gui
{

// The edit distance of two names: the fewest insertions, deletions, substitutions and swaps of
// neighbouring characters that turn one into the other ("pushButtonStrat" is 1 from
// "pushButtonStart"). Larger distances than `limit` are given as limit + 1.
int NameDistance(const QString& a, const QString& b, int limit);

// How far a name may be from another to count as nearly it: one edit per five characters, at
// least one and at most three.
int NearNameLimit(const QString& name);

// The objects of some trees by name, each object once even where the trees overlap: where the
// attach report looks for near misses of an entry that matched nothing. Works on any tree that
// ObjectSearch works on.
template <class Tree>
class NameIndex
{
public:
    using Node = typename Tree::Node;

    explicit NameIndex(const std::vector<Node>& roots)
    {
        for (const Node root : roots)
        {
            Add(root);
            Tree::ForEachDescendant(root, [this](Node node) { Add(node); });
        }
    }

    // The objects of that name, in the order of the trees; empty for none.
    const std::vector<Node>& Named(const QString& name) const
    {
        static const std::vector<Node> kNone;
        const auto found = m_byName.constFind(name);
        return found == m_byName.constEnd() ? kNone : *found;
    }

    // visit(name, objects) for each name, in no particular order.
    template <class Visit>
    void ForEachName(const Visit& visit) const
    {
        for (auto it = m_byName.constBegin(); it != m_byName.constEnd(); ++it)
        {
            visit(it.key(), it.value());
        }
    }

private:
    void Add(Node node)
    {
        if (!m_seen.contains(node))
        {
            m_seen.insert(node);
            m_byName[Tree::Name(node)].push_back(node);
        }
    }

    QHash<QString, std::vector<Node>> m_byName;
    QSet<Node> m_seen;
};

}  // namespace Velkor::KT::Tracking::Gui
