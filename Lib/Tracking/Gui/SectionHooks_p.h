#pragma once

class QAction;
class QObject;

namespace Velkor::KT::Tracking
{

struct LiveObjectTree;

namespace Gui
{
struct ParseContext;
template <class Tree>
class ReportRecorder;
}  // namespace Gui

namespace Config
{
class Gui;
}

// Searches each entry of a `gui` section below `root` and hooks every object it finds, in the
// order of the entries: `widget` entries first, then `object`, then `action` entries. Inside a
// widget entry the nested entries are searched below each widget found, kind by kind (button,
// label, combobox, widget, object, abstractPresetButton, buttonWithPopUpList), before the widget's
// own triggers. With a recorder, the same walk also writes the attach report.
void HookSection(const Gui::ParseContext& context, QObject* root, const Config::Gui& section);
void HookSection(const Gui::ParseContext& context, QObject* root, const Config::Gui& section,
                 Gui::ReportRecorder<LiveObjectTree>& recorder);

// Only the section's `action` entries, searched from `action`.
void HookActionEntries(const Gui::ParseContext& context, QAction* action,
                       const Config::Gui& section);
void HookActionEntries(const Gui::ParseContext& context, QAction* action,
                       const Config::Gui& section, Gui::ReportRecorder<LiveObjectTree>& recorder);

}  // namespace Velkor::KT::Tracking
