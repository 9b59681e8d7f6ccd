#pragma once

class QAction;
class QObject;

namespace Velkor::KT::Tracking
{

namespace Gui
{
struct ParseContext;
}

namespace Config
{
class Gui;
}

// Searches each entry of a `gui` section below `root` and hooks every object it finds, in the
// order of the entries: `widget` entries first, then `object`, then `action` entries. Inside a
// widget entry the nested entries are searched below each widget found, kind by kind (button,
// label, combobox, widget, object, abstractPresetButton, buttonWithPopUpList), before the widget's
// own triggers.
void HookSection(const Gui::ParseContext& context, QObject* root, const Config::Gui& section);

// Only the section's `action` entries, searched from `action`.
void HookActionEntries(const Gui::ParseContext& context, QAction* action,
                       const Config::Gui& section);

}  // namespace Velkor::KT::Tracking
