#include "Tracking/Gui/ReportMerge_p.h"

#include "Tracking/Gui/SectionLints_p.h"

#include <algorithm>

namespace Velkor::KT::Tracking::Gui
{

void ReportMerge::Add(const AttachReport& report)
{
    const QVector<AttachReport::Entry>& entries = report.Entries();
    if (m_count++ == 0)
    {
        m_entries = entries;
        return;
    }
    const int count = std::min(m_entries.size(), entries.size());
    for (int i = 0; i < count; ++i)
    {
        AttachReport::Entry& into = m_entries[i];
        into.matches += entries[i].matches;
        for (const AttachReport::Problem& problem : entries[i].problems)
        {
            if (problem.kind == AttachReport::ProblemKind::HookedTwice)
            {
                AddHookedTwice(into, problem.text);
            }
            else
            {
                AddProblem(into, problem.kind, problem.text);
            }
        }
    }
}

AttachReport ReportMerge::Result(const QString& attachedTo) const
{
    AttachReport report;
    report.SetAttachedTo(attachedTo);
    report.SetEntries(m_entries);
    return report;
}

QString AllWindowsName(int windows, int actions)
{
    return QStringLiteral("%1 top-level window%2 and %3 action%4")
        .arg(windows)
        .arg(windows == 1 ? "" : "s")
        .arg(actions)
        .arg(actions == 1 ? "" : "s");
}

}  // namespace Velkor::KT::Tracking::Gui
