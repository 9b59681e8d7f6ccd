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
        const std::string where =
            entry.line > 0 ? main.path + ":" + std::to_string(entry.line) : main.path;
        for (const AttachReport::Problem& problem : entry.problems)
        {
            report.Warning(where, AttachReport::ElementName(entry.kind).toStdString() + " \"" +
                                      entry.id.toStdString() + "\": " + problem.text.toStdString());
        }
    }
}

}  // namespace Velkor::KT::KtTrack
