#pragma once

#include "Tracking/Gui/AttachReport.h"
#include "Tracking/TrackingExport.h"

#include <QtGlobal>

#include <memory>

namespace Velkor::KT::Tracking
{

// Shows on the screen what the GUI handler hooked: while shown, every hooked widget of the
// visible windows is outlined, and resting the mouse pointer on one lists the entries of the
// `gui` section behind it, with their lines and the events they send. It draws from the attach
// reports (AttachReport) it is given, so it shows exactly what was hooked:
//   - solid magenta: a widget hooked once per trigger;
//   - solid orange: a widget hooked more than once, whose events are sent once per hook (an
//     action reached both through its window and through a window's list of actions);
//   - dashed blue: a widget an entry found that got no hooks of its own (a `widget` entry that
//     only holds nested entries, or any widget but the target of Attach(root, target));
//   - dashed grey (SetUnhookedShown()): a named widget that no entry found.
// Hooked actions are outlined where they show: their tool buttons, and their items in open
// menus. Hooked objects that are not widgets have nothing to outline.
//
// The host's widgets are only read: the outlines are drawn in windows of the library's own, one
// over each window of the host, shaped to the outlines and transparent for input. They are not
// children of the host's widgets, are never attached by the GUI handler, take no focus and do
// not keep the application running. While shown, a timer (five times a second) follows the
// windows as they move, open and close; hidden, nothing runs.
//
// Give it the report of every attach from the first one on: a report is made only while a sink
// is registered, so register the sink before attaching the windows.
//
//     HookHighlight highlight;
//     statistics.SetAttachReportSink(highlight.ReportSink());
//     statistics.AttachAllTopLevelWindows();
//     ...
//     highlight.SetShown(true);  // for example from a developer menu
//
// GUI thread only; destroy it before the application object.
class KT_TRACKING_EXPORT HookHighlight
{
public:
    HookHighlight();
    ~HookHighlight();

    // Records what one attach hooked; shown from the next refresh on.
    void AddReport(const AttachReport& report);
    // A sink that records each report here and then hands it to `next`, when that is set; a
    // report that arrives after the highlight is destroyed only goes to `next`.
    AttachReportSink ReportSink(AttachReportSink next = {});

    void SetShown(bool shown);
    bool IsShown() const;

    // Whether named widgets that no entry found are outlined too (dashed grey); on by default.
    void SetUnhookedShown(bool shown);
    bool IsUnhookedShown() const;

private:
    Q_DISABLE_COPY(HookHighlight)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
