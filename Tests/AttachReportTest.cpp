// The attach report, the object tree dump and the offline match, on real widgets.

#include "Tracking/Gui/ObjectTree.h"
#include "Tracking/Manager/StatisticsManager.h"

#include "Support/LaunchAndCrashDoubles.h"
#include "Support/LogCapture.h"
#include "Support/Named.h"
#include "Support/RecordingTracker.h"
#include "Support/ReportingHandler.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <QWidget>

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

using KtTest::ReportingHandler;
using Velkor::KT::Tracking::AttachReport;
using Velkor::KT::Tracking::StatisticsManager;
using Kind = AttachReport::ProblemKind;
using KtTest::Named;

namespace
{

// A main window with a panel, an action of its own and one kept by a registry, and a dialog whose
// parent it is: both windows are top-level widgets, and the dialog is also in the main window's
// tree.
struct Windows
{
    Windows()
    {
        main.setObjectName("MainWindow");
        registry.setObjectName("actionRegistry");
        mode->addItems({"Game", "Desktop"});
        main.addAction(quit);
        main.addAction(aboutAction);
    }

    QObject registry;
    QWidget main;
    QWidget* panel = Named<QWidget>("panel", &main);
    QPushButton* ok = Named<QPushButton>("okButton", panel);
    QLabel* title = Named<QLabel>("titleLabel", panel);
    QComboBox* mode = Named<QComboBox>("modeCombo", panel);
    QPushButton* cancel = Named<QPushButton>("cancelButton", panel);
    QWidget* inner = Named<QWidget>("inner", panel);
    QLabel* innerLabel = Named<QLabel>("innerLabel", inner);
    QDialog* about = Named<QDialog>("AboutDialog", &main);
    QAction* quit = Named<QAction>("actionQuit", &main);
    QAction* aboutAction = Named<QAction>("actionAbout", &registry);
};

// One line of a document; `kind` the problem expected of the entry that starts on it.
struct Line
{
    const char* text;
    std::optional<Kind> kind = std::nullopt;
    const char* says = "";
    bool matches = true;
};

// Each mistake on an entry of its own; lines without an expectation have no problem.
const std::vector<Line> kMistakes = {
    {"<ktmstat><gui>"},
    {"<widget id=\"panel\">", Kind::TriggerMismatch,
     "signal \"2destroyed()\" is never hooked: only object entries hook signals"},
    {"  <signal event=\"PANEL\" signal=\"2destroyed()\"/>"},
    {"  <button id=\"okButton\"><clicked-event event=\"OK\"/></button>"},
    {"  <button id=\"okButton\"><clicked-event event=\"OK\"/></button>", Kind::RepeatedEntry,
     "repeats the earlier button \"okButton\" (line 4) word for word; clicked-event sends its "
     "event twice"},
    {"  <button id=\"titleLabel\"><clicked-event event=\"TITLE\"/></button>", Kind::WrongClass,
     "'MainWindow/panel/titleLabel' is a QLabel, which a button entry does not take (it takes "
     "QAbstractButton)",
     false},
    {"  <button id=\"ok[\" idIsRegExp=\"true\"><clicked-event event=\"RE\"/></button>",
     Kind::InvalidRegExp, "\"ok[\" is not a valid regular expression", false},
    {"</widget>"},
    {"<widget id=\"AboutDialog\"><show-event event=\"ABOUT_SHOWN\"/></widget>", Kind::HookedTwice,
     "show-event still sends once"},
    {"<action id=\"actionQuit\"><triggered-event event=\"QUIT\"/></action>", Kind::HookedTwice,
     "'MainWindow/actionQuit' hooked 2 times: by the attach of 'MainWindow' and by the attach of "
     "action 'MainWindow/actionQuit'; triggered-event sends its event twice"},
    {"<action id=\"actionAbout\" propertyValue=\"Configuring\"><triggered-event event=\"A\"/>"
     "</action>",
     Kind::PropertyValueWithoutName,
     "propertyValue \"Configuring\" without propertyName: the condition is ignored"},
    {"<action id=\"noSuchAction\"><triggered-event event=\"NONE\"/></action>", std::nullopt, "",
     false},
    {"<object id=\"MainWindow::modeCombo\"><signal event=\"M\" signal=\"2activated(int)\"/>"
     "</object>",
     Kind::EmptyIdSegment, "id \"MainWindow::modeCombo\" has an empty segment"},
    {"<object id=\"modeCombo\"><signal event=\"M\" signal=\"activated(int)\"/></object>",
     Kind::MalformedSignal, "signal \"activated(int)\" lacks the code prefix \"2\""},
    {"<object id=\"modeCombo\"><signal event=\"M\" signal=\"2activated(int\"/></object>",
     Kind::MalformedSignal, "has unbalanced parentheses"},
    {"<object id=\"modeCombo\"><signal event=\"M\" signal=\"2noSuchSignal()\"/></object>",
     Kind::MissingSignal, "QComboBox has no signal noSuchSignal()"},
    {"<object id=\"modeCombo\"><intSignal event=\"M\" key=\"K\" "
     "signal=\"2currentTextChanged(QString)\"/></object>",
     Kind::TriggerMismatch,
     "needs a signal whose first parameter is int; currentTextChanged(QString) starts with "
     "QString"},
    {"<object id=\"modeCombo\"><stringSignal event=\"M\" key=\"K\" "
     "signal=\"2currentIndexChanged(int)\"/></object>",
     Kind::TriggerMismatch, "first parameter is QString"},
    {"</gui></ktmstat>"},
};

const std::vector<Line> kCorrect = {
    {"<ktmstat><gui>"},
    {"<widget id=\"panel\">"},
    {"  <button id=\"okButton\"><clicked-event event=\"OK\"/></button>"},
    {"  <label id=\"titleLabel\"><link-activated-event event=\"LINK\"/></label>"},
    {"  <combobox id=\"modeCombo\"><current-index-changed-event event=\"MODE\" index=\"I\"/>"
     "</combobox>"},
    {"</widget>"},
    {"<action id=\"actionAbout\"><triggered-event event=\"ABOUT\"/></action>"},
    {"<object id=\"MainWindow:modeCombo\">"},
    {"  <intSignal event=\"ACTIVATED\" key=\"K\" signal=\"2activated(int)\"/>"},
    {"  <stringSignal event=\"TEXT\" key=\"T\" signal=\"2currentTextChanged(const "
     "QString&amp;)\"/>"},
    {"</object>"},
    {"</gui></ktmstat>"},
};

std::string Document(const std::vector<Line>& lines)
{
    std::string text;
    for (const Line& line : lines)
    {
        text += std::string(line.text) + "\n";
    }
    return text;
}

// A statistics manager whose reports are kept.
struct Manager
{
    explicit Manager(const std::string& document)
    {
        manager.SetConfig(document);
        manager.SetAttachReportSink([this](const AttachReport& report)
                                    { reports.push_back(report); });
    }

    std::shared_ptr<KtTest::RecordingTracker> tracker =
        std::make_shared<KtTest::RecordingTracker>();
    StatisticsManager manager{
        tracker,
        nullptr,
        nullptr,
        nullptr,
        std::make_shared<KtTest::FixedLaunchType>(2),
        std::make_shared<KtTest::ListCrashTracker>(std::vector<std::string>{}),
        nullptr,
        {}};
    std::vector<AttachReport> reports;
};

struct SectionRow
{
    const char* label;
    const std::vector<Line>* lines;
};
using AttachReportTest = KtTest::Table<SectionRow>;

// Every entry shows exactly the problem its line expects, and whether it matched.
TEST_P(AttachReportTest, EachMistakeReportedOnceOnItsEntry)
{
    const std::vector<Line>& lines = *GetParam().lines;
    Windows windows;
    Manager manager(Document(lines));
    manager.manager.AttachAllTopLevelWindows();
    ASSERT_EQ(manager.reports.size(), 1u);
    const AttachReport& report = manager.reports.front();
    EXPECT_EQ(report.AttachedTo(), "2 top-level windows and 2 actions");

    std::set<int> seen;
    for (const AttachReport::Entry& entry : report.Entries())
    {
        ASSERT_TRUE(entry.line >= 1 && entry.line <= int(lines.size()) &&
                    seen.insert(entry.line).second)
            << "an entry on line " << entry.line;
        const Line& line = lines[std::size_t(entry.line) - 1];
        SCOPED_TRACE(line.text);
        EXPECT_EQ(!entry.MatchedNothing(), line.matches);
        if (!line.kind)
        {
            EXPECT_TRUE(entry.problems.isEmpty()) << entry.problems.first().text.toStdString();
            continue;
        }
        ASSERT_EQ(entry.problems.size(), 1);
        EXPECT_EQ(entry.problems.first().kind, *line.kind);
        EXPECT_TRUE(entry.problems.first().text.contains(QLatin1String(line.says)))
            << entry.problems.first().text.toStdString();
    }
    EXPECT_EQ(report.HasProblems(), &lines == &kMistakes);
}

// The live report and the match of a dump of the same windows agree entry by entry (the
// actions' order aside: the statistics manager attaches them in the order of their addresses).
TEST_P(AttachReportTest, DumpedTreeMatchesAsTheWindowsAttach)
{
    const std::string document = Document(*GetParam().lines);
    Windows windows;
    const ReportingHandler section(document);
    QString error;
    const AttachReport offline = Velkor::KT::Tracking::MatchObjectTree(
        Velkor::KT::Tracking::DumpTopLevelWidgets(), *section.model->gui(), section.lines, &error);
    ASSERT_TRUE(error.isEmpty()) << error.toStdString();
    Manager manager(document);
    manager.manager.AttachAllTopLevelWindows();
    ASSERT_EQ(manager.reports.size(), 1u);

    const auto lines = [](const AttachReport& report)
    {
        std::vector<std::string> lines;
        for (const AttachReport::Entry& entry : report.Entries())
        {
            QStringList matches;
            for (const AttachReport::Match& match : entry.matches)
            {
                QStringList hooks;
                for (const AttachReport::Hook& hook : match.hooks)
                {
                    hooks << hook.trigger + " " + hook.event + " " + hook.signal;
                }
                matches << match.path + " " + match.className + ": " + hooks.join(", ");
            }
            matches.sort();
            QStringList problems;
            for (const AttachReport::Problem& problem : entry.problems)
            {
                problems << problem.text;
            }
            problems.sort();
            lines.push_back(QString("%1 %2 %3 | %4 | %5")
                                .arg(entry.line)
                                .arg(AttachReport::ElementName(entry.kind), entry.id,
                                     matches.join("; "), problems.join("; "))
                                .toStdString());
        }
        return lines;
    };
    EXPECT_EQ(lines(offline), lines(manager.reports.front()));
    EXPECT_EQ(offline.AttachedTo(), manager.reports.front().AttachedTo());
}

KT_ROWS(AttachReportTest, {{"Mistakes", &kMistakes}, {"Correct", &kCorrect}});

// The whole text of one attach's report: the summary's counts, each finding on the line of the
// entry it belongs to however deep the entry is nested, what an attach with a target hooks, and
// how entries that match nothing are counted. `entries` begin on line 2.
struct TextRow
{
    const char* label;
    std::string entries;
    bool targetOk;  // Attach(main, okButton) instead of Attach(main)
    std::string text;
};
using AttachReportTextTest = KtTest::Table<TextRow>;

TEST_P(AttachReportTextTest, SaysWhatTheAttachMade)
{
    Windows windows;
    ReportingHandler handler(KtTest::GuiDocument(GetParam().entries));
    handler.handler.Attach(&windows.main, GetParam().targetOk ? windows.ok : nullptr);
    ASSERT_EQ(handler.reports.size(), 1u);
    EXPECT_EQ(handler.reports.front().ToText("doc.xml").toStdString(), GetParam().text);
}

KT_ROWS(
    AttachReportTextTest,
    {{"NestedFindingsOnTheirOwnLines",
      "<widget id=\"panel\">\n"
      "  <button id=\"titleLabel\"><clicked-event event=\"T\"/></button>\n"
      "  <widget id=\"inner\">\n"
      "    <button id=\"innerLabel\"><clicked-event event=\"X\"/></button>\n"
      "    <label id=\"innerLabel\"><link-activated-event event=\"L\"/></label>\n"
      "  </widget>\n"
      "</widget>\n",
      false,
      "Attach of 'MainWindow': 5 entries; 1 hook something (1 hook), 2 match nothing; "
      "2 problems\n"
      "doc.xml:2: widget \"panel\": finds 1 object\n"
      "    MainWindow/panel (QWidget): no hooks of its own\n"
      "doc.xml:3:   button \"titleLabel\" [T]: matched nothing\n"
      "doc.xml:3: warning: button \"titleLabel\": 'MainWindow/panel/titleLabel' is a QLabel, "
      "which a button entry does not take (it takes QAbstractButton)\n"
      "doc.xml:4:   widget \"inner\": finds 1 object\n"
      "    MainWindow/panel/inner (QWidget): no hooks of its own\n"
      "doc.xml:5:     button \"innerLabel\" [X]: matched nothing\n"
      "doc.xml:5: warning: button \"innerLabel\": 'MainWindow/panel/inner/innerLabel' is a "
      "QLabel, which a button entry does not take (it takes QAbstractButton)\n"
      "doc.xml:6:     label \"innerLabel\" [L]: hooks 1 object\n"
      "    MainWindow/panel/inner/innerLabel (QLabel): link-activated-event\n"},
     {"TargetListsEveryMatchButHooksOnlyTheTarget",
      "<widget id=\"panel\">\n"
      "  <button id=\"Button\" idIsRegExp=\"true\"><clicked-event event=\"B\"/></button>\n"
      "</widget>\n"
      "<object id=\"Button\" idIsRegExp=\"true\"><signal event=\"P\" signal=\"2pressed()\"/>"
      "</object>\n",
      true,
      "Attach of 'MainWindow', target 'MainWindow/panel/okButton': 3 entries; 2 hook "
      "something (3 hooks), 0 match nothing; 0 problems\n"
      "doc.xml:2: widget \"panel\": finds 1 object\n"
      "    MainWindow/panel (QWidget): no hooks of its own\n"
      "doc.xml:3:   button \"Button\" (regular expression) [B]: finds 2 objects, hooks 1\n"
      "    MainWindow/panel/okButton (QPushButton): clicked-event\n"
      "    MainWindow/panel/cancelButton (QPushButton): no hooks of its own\n"
      "doc.xml:5: object \"Button\" (regular expression) [P]: hooks 2 objects\n"
      "    MainWindow/panel/okButton (QPushButton): signal 2pressed()\n"
      "    MainWindow/panel/cancelButton (QPushButton): signal 2pressed()\n"},
     {"EachEntryThatMatchesNothingCountsOnce",
      "<widget id=\"^(panel|inner)$\" idIsRegExp=\"true\">\n"
      "  <button id=\"noButton\"><clicked-event event=\"N\"/></button>\n"
      "  <label id=\"innerLabel\"><link-activated-event event=\"L\"/></label>\n"
      "</widget>\n"
      "<widget id=\"noWidget\"><button id=\"okButton\"><clicked-event event=\"OK\"/></button>"
      "</widget>\n",
      false,
      "Attach of 'MainWindow': 5 entries; 1 hook something (2 hooks), 3 match nothing; "
      "1 problem\n"
      "doc.xml:2: widget \"^(panel|inner)$\" (regular expression): finds 2 objects\n"
      "    MainWindow/panel (QWidget): no hooks of its own\n"
      "    MainWindow/panel/inner (QWidget): no hooks of its own\n"
      "doc.xml:3:   button \"noButton\" [N]: matched nothing\n"
      "doc.xml:4:   label \"innerLabel\" [L]: hooks 1 object (2 hooks)\n"
      "    MainWindow/panel/inner/innerLabel (QLabel): link-activated-event\n"
      "    MainWindow/panel/inner/innerLabel (QLabel): link-activated-event\n"
      "doc.xml:4: warning: label \"innerLabel\": 'MainWindow/panel/inner/innerLabel' hooked 2 "
      "times: by the attach of 'MainWindow' from 'MainWindow/panel' and by the attach of "
      "'MainWindow' from 'MainWindow/panel/inner'; link-activated-event sends its event "
      "twice\n"
      "doc.xml:6: widget \"noWidget\": matched nothing\n"
      "doc.xml:6:   button \"okButton\" [OK]: matched nothing (its widget matched nothing)\n"}});

// What the report says of hooks made twice is what the events show: a signal connected twice
// sends twice, a Qt event registered twice for one object only once.
TEST(AttachReportEventsTest, HooksMadeTwiceSendAsTheReportSays)
{
    Windows windows;
    Manager manager(Document(kMistakes));
    manager.manager.AttachAllTopLevelWindows();
    manager.tracker->Clear();
    windows.ok->click();
    windows.quit->trigger();
    windows.about->show();
    EXPECT_EQ(manager.tracker->Names(),
              (std::vector<std::string>{"OK", "OK", "QUIT", "QUIT", "ABOUT_SHOWN"}));
}

}  // namespace
