#include "Tracking/Gui/EntryTable_p.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/ElementKinds_p.h"

namespace Velkor::KT::Tracking::Gui
{

EntryTable::EntryTable(const Config::Gui& section, const Config::GuiLines& lines)
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
    if (lines.entries.size() == m_elements.size())
    {
        for (int i = 0; i < m_entries.size(); ++i)
        {
            m_entries[i].line = lines.entries[std::size_t(i)];
        }
    }
    std::size_t signalCount = 0;
    for (const Triggers& triggers : m_triggers)
    {
        signalCount += triggers.signalHooks.size();
    }
    if (lines.signalTriggers.size() == signalCount)
    {
        std::size_t next = 0;
        for (Triggers& triggers : m_triggers)
        {
            for (SignalHook& signal : triggers.signalHooks)
            {
                signal.line = lines.signalTriggers[next++];
            }
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
    Triggers triggers;
    ForEachSignal(
        element,
        [&](SignalTrigger trigger, const Config::Signal& signal)
        {
            const QString event = QString::fromStdString(signal.event());
            const SignalText text = SignalText::Parse(signal.signal());
            triggers.signalHooks.push_back({{QLatin1String(SignalTriggerName(trigger)), event,
                                             QString::fromStdString(signal.signal())},
                                            text.signature,
                                            text.malformed,
                                            ParameterMismatch(trigger, text)});
            entry.events.append(event);
        });
    ForEachOwnTrigger(element,
                      [&](const char* name, const Config::Event& trigger)
                      {
                          const QString event = QString::fromStdString(trigger.event());
                          triggers.own.append({QLatin1String(name), event, QString()});
                          entry.events.append(event);
                      });
    m_triggers.push_back(std::move(triggers));
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
