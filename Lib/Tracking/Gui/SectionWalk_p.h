#pragma once

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/ElementKinds_p.h"
#include "Tracking/Gui/ObjectSearch_p.h"

#include <vector>

namespace Velkor::KT::Tracking::Gui
{

// The one walk from the entries of a `gui` section to the objects they match, over any object
// tree (see ObjectSearch): the live hooks, the attach report and the offline match all follow
// it. For each entry, in the order the section is applied (`widget` entries, then `object`, then
// `action` entries, each in document order), the entry's objects are searched from the start
// object and the visitor is told
//   visitor.Found(entry, matches, trace)   // once per search, before anything is applied
//   visitor.Apply(match, entry)            // for each match in order
// where a `widget` match first has its nested entries walked from it (buttons, labels, combo
// boxes, widgets, objects, preset buttons, pop-up list buttons), then is applied itself.
// `trace` is null unless Visitor::kTraced is true (the search then also traces, see SearchTrace).
template <class Tree, class Visitor>
class SectionWalk
{
public:
    using Node = typename Tree::Node;

    explicit SectionWalk(Visitor& visitor) : m_visitor(visitor) {}

    // Attach(root): the whole section.
    void Section(Node root, const Config::Gui& section)
    {
        Entries(root, section.widget());
        Entries(root, section.object());
        Entries(root, section.action());
    }

    // Attach(action): the section's `action` entries.
    void Actions(Node action, const Config::Gui& section) { Entries(action, section.action()); }

private:
    template <class Sequence>
    void Entries(Node start, const Sequence& entries)
    {
        for (const auto& entry : entries)
        {
            One(start, entry);
        }
    }

    template <class Entry>
    void One(Node start, const Entry& entry)
    {
        const IdPath path = IdPath::Of(entry);
        const auto any = Tree::ClassOf(QObject::staticMetaObject);
        const auto wanted = Tree::ClassOf(ElementOf<Entry>::QtClass::staticMetaObject);
        std::vector<Node> matches;
        if constexpr (Visitor::kTraced)
        {
            SearchTrace<Node> trace;
            matches = ObjectSearch<Tree>::Find(start, path, any, wanted, trace);
            m_visitor.Found(entry, start, matches, &trace);
        }
        else
        {
            matches = ObjectSearch<Tree>::Find(start, path, any, wanted);
            m_visitor.Found(entry, start, matches, nullptr);
        }
        for (Node match : matches)
        {
            Apply(match, entry);
        }
    }

    template <class Entry>
    void Apply(Node match, const Entry& entry)
    {
        m_visitor.Apply(match, entry);
    }

    void Apply(Node widget, const Config::Widget& entry)
    {
        Entries(widget, entry.button());
        Entries(widget, entry.label());
        Entries(widget, entry.combobox());
        Entries(widget, entry.widget());
        Entries(widget, entry.object());
        Entries(widget, entry.abstractPresetButton());
        Entries(widget, entry.buttonWithPopUpList());
        m_visitor.Apply(widget, entry);
    }

    Visitor& m_visitor;
};

}  // namespace Velkor::KT::Tracking::Gui
