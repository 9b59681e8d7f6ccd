#include "Tracking/Gui/EntryTable.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/ElementKinds.h"

namespace Velkor::KT::Tracking::Gui
{

EntryTable::EntryTable(const Config::Gui& section, const std::vector<int>& lines)
{
    for (const Config::Widget& widget : section.widget())
    {
        AddWidget(widget, -1);
    }
    for (const Config::Action& action : section.action())
    {
        Add(action, -1);
    }
    for (const Config::Object& object : section.object())
    {
        Add(object, -1);
    }
    if (lines.size() == m_elements.size())
    {
        for (int i = 0; i < m_entries.size(); ++i)
        {
            m_entries[i].line = lines[std::size_t(i)];
        }
    }
}

int EntryTable::IndexOf(const Config::Object& element) const
{
    const auto found = m_index.find(&element);
    return found == m_index.end() ? -1 : found->second;
}

template <class Entry>
int EntryTable::Add(const Entry& element, int parent)
{
    AttachReport::Entry entry;
    entry.kind = ElementOf<Entry>::kind;
    entry.id = QString::fromStdString(element.id());
    entry.idIsRegExp = element.idIsRegExp();
    entry.idIsRoot = element.idIsRoot();
    entry.parent = parent;
    ForEachSignal(element, [&](SignalTrigger, const Config::Signal& signal)
                  { entry.events.append(QString::fromStdString(signal.event())); });
    ForEachOwnTrigger(element, [&](const char*, const Config::Event& trigger)
                      { entry.events.append(QString::fromStdString(trigger.event())); });
    const int index = int(m_elements.size());
    m_elements.push_back(&element);
    m_index.emplace(&element, index);
    m_entries.append(entry);
    return index;
}

void EntryTable::AddWidget(const Config::Widget& widget, int parent)
{
    const int self = Add(widget, parent);
    const auto addAll = [&](const auto& entries)
    {
        for (const auto& entry : entries)
        {
            Add(entry, self);
        }
    };
    addAll(widget.button());
    addAll(widget.label());
    addAll(widget.combobox());
    for (const Config::Widget& nested : widget.widget())
    {
        AddWidget(nested, self);
    }
    addAll(widget.object());
    addAll(widget.abstractPresetButton());
    addAll(widget.buttonWithPopUpList());
}

}  // namespace Velkor::KT::Tracking::Gui
