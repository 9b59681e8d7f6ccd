#pragma once

#include "Tracking/TrackingExport.h"

#include <QMetaType>
#include <QObject>
#include <QPointer>
#include <QSharedDataPointer>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <vector>

class QDebug;

namespace Velkor::KT::Tracking
{

namespace Config
{
class Gui;
struct GuiLines;
}  // namespace Config

class AttachReportData;

// What one attach made of each entry of the `gui` section: the objects the entry hooked, whether
// it matched nothing, and what is wrong with it. A host asks for reports with
// GuiHandler::SetAttachReportSink() or StatisticsManager::SetAttachReportSink(); the report is
// put together by the same search and hook code that makes the hooks, during the attach, and
// costs nothing afterwards. `kttrack match` makes the same report from a dumped object tree
// (MatchObjectTree() in "Tracking/Gui/ObjectTree.h").
//
// Entries are listed in document order, each widget entry followed by the entries nested in it.
// A report is an implicitly shared value: copying it is cheap.
//
//     statistics.SetAttachReportSink([](const AttachReport& report) {
//         if (report.HasProblems())
//             qWarning().noquote() << report.ToText();
//     });
class KT_TRACKING_EXPORT AttachReport
{
public:
    // The element an entry is written as.
    enum class ElementKind
    {
        Widget,
        Button,
        Label,
        ComboBox,
        Object,
        AbstractPresetButton,
        ButtonWithPopUpList,
        Action,
    };

    enum class ProblemKind
    {
        // A part of an `idIsRegExp` id is not a valid regular expression (QRegExp): it matches
        // nothing.
        InvalidRegExp,
        // The id has an empty segment ("a::b", ":a"), which the search skips, or names nothing.
        EmptyIdSegment,
        // A `signal`, `intSignal` or `stringSignal` text without the code prefix "2", without a
        // parameter list or with unbalanced parentheses: it is never connected.
        MalformedSignal,
        // A matched object has no such signal.
        MissingSignal,
        // A trigger that cannot work where it stands: an `intSignal` on a signal whose first
        // parameter is not an int, a `stringSignal` on one whose first parameter is not a
        // QString, or a signal trigger on an element other than `object` (only `object` entries
        // hook signals).
        TriggerMismatch,
        // The entry matched nothing in the attach, but objects of that name exist with a class the
        // element does not take (a `button` entry naming a QLabel). Not said of the object a
        // search starts from when the id is an expression: an expression that matches any name
        // matches it too.
        WrongClass,
        // `propertyValue` without `propertyName`: the condition is ignored.
        PropertyValueWithoutName,
        // The entry repeats an earlier sibling word for word: each of its events is sent twice.
        RepeatedEntry,
        // The entry hooked the same object more than once (each event is sent once per hook); the
        // text names the ways it was reached.
        HookedTwice,
    };

    struct Problem
    {
        ProblemKind kind;
        QString text;
        // The line of the element the problem is about, when that is not the entry itself (a
        // `signal` element inside it); 0: the entry's line.
        int line = 0;
    };

    // One trigger made on one object.
    struct Hook
    {
        // The trigger element: "clicked-event", "show-event", "signal", "intSignal", ...
        QString trigger;
        // The event it sends.
        QString event;
        // Signal triggers: the signal as written in the document, such as "2IntervalRemoved(int)".
        QString signal;
    };

    // One object an entry found.
    struct Match
    {
        // The object itself, when the report comes from a live attach (null for a dumped tree,
        // and once the object is destroyed).
        QPointer<QObject> object;
        // Object names from the top of the object's tree down to it, joined by "/"; an object
        // without a name stands as its class name in parentheses: "MainWindow/(QWidget)/okButton".
        QString path;
        // The object's class, as its meta-object names it.
        QString className;
        // The hooks made on it. Empty for an object of a `widget` entry that was searched but is
        // not the attach target (GuiHandler::Attach(root, target)), or that has no trigger of its
        // own.
        QVector<Hook> hooks;
        // An `action` entry with a `propertyName`: how its condition stands on the object at the
        // time of the attach: "'state' is missing", "'state' is \"AudioConfiguring\", not
        // \"Configuring\"", "'state' is \"Configuring\": holds", "'state' is set: holds". The
        // condition is checked again each time the action fires. Empty without a condition.
        QString condition;
        bool conditionHolds = false;
    };

    struct Entry
    {
        ElementKind kind = ElementKind::Object;
        QString id;
        bool idIsRegExp = false;
        bool idIsRoot = false;
        // The events of its triggers, in document order.
        QStringList events;
        // The line of the element in its document; 0 when unknown (a section given to
        // GuiHandler::SetConfig() without lines).
        int line = 0;
        // The index in Entries() of the `widget` entry it is nested in; -1 at the top of the
        // section.
        int parent = -1;
        // Whether the attach searched for the entry's objects: the attach of an action searches
        // only `action` entries, and the entries in a widget entry are searched only in the
        // widgets it found.
        bool searched = false;
        // In the order found; an object found twice is listed twice.
        QVector<Match> matches;
        QVector<Problem> problems;
        // What is no problem but helps to see why the entry does what it does: for an entry that
        // matched nothing, the near misses in the attached trees (objects of nearly that name,
        // of that name where the entry does not look); for a condition that holds on none of the
        // entry's objects now, that.
        QStringList notes;

        bool MatchedNothing() const { return matches.isEmpty(); }
    };

    AttachReport();
    AttachReport(const AttachReport& other);
    AttachReport(AttachReport&& other) noexcept;
    AttachReport& operator=(const AttachReport& other);
    AttachReport& operator=(AttachReport&& other) noexcept;
    ~AttachReport();

    // What was attached, in words: "'MainWindow'", "'MainWindow', target 'okButton'",
    // "action 'ActionQuit'", "3 top-level windows and 12 actions", "tree dump.json".
    QString AttachedTo() const;
    void SetAttachedTo(const QString& attachedTo);

    const QVector<Entry>& Entries() const;
    void SetEntries(const QVector<Entry>& entries);

    // Whether an entry has a problem. Notes are no problems; and a section's own problems (see
    // CheckGuiSection()) are in the first report after the section is set, not repeated in the
    // reports of later attaches.
    bool HasProblems() const;
    // The entries that matched nothing.
    int UnmatchedCount() const;

    // The readable form: a summary line, then per entry one line ("LINE: button \"stopButton\"
    // (mouse-release-event BUTTON_CAPTURE_STOP_EVENT): hooks 1 object" or "...: matched
    // nothing"), one indented line per object it found, one per problem ("LINE: warning: ...")
    // and one per note ("LINE: note: ..."). With `fileName`, lines start with "FILE:LINE:", as
    // compilers write them, so that editors jump to the entry.
    QString ToText(const QString& fileName = QString()) const;
    // The summary line alone: "Attach of 'MainWindow': 22 entries; 12 hook something (29 hooks),
    // 2 match nothing; 1 problem".
    QString Summary() const;

    // "widget", "button", ... "action": the element's name in the document.
    static QString ElementName(ElementKind kind);
    // "invalid regular expression", "malformed signal", ... "hooked twice".
    static QString ProblemName(ProblemKind kind);

private:
    QSharedDataPointer<AttachReportData> d;
};

// Receives the report of each attach.
using AttachReportSink = std::function<void(const AttachReport&)>;

// The entries of a section with the problems it shows by itself, without any object: malformed
// signal texts, triggers that cannot fit their signal or element, `propertyValue` without
// `propertyName`, invalid regular expressions, empty id segments, repeated entries. Every entry
// is listed as matching nothing. `lines` are the lines of the entries, and of the signals in
// them, in document order (Config::ktmstat() reads them); without them lines are unknown.
KT_TRACKING_EXPORT AttachReport CheckGuiSection(const Config::Gui& section,
                                                const Config::GuiLines& lines);
// The same with the lines of the entries only: problems of signals are said at their entry's.
KT_TRACKING_EXPORT AttachReport CheckGuiSection(const Config::Gui& section,
                                                const std::vector<int>& entryLines = {});

KT_TRACKING_EXPORT QDebug operator<<(QDebug debug, const AttachReport& report);

}  // namespace Velkor::KT::Tracking

Q_DECLARE_METATYPE(Velkor::KT::Tracking::AttachReport)
