#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <map>
#include <utility>

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
    // Notes that entry `entry` hooked `node` (the QObject itself for a live tree, else null)
    // along `way`, and returns the ways it had been hooked along before.
    QStringList Record(Node node, QObject* object, int entry, const QString& way)
    {
        Ways& ways = m_ways[{node, entry}];
        if (ways.live && ways.object.isNull())
        {
            ways.ways.clear();
        }
        ways.object = object;
        ways.live = object != nullptr;
        QStringList before = ways.ways;
        ways.ways.append(way);
        return before;
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
        QStringList ways;
    };

    std::map<std::pair<Node, int>, Ways> m_ways;
    std::size_t m_sizeAfterPrune = 0;
};

}  // namespace Velkor::KT::Tracking::Gui
