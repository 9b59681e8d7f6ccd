#include "GuiChecks.h"

#include "Report.h"
#include "RuleDocument.h"

#include "Tracking/Gui/AttachReport.h"

#include <string>

namespace Velkor::KT::KtTrack
{

void CheckGuiSection(const RuleDocument& main, Report& report)
{
    if (!main.main || !main.main->gui())
    {
        return;
    }
    using Tracking::AttachReport;
    const AttachReport checked = Tracking::CheckGuiSection(*main.main->gui(), main.guiLines);
    for (const AttachReport::Entry& entry : checked.Entries())
    {
        for (const AttachReport::Problem& problem : entry.problems)
        {
            // At the element the problem is about: the entry, or a signal in it.
            const int line = problem.line > 0 ? problem.line : entry.line;
            const std::string where = line > 0 ? main.path + ":" + std::to_string(line) : main.path;
            report.Warning(where, AttachReport::ElementName(entry.kind).toStdString() + " \"" +
                                      entry.id.toStdString() + "\": " + problem.text.toStdString());
        }
    }
}

}  // namespace Velkor::KT::KtTrack
