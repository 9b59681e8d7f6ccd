#include "Tracking/Gui/AttachReport.h"

#include <QDebug>
#include <QSet>
#include <QSharedData>
#include <QStringList>

namespace Velkor::KT::Tracking
{

class AttachReportData : public QSharedData
{
public:
    QString attachedTo;
    QVector<AttachReport::Entry> entries;
};

namespace
{

// "1 object", "2 objects"; "1 entry", "2 entries".
QString Plural(int count, const char* one, const char* many = nullptr)
{
    const QString noun = count == 1 ? QLatin1String(one)
                         : many     ? QLatin1String(many)
                                    : QLatin1String(one) + QLatin1Char('s');
    return QString::number(count) + QLatin1Char(' ') + noun;
}

// "FILE:LINE", "FILE", "line LINE" or "line ?".
QString Location(const QString& fileName, int line)
{
    if (fileName.isEmpty())
    {
        return line > 0 ? QStringLiteral("line %1").arg(line) : QStringLiteral("line ?");
    }
    return line > 0 ? fileName + QLatin1Char(':') + QString::number(line) : fileName;
}

int Depth(const QVector<AttachReport::Entry>& entries, const AttachReport::Entry& entry)
{
    int depth = 0;
    for (int parent = entry.parent; parent >= 0; parent = entries[parent].parent)
    {
        ++depth;
    }
    return depth;
}

QString Name(const AttachReport::Entry& entry)
{
    QString name =
        AttachReport::ElementName(entry.kind) + QStringLiteral(" \"") + entry.id + QLatin1Char('"');
    if (entry.idIsRegExp)
    {
        name += QStringLiteral(" (regular expression)");
    }
    if (entry.idIsRoot)
    {
        name += QStringLiteral(" (root only)");
    }
    return name;
}

QString Outcome(const QVector<AttachReport::Entry>& entries, const AttachReport::Entry& entry)
{
    if (entry.MatchedNothing())
    {
        const bool parentEmpty = entry.parent >= 0 && entries[entry.parent].MatchedNothing();
        return parentEmpty ? QStringLiteral("matched nothing (its widget matched nothing)")
                           : QStringLiteral("matched nothing");
    }
    int hooks = 0;
    QSet<QString> found;
    QSet<QString> hooked;
    for (const AttachReport::Match& match : entry.matches)
    {
        found.insert(match.path);
        if (!match.hooks.isEmpty())
        {
            ++hooks;
            hooked.insert(match.path);
        }
    }
    if (hooked.isEmpty() && entry.events.isEmpty())
    {
        return QStringLiteral("finds ") + Plural(found.size(), "object");
    }
    QString outcome = hooked.size() == found.size()
                          ? QStringLiteral("hooks ") + Plural(hooked.size(), "object")
                          : QStringLiteral("finds ") + Plural(found.size(), "object") +
                                QStringLiteral(", hooks ") + QString::number(hooked.size());
    if (hooks > hooked.size())
    {
        outcome += QStringLiteral(" (") + Plural(hooks, "hook") + QLatin1Char(')');
    }
    return outcome;
}

QString Hooks(const AttachReport::Match& match)
{
    if (match.hooks.isEmpty())
    {
        return QStringLiteral("no hooks of its own");
    }
    QStringList hooks;
    for (const AttachReport::Hook& hook : match.hooks)
    {
        hooks.append(hook.signal.isEmpty() ? hook.trigger
                                           : hook.trigger + QLatin1Char(' ') + hook.signal);
    }
    return hooks.join(QStringLiteral(", "));
}

}  // namespace

QString AttachReport::Summary() const
{
    const AttachReport& report = *this;
    int hooking = 0;
    int hooks = 0;
    int problems = 0;
    for (const AttachReport::Entry& entry : report.Entries())
    {
        int hooked = 0;
        for (const AttachReport::Match& match : entry.matches)
        {
            hooked += match.hooks.isEmpty() ? 0 : 1;
        }
        hooking += hooked > 0 ? 1 : 0;
        hooks += hooked;
        problems += entry.problems.size();
    }
    const QString what = report.AttachedTo().isEmpty()
                             ? QStringLiteral("Section")
                             : QStringLiteral("Attach of ") + report.AttachedTo();
    return QStringLiteral("%1: %2; %3 hook something (%4), %5 match nothing; %6")
        .arg(what, Plural(report.Entries().size(), "entry", "entries"))
        .arg(hooking)
        .arg(Plural(hooks, "hook"))
        .arg(report.UnmatchedCount())
        .arg(Plural(problems, "problem"));
}

AttachReport::AttachReport() : d(new AttachReportData) {}
AttachReport::AttachReport(const AttachReport& other) = default;
AttachReport::AttachReport(AttachReport&& other) noexcept = default;
AttachReport& AttachReport::operator=(const AttachReport& other) = default;
AttachReport& AttachReport::operator=(AttachReport&& other) noexcept = default;
AttachReport::~AttachReport() = default;

QString AttachReport::AttachedTo() const
{
    return d->attachedTo;
}

void AttachReport::SetAttachedTo(const QString& attachedTo)
{
    d->attachedTo = attachedTo;
}

const QVector<AttachReport::Entry>& AttachReport::Entries() const
{
    return d->entries;
}

void AttachReport::SetEntries(const QVector<Entry>& entries)
{
    d->entries = entries;
}

bool AttachReport::HasProblems() const
{
    for (const Entry& entry : d->entries)
    {
        if (!entry.problems.isEmpty())
        {
            return true;
        }
    }
    return false;
}

int AttachReport::UnmatchedCount() const
{
    int count = 0;
    for (const Entry& entry : d->entries)
    {
        count += entry.MatchedNothing() ? 1 : 0;
    }
    return count;
}

QString AttachReport::ToText(const QString& fileName) const
{
    QString text = Summary() + QLatin1Char('\n');
    for (const Entry& entry : d->entries)
    {
        const QString location = Location(fileName, entry.line);
        QString line = location + QStringLiteral(": ") +
                       QString(2 * Depth(d->entries, entry), QLatin1Char(' ')) + Name(entry);
        if (!entry.events.isEmpty())
        {
            line +=
                QStringLiteral(" [") + entry.events.join(QStringLiteral(", ")) + QLatin1Char(']');
        }
        text += line + QStringLiteral(": ") + Outcome(d->entries, entry) + QLatin1Char('\n');
        for (const Match& match : entry.matches)
        {
            text += QStringLiteral("    ") + match.path + QStringLiteral(" (") + match.className +
                    QStringLiteral("): ") + Hooks(match);
            if (!match.condition.isEmpty())
            {
                text += QStringLiteral("; condition: ") + match.condition;
            }
            text += QLatin1Char('\n');
        }
        const QString name =
            ElementName(entry.kind) + QStringLiteral(" \"") + entry.id + QStringLiteral("\": ");
        for (const Problem& problem : entry.problems)
        {
            text += (problem.line > 0 ? Location(fileName, problem.line) : location) +
                    QStringLiteral(": warning: ") + name + problem.text + QLatin1Char('\n');
        }
        for (const QString& note : entry.notes)
        {
            text += location + QStringLiteral(": note: ") + name + note + QLatin1Char('\n');
        }
    }
    return text;
}

QString AttachReport::ElementName(ElementKind kind)
{
    switch (kind)
    {
        case ElementKind::Widget:
            return QStringLiteral("widget");
        case ElementKind::Button:
            return QStringLiteral("button");
        case ElementKind::Label:
            return QStringLiteral("label");
        case ElementKind::ComboBox:
            return QStringLiteral("combobox");
        case ElementKind::Object:
            return QStringLiteral("object");
        case ElementKind::AbstractPresetButton:
            return QStringLiteral("abstractPresetButton");
        case ElementKind::ButtonWithPopUpList:
            return QStringLiteral("buttonWithPopUpList");
        case ElementKind::Action:
            return QStringLiteral("action");
    }
    return QString();
}

QString AttachReport::ProblemName(ProblemKind kind)
{
    switch (kind)
    {
        case ProblemKind::InvalidRegExp:
            return QStringLiteral("invalid regular expression");
        case ProblemKind::EmptyIdSegment:
            return QStringLiteral("empty id segment");
        case ProblemKind::MalformedSignal:
            return QStringLiteral("malformed signal");
        case ProblemKind::MissingSignal:
            return QStringLiteral("missing signal");
        case ProblemKind::TriggerMismatch:
            return QStringLiteral("trigger mismatch");
        case ProblemKind::WrongClass:
            return QStringLiteral("wrong class");
        case ProblemKind::PropertyValueWithoutName:
            return QStringLiteral("propertyValue without propertyName");
        case ProblemKind::RepeatedEntry:
            return QStringLiteral("repeated entry");
        case ProblemKind::HookedTwice:
            return QStringLiteral("hooked twice");
    }
    return QString();
}

QDebug operator<<(QDebug debug, const AttachReport& report)
{
    const QDebugStateSaver saver(debug);
    debug.noquote().nospace() << report.ToText();
    return debug;
}

}  // namespace Velkor::KT::Tracking
