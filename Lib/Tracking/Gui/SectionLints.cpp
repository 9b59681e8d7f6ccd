#include "Tracking/Gui/SectionLints_p.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/ElementKinds_p.h"
#include "Tracking/Gui/EntryTable_p.h"

#include <QRegExp>
#include <QStringList>

namespace Velkor::KT::Tracking
{

namespace Gui
{

namespace
{

using Kind = AttachReport::ProblemKind;

QString Quoted(const std::string& text)
{
    return QLatin1Char('"') + QString::fromStdString(text) + QLatin1Char('"');
}

void CheckId(const Config::Object& element, AttachReport::Entry& entry)
{
    const QString& id = entry.id;
    const QChar colon(QLatin1Char(':'));
    if (id.count(colon) == id.size())
    {
        AddProblem(entry, Kind::EmptyIdSegment,
                   QStringLiteral("id %1 names no object: the entry matches nothing")
                       .arg(Quoted(element.id())));
    }
    else if (id.startsWith(colon) || id.endsWith(colon) || id.contains(QStringLiteral("::")))
    {
        AddProblem(entry, Kind::EmptyIdSegment,
                   QStringLiteral("id %1 has an empty segment, which the search skips")
                       .arg(Quoted(element.id())));
    }
    if (!entry.idIsRegExp)
    {
        return;
    }
    for (const QString& part : id.split(colon))
    {
        const QRegExp expression(part);
        if (!part.isEmpty() && !expression.isValid())
        {
            AddProblem(entry, Kind::InvalidRegExp,
                       QStringLiteral("\"%1\" is not a valid regular expression (%2): the entry "
                                      "matches nothing")
                           .arg(part, expression.errorString()));
        }
    }
}

void CheckSignals(const EntryTable::Triggers& triggers, AttachReport::Entry& entry)
{
    const bool hooked = entry.kind == AttachReport::ElementKind::Object;
    for (const EntryTable::SignalHook& signal : triggers.signalHooks)
    {
        const QString what =
            signal.hook.trigger + QStringLiteral(" \"") + signal.hook.signal + QLatin1Char('"');
        if (!signal.malformed.isEmpty())
        {
            AddProblem(entry, Kind::MalformedSignal,
                       what + QLatin1Char(' ') + signal.malformed + ": it is never connected",
                       signal.line);
        }
        else if (!signal.mismatch.isEmpty())
        {
            AddProblem(entry, Kind::TriggerMismatch, what + QLatin1Char(' ') + signal.mismatch,
                       signal.line);
        }
        if (!hooked)
        {
            AddProblem(entry, Kind::TriggerMismatch,
                       what + " is never hooked: only object entries hook signals", signal.line);
        }
    }
}

void CheckCondition(const Config::Action& action, AttachReport::Entry& entry)
{
    if (action.propertyValue() && !action.propertyName())
    {
        AddProblem(entry, Kind::PropertyValueWithoutName,
                   QStringLiteral("propertyValue %1 without propertyName: the condition is "
                                  "ignored")
                       .arg(Quoted(*action.propertyValue())));
    }
}

bool SameEntry(AttachReport::ElementKind kind, const Config::Object& a, const Config::Object& b)
{
    bool same = false;
    WithElementType(kind, a,
                    [&](const auto& typed) { same = typed == static_cast<decltype(typed)>(b); });
    return same;
}

QString Describe(const AttachReport::Entry& entry)
{
    QString text = AttachReport::ElementName(entry.kind) + " \"" + entry.id + '"';
    if (entry.line > 0)
    {
        text += QStringLiteral(" (line %1)").arg(entry.line);
    }
    return text;
}

void CheckRepeats(const EntryTable& table, QVector<AttachReport::Entry>& entries, int index)
{
    AttachReport::Entry& entry = entries[index];
    for (int earlier = index - 1; earlier >= 0; --earlier)
    {
        const AttachReport::Entry& other = entries[earlier];
        if (other.parent == entry.parent && other.kind == entry.kind && other.id == entry.id &&
            SameEntry(entry.kind, table.Element(earlier), table.Element(index)))
        {
            // What the entry hooks on each object, signals only where an object entry connects
            // them.
            QStringList triggers;
            const EntryTable::Triggers& hooks = table.TriggersOf(index);
            for (const AttachReport::Hook& hook : hooks.own)
            {
                triggers.append(hook.trigger);
            }
            for (const EntryTable::SignalHook& signal : hooks.signalHooks)
            {
                if (entry.kind == AttachReport::ElementKind::Object && signal.Connectable())
                {
                    triggers.append(signal.hook.trigger);
                }
            }
            AddProblem(entry, Kind::RepeatedEntry,
                       QStringLiteral("repeats the earlier %1 word for word").arg(Describe(other)) +
                           RepeatedHooksEffect(triggers, 2));
            return;
        }
    }
}

}  // namespace

void AddProblem(AttachReport::Entry& entry, AttachReport::ProblemKind kind, const QString& text,
                int line)
{
    for (const AttachReport::Problem& problem : entry.problems)
    {
        if (problem.kind == kind && problem.text == text && problem.line == line)
        {
            return;
        }
    }
    entry.problems.append({kind, text, line});
}

QString RepeatedHooksEffect(const QStringList& triggers, int times)
{
    QStringList connected;
    QStringList events;
    for (const QString& trigger : triggers)
    {
        const bool qtEvent = trigger == QLatin1String("show-event") ||
                             trigger == QLatin1String("close-event") ||
                             trigger == QLatin1String("mouse-release-event");
        (qtEvent ? events : connected).append(trigger);
    }
    QString effect;
    if (triggers.isEmpty())
    {
        effect = QStringLiteral(": what it holds is hooked again");
    }
    if (!connected.isEmpty())
    {
        effect +=
            QStringLiteral("; %1 %2 %3")
                .arg(connected.join(QStringLiteral(", ")),
                     connected.size() == 1 ? QStringLiteral("sends its event")
                                           : QStringLiteral("send their events"),
                     times == 2 ? QStringLiteral("twice") : QStringLiteral("%1 times").arg(times));
    }
    if (!events.isEmpty())
    {
        effect += QStringLiteral(
                      "; %1 still %2 once (a Qt event reaches only the first hook of "
                      "its object)")
                      .arg(events.join(QStringLiteral(", ")),
                           events.size() == 1 ? QStringLiteral("sends") : QStringLiteral("send"));
    }
    return effect;
}

void AddHookedTwice(AttachReport::Entry& entry, const QString& text)
{
    const QString subject = text.left(text.indexOf(QStringLiteral("' hooked ")) + 9);
    for (int i = entry.problems.size() - 1; i >= 0; --i)
    {
        if (entry.problems[i].kind == AttachReport::ProblemKind::HookedTwice &&
            entry.problems[i].text.startsWith(subject))
        {
            entry.problems.remove(i);
        }
    }
    entry.problems.append({AttachReport::ProblemKind::HookedTwice, text});
}

void AddSectionProblems(const EntryTable& table, QVector<AttachReport::Entry>& entries)
{
    for (int i = 0; i < table.Count(); ++i)
    {
        const Config::Object& element = table.Element(i);
        AttachReport::Entry& entry = entries[i];
        CheckId(element, entry);
        CheckSignals(table.TriggersOf(i), entry);
        if (entry.kind == AttachReport::ElementKind::Action)
        {
            CheckCondition(static_cast<const Config::Action&>(element), entry);
        }
        CheckRepeats(table, entries, i);
    }
}

}  // namespace Gui

AttachReport CheckGuiSection(const Config::Gui& section, const std::vector<int>& entryLines)
{
    return CheckGuiSection(section, Config::GuiLines{entryLines, {}});
}

AttachReport CheckGuiSection(const Config::Gui& section, const Config::GuiLines& lines)
{
    const Gui::EntryTable table(section, lines);
    QVector<AttachReport::Entry> entries = table.Entries();
    Gui::AddSectionProblems(table, entries);
    AttachReport report;
    report.SetEntries(entries);
    return report;
}

}  // namespace Velkor::KT::Tracking
