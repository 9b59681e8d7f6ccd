#include "Tracking/Gui/ButtonHooks_p.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/ParseContext_p.h"
#include "Tracking/Gui/QtEventHandler_p.h"
#include "Tracking/Gui/TriggerEvent_p.h"
#include "Tracking/Gui/WidgetEventHooks_p.h"

#include "UI/AbstractPresetButton.h"
#include "UI/ButtonWithPopUpList.h"

#include <QAbstractButton>
#include <QString>

namespace Velkor::KT::Tracking
{

namespace
{

template <typename Signal>
void HookCheckedSignal(const Gui::ParseContext& context, QAbstractButton* button, Signal signal,
                       const Config::OneValueEvent& config)
{
    QObject::connect(button, signal, context.eventHandler,
                     [event = TriggerEvent(context.tracker, config, OptionalKey(config.value()))](
                         bool checked) { event.Send(checked ? "YES" : "NO"); });
}

void ApplyButtonHooks(const Gui::ParseContext& context, QAbstractButton* button,
                      const Config::Button& entry)
{
    if (entry.clicked_event())
    {
        HookCheckedSignal(context, button, &QAbstractButton::clicked, *entry.clicked_event());
    }
    if (entry.toggled_event())
    {
        HookCheckedSignal(context, button, &QAbstractButton::toggled, *entry.toggled_event());
    }
    if (entry.mouse_release_event())
    {
        HookQtEvent(context, QEvent::MouseButtonRelease, button, *entry.mouse_release_event());
    }
}

}  // namespace

void ApplyButton(const Gui::ParseContext& context, QAbstractButton* button,
                 const Config::Button& entry)
{
    if (context.GetsOwnHooks(button))
    {
        ApplyButtonHooks(context, button, entry);
    }
}

void ApplyPresetButton(const Gui::ParseContext& context, KT::UI::AbstractPresetButton* button,
                       const Config::AbstractPresetButton& entry)
{
    if (!context.GetsOwnHooks(button))
    {
        return;
    }
    ApplyButtonHooks(context, button, entry);
    if (const auto& choose = entry.choosePreset())
    {
        QObject::connect(
            button, &KT::UI::AbstractPresetButton::Clicked, context.eventHandler,
            [event = TriggerEvent(context.tracker, *choose, OptionalKey(choose->id()),
                                  TriggerEvent::Put::Insert)](const QString& presetName)
            {
                if (!presetName.isEmpty())
                {
                    event.Send(presetName.toStdString());
                }
            });
    }
}

void ApplyPopUpListButton(const Gui::ParseContext& context, KT::ButtonWithPopUpList* button,
                          const Config::ButtonWithPopUpList& entry)
{
    if (!context.GetsOwnHooks(button))
    {
        return;
    }
    ApplyButtonHooks(context, button, entry);
    if (const auto& selected = entry.item_selected())
    {
        QObject::connect(button, &KT::ButtonWithPopUpList::CurrentIndexChanged,
                         context.eventHandler,
                         [event = TriggerEvent(context.tracker, *selected)](int) { event.Send(); });
    }
}

}  // namespace Velkor::KT::Tracking
