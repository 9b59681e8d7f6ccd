// kttrack match against a dumped object tree, and the lints of check on gui sections.

#include "KtTrackRun.h"

#include "Tracking/Gui/ObjectTree.h"

#include <QAction>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPushButton>
#include <QWidget>

using namespace KtTrackTest;

namespace
{

// ---- match against a dumped tree, and the lints of check on gui sections -------------------

// The entries start on line 2, one a line.
std::string Document(const std::string& entries)
{
    return "<ktmstat><gui>\n" + entries + "</gui></ktmstat>\n";
}

struct MatchRow
{
    const char* label;
    std::string entries;
    QByteArray tree;  // empty: the dump of the window below
    int code;
    std::vector<std::string> says;  // "@" stands for the document's path
};

using MatchTest = KtTest::Table<MatchRow>;

TEST_P(MatchTest, PrintsWhatEachEntryHooks)
{
    const MatchRow& row = GetParam();
    QWidget window;
    window.setObjectName("MainWindow");
    auto* ok = new QPushButton(&window);
    ok->setObjectName("okButton");
    auto* quit = new QAction(&window);
    quit->setObjectName("actionQuit");
    window.addAction(quit);

    QTemporaryDir dir;
    const std::string doc = Write(dir, "doc.xml", Document(row.entries));
    const std::string tree = Write(
        dir, "tree.json",
        (row.tree.isEmpty() ? Velkor::KT::Tracking::DumpObjectTree({&window}).toJson() : row.tree)
            .toStdString());
    const Outcome run = KtTrack({"match", doc, tree});
    EXPECT_EQ(run.code, row.code) << run.err;
    const std::string all = run.out + run.err;
    for (std::string says : row.says)
    {
        if (says[0] == '@')
        {
            says = doc + says.substr(1);
        }
        EXPECT_NE(all.find(says), std::string::npos) << says << "\n" << all;
    }
}

KT_ROWS(MatchTest,
        {{"EveryEntryMatches",
          "<widget id=\"MainWindow\"><button id=\"okButton\">"
          "<clicked-event event=\"OK\"/></button></widget>\n",
          {},
          0,
          {"@:2:   button \"okButton\" [OK]: hooks 1 object\n"
           "    MainWindow/okButton (QPushButton): clicked-event\n"}},
         {"SomeMatchNothing",
          "<widget id=\"MainWindow\"><button id=\"cancelButton\">"
          "<clicked-event event=\"CANCEL\"/></button></widget>\n",
          {},
          1,
          {"@:2: widget \"MainWindow\": finds 1 object\n",
           "@:2:   button \"cancelButton\" [CANCEL]: matched nothing\n"}},
         {"HookedTwiceAndWhy",
          "<action id=\"actionQuit\"><triggered-event event=\"QUIT\"/></action>\n",
          {},
          0,
          {"@:2: warning: action \"actionQuit\": 'MainWindow/actionQuit' hooked 2 times: "
           "by the attach of 'MainWindow' and by the attach of action "
           "'MainWindow/actionQuit'"}},
         {"TreeNotJson", "", "{\"roots\": [", 2, {"tree.json: error: offset"}},
         {"TreeOfAnotherKind",
          "",
          "{\"roots\": []}",
          2,
          {"tree.json: error: not a KtTracking object tree"}},
         {"TreeWithoutClasses",
          "",
          "{\"format\": \"KtTracking object tree\", \"version\": 1, \"roots\": [{}]}",
          2,
          {"tree.json: error: classes: missing or not an object"}}});

// The lints point at the entry's line, as errors do; the shipped documents have none (see
// CheckTest.ShippedDocumentsHaveNoErrors).
TEST(CheckGuiTest, WarningsCarryTheEntrysLine)
{
    QTemporaryDir dir;
    const std::string doc =
        Write(dir, "doc.xml",
              Document("<object id=\"player\"><signal event=\"P\" signal=\"Play()\"/></object>\n"
                       "<object id=\"player\"><intSignal event=\"I\" key=\"K\" "
                       "signal=\"2Name(QString)\"/></object>\n"
                       "<object id=\"a::b\"/>\n"));
    const Outcome run = KtTrack({"check", "--werror", doc});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err,
              doc +
                  ":2: warning: object \"player\": signal \"Play()\" lacks the code prefix "
                  "\"2\": it is never connected\n" +
                  doc +
                  ":3: warning: object \"player\": intSignal \"2Name(QString)\" needs a signal "
                  "whose first parameter is int; Name(QString) starts with QString\n" +
                  doc +
                  ":4: warning: object \"a::b\": id \"a::b\" has an empty segment, which "
                  "the search skips\n");
}

}  // namespace
