#include "Tracking/Gui/WidgetEventHooks_p.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/ParseContext_p.h"
#include "Tracking/Gui/QtEventHandler_p.h"
#include "Tracking/Gui/TriggerEvent_p.h"

#include <QWidget>

namespace Velkor::KT::Tracking
{

void HookQtEvent(const Gui::ParseContext& context, QEvent::Type type, QObject* object,
                 const Config::Event& config)
{
    context.eventHandler->Register(
        type, object, [event = TriggerEvent(context.tracker, config)](QObject*) { event.Send(); });
}

void ApplyWidgetEvents(const Gui::ParseContext& context, QWidget* widget,
                       const Config::Widget& entry)
{
    if (!context.GetsOwnHooks(widget))
    {
        return;
    }
    if (entry.show_event())
    {
        HookQtEvent(context, QEvent::Show, widget, *entry.show_event());
    }
    if (entry.close_event())
    {
        HookQtEvent(context, QEvent::Close, widget, *entry.close_event());
    }
}

}  // namespace Velkor::KT::Tracking
