#include "Tracking/Gui/LabelHooks_p.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/ParseContext_p.h"
#include "Tracking/Gui/QtEventHandler_p.h"
#include "Tracking/Gui/TriggerEvent_p.h"

#include <QLabel>
#include <QString>

namespace Velkor::KT::Tracking
{

void ApplyLabel(const Gui::ParseContext& context, QLabel* label, const Config::Label& entry)
{
    const auto& activated = entry.link_activated_event();
    if (!context.GetsOwnHooks(label) || !activated)
    {
        return;
    }
    QObject::connect(label, &QLabel::linkActivated, context.eventHandler,
                     [event = TriggerEvent(context.tracker, *activated,
                                           OptionalKey(activated->value()))](const QString& link)
                     { event.Send(link.toStdString()); });
}

}  // namespace Velkor::KT::Tracking
