#include "Tracking/Gui/EntryTable_p.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/ElementKinds_p.h"

#include <QHash>

namespace Velkor::KT::Tracking::Gui
{

namespace
{

std::size_t CountEntries(const Config::Widget& widget)
{
    std::size_t count = 1 + widget.button().size() + widget.label().size() +
                        widget.combobox().size() + widget.object().size() +
                        widget.abstractPresetButton().size() + widget.buttonWithPopUpList().size();
    for (const Config::Widget& nested : widget.widget())
    {
        count += CountEntries(nested);
    }
    return count;
}

// The name of an own trigger as a shared string: the names are few, the triggers many.
QString TriggerName(const char* name)
{
    thread_local QHash<const char*, QString> names;
    auto found = names.find(name);
    if (found == names.end())
    {
        found = names.insert(name, QLatin1String(name));
    }
    return *found;
}

}  // namespace

EntryTable::EntryTable(const Config::Gui& section, const Config::GuiLines& lines)
{
    std::size_t count = section.action().size() + section.object().size();
    for (const Config::Widget& widget : section.widget())
    {
        count += CountEntries(widget);
    }
    m_elements.reserve(count);
    m_triggers.reserve(count);
    m_index.reserve(count);
    m_entries.reserve(int(count));
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
                          triggers.own.append({TriggerName(name), event, QString()});
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
