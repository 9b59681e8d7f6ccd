#include "Tracking/Gui/ReportLog_p.h"

#include <QStringList>

namespace Velkor::KT::Tracking::Gui
{

namespace
{

QString At(const QString& document, int line)
{
    return line > 0 ? document + QLatin1Char(':') + QString::number(line) : document;
}

QString Described(const AttachReport::Entry& entry)
{
    return AttachReport::ElementName(entry.kind) + QStringLiteral(" \"") + entry.id +
           QLatin1Char('"');
}

}  // namespace

QString LogSummary(const AttachReport& report, const QString& document, bool everyWindow)
{
    constexpr int kNamed = 10;
    QString text = document + QStringLiteral(": ") + report.Summary() + QLatin1Char('\n');
    QStringList unmatched;
    int more = 0;
    for (const AttachReport::Entry& entry : report.Entries())
    {
        const bool meant = everyWindow || entry.parent >= 0 || !entry.notes.isEmpty();
        if (entry.searched && entry.MatchedNothing() && meant)
        {
            if (unmatched.size() < kNamed)
            {
                unmatched.append(Described(entry) + QStringLiteral(" (line %1)").arg(entry.line));
            }
            else
            {
                ++more;
            }
        }
    }
    if (!unmatched.isEmpty())
    {
        text += document + QStringLiteral(": matched nothing: ") +
                unmatched.join(QStringLiteral(", ")) +
                (more > 0 ? QStringLiteral(" and %1 more").arg(more) : QString()) +
                QLatin1Char('\n');
    }
    for (const AttachReport::Entry& entry : report.Entries())
    {
        for (const AttachReport::Problem& problem : entry.problems)
        {
            text += At(document, problem.line > 0 ? problem.line : entry.line) +
                    QStringLiteral(": warning: ") + Described(entry) + QStringLiteral(": ") +
                    problem.text + QLatin1Char('\n');
        }
        for (const QString& note : entry.notes)
        {
            text += At(document, entry.line) + QStringLiteral(": note: ") + Described(entry) +
                    QStringLiteral(": ") + note + QLatin1Char('\n');
        }
    }
    return text;
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
