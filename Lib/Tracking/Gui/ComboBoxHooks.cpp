#include "Tracking/Gui/ComboBoxHooks_p.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Events/IKtTracker.h"
#include "Tracking/Gui/ParseContext_p.h"
#include "Tracking/Gui/QtEventHandler_p.h"
#include "Tracking/Gui/TriggerEvent_p.h"

#include <QComboBox>
#include <QVariant>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Velkor::KT::Tracking
{

namespace
{

// The facts of a combo box's new current item, inserted in the order index, name, mapped,
// dataName: a `param` of the same key keeps its value.
class ComboBoxIndexReporter
{
public:
    explicit ComboBoxIndexReporter(const Config::ComboBoxIndexChangedEvent& config)
        : m_event(ConfiguredEvent(config)),
          m_indexKey(OptionalKey(config.index())),
          m_nameKey(OptionalKey(config.name())),
          m_mappedKey(OptionalKey(config.mapped())),
          m_dataKey(OptionalKey(config.dataName())),
          m_dataRole(config.data())
    {
        for (const Config::Map& map : config.map())
        {
            m_maps.emplace_back(map.key(), map.value());
        }
    }

    Event Report(const QComboBox& comboBox, int index) const
    {
        Event event = m_event;
        const std::string indexText = std::to_string(index);
        if (m_indexKey)
        {
            event.params.emplace(*m_indexKey, indexText);
        }
        if (m_nameKey)
        {
            event.params.emplace(*m_nameKey, comboBox.itemText(index).toStdString());
        }
        if (m_mappedKey)
        {
            for (const auto& [key, value] : m_maps)
            {
                if (key == indexText)
                {
                    event.params.emplace(*m_mappedKey, value);
                    break;
                }
            }
        }
        if (m_dataKey)
        {
            event.params.emplace(*m_dataKey,
                                 comboBox.itemData(index, m_dataRole).toString().toStdString());
        }
        return event;
    }

private:
    Event m_event;
    std::optional<std::string> m_indexKey;
    std::optional<std::string> m_nameKey;
    std::optional<std::string> m_mappedKey;
    std::optional<std::string> m_dataKey;
    int m_dataRole;
    std::vector<std::pair<std::string, std::string>> m_maps;
};

}  // namespace

void ApplyComboBox(const Gui::ParseContext& context, QComboBox* comboBox,
                   const Config::ComboBox& entry)
{
    const auto& changed = entry.current_index_changed_event();
    if (!context.GetsOwnHooks(comboBox) || !changed)
    {
        return;
    }
    IKtTracker* tracker = context.tracker;
    // The combo box is the sender, so it is alive whenever the functor runs.
    QObject::connect(comboBox, QOverload<int>::of(&QComboBox::currentIndexChanged),
                     context.eventHandler,
                     [tracker, comboBox, reporter = ComboBoxIndexReporter(*changed)](int index)
                     { tracker->Track(reporter.Report(*comboBox, index)); });
}

}  // namespace Velkor::KT::Tracking
