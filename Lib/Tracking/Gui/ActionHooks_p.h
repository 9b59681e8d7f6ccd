#pragma once

class QAction;

namespace Velkor::KT::Tracking
{

namespace Gui
{
struct ParseContext;
}

namespace Config
{
class Action;
}

// `triggered-event`; with `propertyName`, only while the action has that property, and with
// `propertyValue` as well, only while its text equals that value.
void ApplyAction(const Gui::ParseContext& context, QAction* action, const Config::Action& entry);

}  // namespace Velkor::KT::Tracking
