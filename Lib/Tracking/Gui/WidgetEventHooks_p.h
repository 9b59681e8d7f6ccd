#pragma once

#include <QEvent>

class QObject;
class QWidget;

namespace Velkor::KT::Tracking
{

namespace Gui
{
struct ParseContext;
}

namespace Config
{
class Event;
class Widget;
}  // namespace Config

// Sends the configured event each time `object` receives a Qt event of `type`.
void HookQtEvent(const Gui::ParseContext& context, QEvent::Type type, QObject* object,
                 const Config::Event& config);

// A `widget` entry's own triggers: `show-event` and `close-event`.
void ApplyWidgetEvents(const Gui::ParseContext& context, QWidget* widget,
                       const Config::Widget& entry);

}  // namespace Velkor::KT::Tracking
