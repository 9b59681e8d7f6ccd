#pragma once

class QAbstractButton;

namespace Velkor::KT
{
class ButtonWithPopUpList;
}

namespace Velkor::KT::UI
{
class AbstractPresetButton;
}

namespace Velkor::KT::Tracking
{

namespace Gui
{
struct ParseContext;
}

namespace Config
{
class AbstractPresetButton;
class Button;
class ButtonWithPopUpList;
}  // namespace Config

// `clicked-event` and `toggled-event` (the checked state assigned under `value` as "YES" or
// "NO") and `mouse-release-event`.
void ApplyButton(const Gui::ParseContext& context, QAbstractButton* button,
                 const Config::Button& entry);
// A button's triggers and `choosePreset`: a click on a named preset, its name inserted under `id`.
void ApplyPresetButton(const Gui::ParseContext& context, KT::UI::AbstractPresetButton* button,
                       const Config::AbstractPresetButton& entry);
// A button's triggers and `item-selected`, once per change of the current item.
void ApplyPopUpListButton(const Gui::ParseContext& context, KT::ButtonWithPopUpList* button,
                          const Config::ButtonWithPopUpList& entry);

}  // namespace Velkor::KT::Tracking
