#include "Tracking/Gui/SignalHooks_p.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/LambdaQt4WithStringParameter_p.h"
#include "Tracking/Gui/ParseContext_p.h"
#include "Tracking/Gui/QtEventHandler_p.h"
#include "Tracking/Gui/TriggerEvent_p.h"

#include "Util/LambdaQt4.h"
#include "Util/LambdaQt4WithIntParameter.h"

#include <QString>

#include <string>

namespace Velkor::KT::Tracking
{

namespace
{

TriggerEvent WithValue(const Gui::ParseContext& context, const Config::SignalWithParam& signal)
{
    return TriggerEvent(context.tracker, signal, std::string(signal.key()));
}

}  // namespace

void ApplyObject(const Gui::ParseContext& context, QObject* object, const Config::Object& entry)
{
    for (const Config::Signal& signal : entry.signal())
    {
        auto* slot = new Util::LambdaQt4([event = TriggerEvent(context.tracker, signal)](QObject*)
                                         { event.Send(); },
                                         context.eventHandler);
        QObject::connect(object, signal.signal().c_str(), slot, "1execute()", Qt::AutoConnection);
    }
    for (const Config::SignalWithParam& signal : entry.intSignal())
    {
        auto* slot = new Util::LambdaQt4WithIntParameter(
            [event = WithValue(context, signal)](QObject*, int value)
            { event.Send(std::to_string(value)); },
            context.eventHandler);
        QObject::connect(object, signal.signal().c_str(), slot, "1execute(int)",
                         Qt::AutoConnection);
    }
    for (const Config::SignalWithParam& signal : entry.stringSignal())
    {
        auto* slot = new LambdaQt4WithStringParameter(
            [event = WithValue(context, signal)](QObject*, const QString& value)
            { event.Send(value.toStdString()); },
            context.eventHandler);
        QObject::connect(object, signal.signal().c_str(), slot, "1execute(QString)",
                         Qt::AutoConnection);
    }
}

}  // namespace Velkor::KT::Tracking
