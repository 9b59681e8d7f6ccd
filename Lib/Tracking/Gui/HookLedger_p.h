#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <map>
#include <utility>
#include <vector>

namespace Velkor::KT::Tracking::Gui
{

// Which entry hooked which object, and along which way, across all attaches made with one
// section: how the attach report sees an object hooked twice by the same entry. Live objects are
// watched with a guarded pointer, so that a new object at the address of a destroyed one starts
// afresh.
template <class Node>
class HookLedger
{
public:
    // One way an object was reached: the attach (its name in reports), and the object whose
    // tree the entry's id was searched in when that was not the attach's own start.
    struct Way
    {
        QString attach;
        Node from{};
        QPointer<QObject> fromObject;  // live trees: tells whether `from` still exists
        bool fromStart = true;
    };

    // Notes that entry `entry` hooked `node` (the QObject itself for a live tree, else null)
    // along `way`, and returns all the ways it has been hooked along, this one last.
    const std::vector<Way>& Record(Node node, QObject* object, int entry, Way way)
    {
        Ways& ways = m_ways[{node, entry}];
        if (ways.live && ways.object.isNull())
        {
            ways.ways.clear();
        }
        ways.object = object;
        ways.live = object != nullptr;
        ways.ways.push_back(std::move(way));
        return ways.ways;
    }

    // Forgets everything: the entries of another section are other entries.
    void Clear()
    {
        m_ways.clear();
        m_sizeAfterPrune = 0;
    }

    // Forgets destroyed objects once they could make up half of what is kept.
    void Prune()
    {
        if (m_ways.size() < 2 * m_sizeAfterPrune + 64)
        {
            return;
        }
        for (auto it = m_ways.begin(); it != m_ways.end();)
        {
            it = it->second.live && it->second.object.isNull() ? m_ways.erase(it) : std::next(it);
        }
        m_sizeAfterPrune = m_ways.size();
    }

private:
    struct Ways
    {
        QPointer<QObject> object;
        bool live = false;
        std::vector<Way> ways;
    };

    std::map<std::pair<Node, int>, Ways> m_ways;
    std::size_t m_sizeAfterPrune = 0;
};

}  // namespace Velkor::KT::Tracking::Gui
