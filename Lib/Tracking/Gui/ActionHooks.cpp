#include "Tracking/Gui/ActionHooks_p.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/ParseContext_p.h"
#include "Tracking/Gui/QtEventHandler_p.h"
#include "Tracking/Gui/TriggerEvent_p.h"

#include <QAction>
#include <QByteArray>
#include <QVariant>

#include <optional>

namespace Velkor::KT::Tracking
{

void ApplyAction(const Gui::ParseContext& context, QAction* action, const Config::Action& entry)
{
    const auto& triggered = entry.triggered_event();
    if (!context.GetsOwnHooks(action) || !triggered)
    {
        return;
    }
    std::optional<QByteArray> propertyName;
    std::optional<QByteArray> propertyValue;
    if (entry.propertyName())
    {
        propertyName = QByteArray::fromStdString(*entry.propertyName());
        if (entry.propertyValue())
        {
            propertyValue = QByteArray::fromStdString(*entry.propertyValue());
        }
    }
    QObject::connect(action, &QAction::triggered, context.eventHandler,
                     [action, event = TriggerEvent(context.tracker, *triggered), propertyName,
                      propertyValue](bool)
                     {
                         if (propertyName)
                         {
                             const QVariant property = action->property(propertyName->constData());
                             if (!property.isValid() ||
                                 (propertyValue && property.toString().toUtf8() != *propertyValue))
                             {
                                 return;
                             }
                         }
                         event.Send();
                     });
}

}  // namespace Velkor::KT::Tracking
