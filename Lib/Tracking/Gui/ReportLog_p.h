#pragma once

#include "Tracking/Gui/AttachReport.h"

#include <QString>

namespace Velkor::KT::Tracking::Gui
{

// The verbose log's summary of one attach report, each line starting with "DOCUMENT:" as
// compilers write them: the report's summary line; the entries that matched nothing, on one
// line; then each problem and each note of the report on a line of its own. Of the entries that
// matched nothing, an attach of `everyWindow` names all it searched; the attach of one window
// names those it searched inside a widget entry that matched, and those with notes: a top-level
// entry that matches nothing in one window is most likely meant for another.
QString LogSummary(const AttachReport& report, const QString& document, bool everyWindow);

// How the attach of all top-level windows is named in reports: "3 top-level windows and 12
// actions".
QString AllWindowsName(int windows, int actions);

}  // namespace Velkor::KT::Tracking::Gui
