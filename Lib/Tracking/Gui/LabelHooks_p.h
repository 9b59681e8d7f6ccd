#pragma once

class QLabel;

namespace Velkor::KT::Tracking
{

namespace Gui
{
struct ParseContext;
}

namespace Config
{
class Label;
}

// `link-activated-event`: the activated link assigned under `value`.
void ApplyLabel(const Gui::ParseContext& context, QLabel* label, const Config::Label& entry);

}  // namespace Velkor::KT::Tracking
