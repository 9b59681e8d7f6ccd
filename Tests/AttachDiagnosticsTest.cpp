// What the attach report tells a developer of a section that does not do what was meant: near
// misses of entries that matched nothing, how conditions stand, and no false problems; the
// offline match of a later window as it was attached live; and the verbose log.

#include "Tracking/Gui/ObjectTree.h"

#include "Support/LogCapture.h"
#include "Support/Named.h"
#include "Support/ReportingHandler.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QStringList>
#include <QWidget>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using KtTest::GuiDocument;
using KtTest::Named;
using KtTest::ReportingHandler;
using Velkor::KT::Tracking::AttachReport;

namespace
{

// A main window with a panel and a side panel, its actions kept by a registry (so that only the
// pass over the windows' actions reaches them), and twenty more windows of several kinds, none
// with actions.
struct TwentyOneWindows
{
    TwentyOneWindows()
    {
        main.setObjectName("MainWindow");
        registry.setObjectName("actionRegistry");
        quit->setProperty("state", "Configuring");
        about->setText("About");
        main.addAction(quit);
        main.addAction(about);
        for (int i = 0; i < 20; ++i)
        {
            const QString name = QStringLiteral("Other%1").arg(i);
            QWidget* window = i % 3 == 0   ? static_cast<QWidget*>(new QDialog)
                              : i % 3 == 1 ? static_cast<QWidget*>(new QMainWindow)
                                           : new QLabel(name);
            window->setObjectName(name);
            others.emplace_back(window);
        }
        // In one other window, a widget of an action's name.
        Named<QWidget>("actionAbout", others[1].get());
    }

    QObject registry;
    QWidget main;
    QWidget* panel = Named<QWidget>("panel", &main);
    QPushButton* start = Named<QPushButton>("pushButtonStart", panel);
    QLabel* title = Named<QLabel>("titleLabel", panel);
    QWidget* side = Named<QWidget>("sidePanel", &main);
    QPushButton* settings = Named<QPushButton>("settingsButton", side);
    QAction* quit = Named<QAction>("actionQuit", &registry);
    QAction* about = Named<QAction>("actionAbout", &registry);
    std::vector<std::unique_ptr<QWidget>> others;
};

// The report's lines for what it found of each entry: its objects' lines (with a condition's
// verdict), its warnings and its notes; the entries' own lines and the summary left out.
std::vector<std::string> Findings(const AttachReport& report)
{
    std::vector<std::string> findings;
    for (const QString& line : report.ToText("doc.xml").split('\n'))
    {
        if (line.contains(": warning: ") || line.contains(": note: ") ||
            line.contains("; condition: "))
        {
            findings.push_back(line.toStdString());
        }
    }
    return findings;
}

struct DiagnosisRow
{
    const char* label;
    std::string entries;
    std::vector<std::string> findings;
};

using AttachDiagnosisTest = KtTest::Table<DiagnosisRow>;

// The attach of all windows, as the statistics manager makes it at start-up.
TEST_P(AttachDiagnosisTest, SaysWhatExplainsTheEntry)
{
    TwentyOneWindows windows;
    ReportingHandler handler(GuiDocument(GetParam().entries));
    handler.handler.AttachAllTopLevelWindows();
    const std::vector<AttachReport>& reports = handler.reports;
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_EQ(reports.front().AttachedTo(), "21 top-level windows and 2 actions");
    EXPECT_EQ(Findings(reports.front()), GetParam().findings);
    const auto& findings = GetParam().findings;
    EXPECT_EQ(reports.front().HasProblems(),
              std::any_of(findings.begin(), findings.end(),
                          [](const std::string& finding)
                          { return finding.find(": warning: ") != std::string::npos; }));
}

KT_ROWS(
    AttachDiagnosisTest,
    {// An expression that matches every action: no window without actions is a problem.
     {"ExpressionMatchingEveryAction",
      "<action id=\".*\" idIsRegExp=\"true\"><triggered-event event=\"ANY\"/></action>\n",
      {}},
     {"MisspelledName",
      "<widget id=\"MainWindow\"><button id=\"pushButtonStrat\"><clicked-event event=\"S\"/>"
      "</button></widget>\n",
      {"doc.xml:2: note: button \"pushButtonStrat\": no object is named 'pushButtonStrat'; "
       "nearly so: 'pushButtonStart' (MainWindow/panel/pushButtonStart)"}},
     {"MisspelledParentInAPath",
      "<widget id=\"MainWindow\"><button id=\"sidePanle:settingsButton\"><clicked-event "
      "event=\"S\"/></button></widget>\n",
      {"doc.xml:2: note: button \"sidePanle:settingsButton\": the object "
       "'MainWindow/sidePanel/settingsButton' named 'settingsButton', where the entry does not "
       "look: its id looks for it below an object named 'sidePanle'",
       "doc.xml:2: note: button \"sidePanle:settingsButton\": no object is named 'sidePanle'; "
       "nearly so: 'sidePanel' (MainWindow/sidePanel)"}},
     {"PathThroughTheWrongParent",
      "<widget id=\"MainWindow\"><button id=\"panel:settingsButton\"><clicked-event "
      "event=\"S\"/></button></widget>\n",
      {"doc.xml:2: note: button \"panel:settingsButton\": the object "
       "'MainWindow/sidePanel/settingsButton' named 'settingsButton', where the entry does not "
       "look: its id looks for it below an object named 'panel'"}},
     {"InTheWrongWidgetEntry",
      "<widget id=\"panel\">\n"
      "  <button id=\"settingsButton\"><clicked-event event=\"S\"/></button>\n"
      "</widget>\n",
      {"doc.xml:3: note: button \"settingsButton\": the object "
       "'MainWindow/sidePanel/settingsButton' named 'settingsButton', where the entry does not "
       "look: it looks below what its widget entry (line 2) found: 'MainWindow/panel'"}},
     // A widget of the action's name in another window explains nothing: the action matched.
     {"WrongClassElsewhereWhileMatched",
      "<action id=\"actionAbout\"><triggered-event event=\"A\"/></action>\n",
      {}},
     {"NowhereInTheseWindows",
      "<widget id=\"RecordingsDialog\"><show-event event=\"R\"/></widget>\n",
      {"doc.xml:2: note: widget \"RecordingsDialog\": no object of these windows is named "
       "'RecordingsDialog': a window created later is attached when it gets its native window"}},
     {"ConditionOnAMissingProperty",
      "<action id=\"actionQuit\" propertyName=\"stat\"><triggered-event event=\"Q\"/>"
      "</action>\n",
      {"    actionRegistry/actionQuit (QAction): triggered-event; condition: 'stat' is missing",
       "doc.xml:2: note: action \"actionQuit\": its condition holds on none of its objects now "
       "('stat' is missing): it sends nothing unless that changes before the action fires"}},
     {"ConditionOnAnotherValue",
      "<action id=\"actionQuit\" propertyName=\"state\" propertyValue=\"Configurng\">"
      "<triggered-event event=\"Q\"/></action>\n",
      {"    actionRegistry/actionQuit (QAction): triggered-event; condition: 'state' is "
       "\"Configuring\", not \"Configurng\"",
       "doc.xml:2: note: action \"actionQuit\": its condition holds on none of its objects now "
       "('state' is \"Configuring\", not \"Configurng\"): it sends nothing unless that changes "
       "before the action fires"}},
     {"ConditionThatHolds",
      "<action id=\"actionQuit\" propertyName=\"state\" propertyValue=\"Configuring\">"
      "<triggered-event event=\"Q\"/></action>\n",
      {"    actionRegistry/actionQuit (QAction): triggered-event; condition: 'state' is "
       "\"Configuring\": holds"}},
     {"ConditionOnAQtProperty",
      "<action id=\"actionAbout\" propertyName=\"text\" propertyValue=\"About\">"
      "<triggered-event event=\"A\"/></action>\n",
      {"    actionRegistry/actionAbout (QAction): triggered-event; condition: 'text' is "
       "\"About\": holds"}},
     // A signal's problem is at the line of its own element.
     {"SignalProblemAtItsLine",
      "<object id=\"pushButtonStart\">\n"
      "  <signal event=\"P\" signal=\"2pressed()\"/>\n"
      "  <signal event=\"C\" signal=\"clicked()\"/>\n"
      "  <intSignal event=\"T\" key=\"K\" signal=\"2toggled(bool)\"/>\n"
      "</object>\n",
      {"doc.xml:4: warning: object \"pushButtonStart\": signal \"clicked()\" lacks the code "
       "prefix \"2\": it is never connected",
       "doc.xml:5: warning: object \"pushButtonStart\": intSignal \"2toggled(bool)\" needs a "
       "signal whose first parameter is int; toggled(bool) starts with bool"}}});

// The section's own problems are said in the first report after SetConfig(), not again for each
// window attached later; the later window's report has problems only if it brings new ones.
TEST(AttachDiagnosisOnceTest, SectionProblemsAreSaidOncePerDocument)
{
    TwentyOneWindows windows;
    ReportingHandler section(
        GuiDocument("<widget id=\"panel\"><button id=\"titleLabel\"><clicked-event event=\"T\"/>"
                    "</button></widget>\n<object id=\"a::b\"/>\n"));
    auto& handler = section.handler;
    const std::vector<AttachReport>& reports = section.reports;
    handler.Attach(windows.others[0].get());
    handler.Attach(windows.others[1].get());
    handler.Attach(&windows.main);
    handler.SetConfig(*section.model->gui(), section.lines);
    handler.Attach(windows.others[2].get());
    ASSERT_EQ(reports.size(), 4u);
    const std::string emptySegment =
        "doc.xml:3: warning: object \"a::b\": id \"a::b\" has an "
        "empty segment, which the search skips";
    EXPECT_EQ(Findings(reports[0]), std::vector<std::string>{emptySegment});
    EXPECT_FALSE(reports[1].HasProblems());
    EXPECT_EQ(Findings(reports[2]),
              std::vector<std::string>{
                  "doc.xml:2: warning: button \"titleLabel\": 'MainWindow/panel/titleLabel' is a "
                  "QLabel, which a button entry does not take (it takes QAbstractButton)"});
    EXPECT_EQ(Findings(reports[3]), std::vector<std::string>{emptySegment});
}

// `kttrack match` on a dump taken after a window was opened later predicts what the attaches
// made live: the later window had no pass over its actions, so its action is hooked once.
TEST(AttachDiagnosisMatchTest, LaterWindowMatchedAsItWasAttached)
{
    TwentyOneWindows windows;
    ReportingHandler section(
        GuiDocument("<widget id=\"MainWindow\"><button id=\"pushButtonStart\"><clicked-event "
                    "event=\"S\"/></button></widget>\n"
                    "<widget id=\"LaterDialog\"><show-event event=\"L\"/></widget>\n"
                    "<action id=\"action.*\" idIsRegExp=\"true\"><triggered-event event=\"A\"/>"
                    "</action>\n"));
    const std::vector<AttachReport>& live = section.reports;
    section.handler.AttachAllTopLevelWindows();
    QDialog later;
    later.setObjectName("LaterDialog");
    QAction* save = Named<QAction>("actionSave", &later);
    later.addAction(save);
    later.show();
    ASSERT_EQ(live.size(), 2u);

    // Per entry, the objects it hooked, once per hook.
    const auto hooked = [](const std::vector<AttachReport>& reports)
    {
        std::vector<std::vector<std::string>> hooks(reports.front().Entries().size());
        for (const AttachReport& report : reports)
        {
            for (int i = 0; i < report.Entries().size(); ++i)
            {
                for (const AttachReport::Match& match : report.Entries()[i].matches)
                {
                    if (!match.hooks.isEmpty())
                    {
                        hooks[std::size_t(i)].push_back(match.path.toStdString());
                    }
                }
                std::sort(hooks[std::size_t(i)].begin(), hooks[std::size_t(i)].end());
            }
        }
        return hooks;
    };
    QString error;
    const AttachReport offline = Velkor::KT::Tracking::MatchObjectTree(
        Velkor::KT::Tracking::DumpTopLevelWidgets(), *section.model->gui(), section.lines, &error);
    ASSERT_TRUE(error.isEmpty()) << error.toStdString();
    EXPECT_EQ(hooked({offline}), hooked(live));
    EXPECT_EQ(hooked(live)[3],
              (std::vector<std::string>{"LaterDialog/actionSave", "actionRegistry/actionAbout",
                                        "actionRegistry/actionQuit"}));
    section.tracker->Clear();
    save->trigger();
    EXPECT_EQ(section.tracker->Names(), std::vector<std::string>{"A"});
}

// The verbose log: nothing at level 0; at level 1 one summary per attach, naming the document,
// the entries that matched nothing and the problems; at level 2 the whole report. Its lines are
// warnings, apart from the viewer's informational "Stat:" lines.
struct LogRow
{
    const char* label;
    int verbosity;
    std::vector<std::string> lines;
};

using AttachDiagnosisLogTest = KtTest::Table<LogRow>;

TEST_P(AttachDiagnosisLogTest, SaysAsMuchAsAskedFor)
{
    TwentyOneWindows windows;
    ReportingHandler handler(
        GuiDocument("<widget id=\"panel\"><button id=\"titleLabel\"><clicked-event event=\"T\"/>"
                    "</button><button id=\"pushButtonStart\"><clicked-event event=\"S\"/>"
                    "</button></widget>\n"),
        "Config.xml");
    KtTest::LogCapture log;
    FLAGS_v = GetParam().verbosity;
    handler.handler.Attach(&windows.main);
    FLAGS_v = 0;
    std::vector<std::string> lines;
    for (const auto& line : log.Lines())
    {
        EXPECT_EQ(line.severity, google::GLOG_WARNING);
        std::istringstream text(line.message);
        for (std::string each; std::getline(text, each);)
        {
            lines.push_back(each);
        }
    }
    EXPECT_EQ(lines, GetParam().lines);
}

KT_ROWS(AttachDiagnosisLogTest,
        {{"Off", 0, {}},
         {"Summary",
          1,
          {"GUI Config.xml: Attach of 'MainWindow': 3 entries; 1 hook something (1 hook), 1 "
           "match nothing; 1 problem",
           "Config.xml: matched nothing: button \"titleLabel\" (line 2)",
           "Config.xml:2: warning: button \"titleLabel\": 'MainWindow/panel/titleLabel' is a "
           "QLabel, which a button entry does not take (it takes QAbstractButton)"}},
         {"WholeReport",
          2,
          {"GUI Config.xml: Attach of 'MainWindow': 3 entries; 1 hook something (1 hook), 1 "
           "match nothing; 1 problem",
           "Config.xml:2: widget \"panel\": finds 1 object",
           "    MainWindow/panel (QWidget): no hooks of its own",
           "Config.xml:2:   button \"titleLabel\" [T]: matched nothing",
           "Config.xml:2: warning: button \"titleLabel\": 'MainWindow/panel/titleLabel' is a "
           "QLabel, which a button entry does not take (it takes QAbstractButton)",
           "Config.xml:2:   button \"pushButtonStart\" [S]: hooks 1 object",
           "    MainWindow/panel/pushButtonStart (QPushButton): clicked-event"}}});

}  // namespace
