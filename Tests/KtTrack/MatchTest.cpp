// kttrack match against a dumped object tree, and the lints of check on gui sections.

#include "KtTrackRun.h"

#include "Support/Named.h"

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
    int werrorCode;                 // the exit status with --werror
    std::vector<std::string> says;  // "@" stands for the document's path
};

using MatchTest = KtTest::Table<MatchRow>;

TEST_P(MatchTest, PrintsWhatEachEntryHooks)
{
    const MatchRow& row = GetParam();
    QWidget window;
    window.setObjectName("MainWindow");
    KtTest::Named<QPushButton>("okButton", &window);
    window.addAction(KtTest::Named<QAction>("actionQuit", &window));

    QTemporaryDir dir;
    const std::string doc = Write(dir, "doc.xml", Document(row.entries));
    const std::string tree = Write(
        dir, "tree.json",
        (row.tree.isEmpty() ? Velkor::KT::Tracking::DumpObjectTree({&window}).toJson() : row.tree)
            .toStdString());
    const Outcome run = KtTrack({"match", doc, tree});
    EXPECT_EQ(run.code, row.code) << run.err;
    EXPECT_EQ(KtTrack({"match", "--werror", doc, tree}).code, row.werrorCode);
    const std::string all = run.out + run.err;
    for (const std::string& says : row.says)
    {
        EXPECT_NE(all.find(KtTest::ReplaceAll(says, "@", doc)), std::string::npos) << says << "\n"
                                                                                   << all;
    }
}

KT_ROWS(MatchTest,
        {{"SomeMatchNothing",
          "<widget id=\"MainWindow\"><button id=\"cancelButton\">"
          "<clicked-event event=\"CANCEL\"/></button></widget>\n",
          {},
          1,
          1,
          {"@:2: widget \"MainWindow\": finds 1 object\n",
           "@:2:   button \"cancelButton\" [CANCEL]: matched nothing\n"}},
         // Problems fail only with --werror.
         {"HookedTwiceAndWhy",
          "<action id=\"actionQuit\"><triggered-event event=\"QUIT\"/></action>\n",
          {},
          0,
          1,
          {"@:2: warning: action \"actionQuit\": 'MainWindow/actionQuit' hooked 2 times: "
           "by the attach of 'MainWindow' and by the attach of action "
           "'MainWindow/actionQuit'"}},
         {"CleanPassesWithWerror",
          "<widget id=\"MainWindow\"><button id=\"okButton\">"
          "<clicked-event event=\"OK\"/></button></widget>\n",
          {},
          0,
          0,
          {"@:2:   button \"okButton\" [OK]: hooks 1 object\n"
           "    MainWindow/okButton (QPushButton): clicked-event\n"}},
         {"NearMissNoted",
          "<widget id=\"MainWindow\"><button id=\"okButon\">"
          "<clicked-event event=\"OK\"/></button></widget>\n",
          {},
          1,
          1,
          {"@:2: note: button \"okButon\": no object is named 'okButon'; nearly so: 'okButton' "
           "(MainWindow/okButton)\n"}},
         {"TreeNotJson", "", "{\"roots\": [", 2, 2, {"tree.json: error: offset"}},
         {"TreeOfAnotherKind",
          "",
          "{\"roots\": []}",
          2,
          2,
          {"tree.json: error: not a KtTracking object tree"}},
         {"TreeWithoutClasses",
          "",
          "{\"format\": \"KtTracking object tree\", \"version\": 1, \"roots\": [{}]}",
          2,
          2,
          {"tree.json: error: classes: missing or not an object"}}});

// The lints point at the line of the entry they are about, however deep it is nested, as errors
// do; the shipped documents have none (see ShippedDocumentsTest). An entry
// repeats another only when both stand in the same place: the same widget entry, or the top of
// the section. Warnings fail the check only with --werror.
struct LintRow
{
    const char* label;
    std::string entries;
    std::string warnings;  // "@" stands for the document's path
};

using CheckGuiTest = KtTest::Table<LintRow>;

TEST_P(CheckGuiTest, WarningsCarryTheEntrysLine)
{
    QTemporaryDir dir;
    const std::string doc = Write(dir, "doc.xml", Document(GetParam().entries));
    const std::string expected = KtTest::ReplaceAll(GetParam().warnings, "@", doc);
    const Outcome run = KtTrack({"check", doc});
    EXPECT_EQ(run.err, expected);
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(KtTrack({"check", "--werror", doc}).code, expected.empty() ? 0 : 1);
}

KT_ROWS(
    CheckGuiTest,
    {{"SignalsAndIds",
      "<object id=\"player\"><signal event=\"P\" signal=\"Play()\"/></object>\n"
      "<object id=\"player\"><intSignal event=\"I\" key=\"K\" "
      "signal=\"2Name(QString)\"/></object>\n"
      "<object id=\"a::b\"/>\n",
      "@:2: warning: object \"player\": signal \"Play()\" lacks the code prefix \"2\": it is never "
      "connected\n"
      "@:3: warning: object \"player\": intSignal \"2Name(QString)\" needs a signal whose first "
      "parameter is int; Name(QString) starts with QString\n"
      "@:4: warning: object \"a::b\": id \"a::b\" has an empty segment, which the search skips\n"},
     {"NestedEntriesOnTheirOwnLines",
      "<widget id=\"w\">\n"
      "  <widget id=\"v\">\n"
      "    <object id=\"o\"><signal event=\"S\" signal=\"2x(\"/></object>\n"
      "  </widget>\n"
      "  <object id=\"\"/>\n"
      "</widget>\n",
      "@:4: warning: object \"o\": signal \"2x(\" has unbalanced parentheses: it is never "
      "connected\n"
      "@:6: warning: object \"\": id \"\" names no object: the entry matches nothing\n"},
     {"RepeatOfAnEarlierSiblingNotNextToIt",
      "<object id=\"a\"><signal event=\"S\" signal=\"2s()\"/></object>\n"
      "<object id=\"b\"/>\n"
      "<object id=\"a\"><signal event=\"S\" signal=\"2s()\"/></object>\n",
      "@:4: warning: object \"a\": repeats the earlier object \"a\" (line 2) word for word; "
      "signal sends its event twice\n"},
     {"SameEntryInTwoWidgetsIsNoRepeat",
      "<widget id=\"w1\"><button id=\"b\"><clicked-event event=\"E\"/></button></widget>\n"
      "<widget id=\"w2\"><button id=\"b\"><clicked-event event=\"E\"/></button></widget>\n"
      "<widget id=\"w1\"><widget id=\"w1\"><button id=\"b\"><clicked-event event=\"E\"/></button>"
      "</widget></widget>\n",
      ""},
     {"RepeatedWidgetWarnedItsChildrenNot",
      "<widget id=\"w\"><button id=\"b\"><clicked-event event=\"E\"/></button></widget>\n"
      "<widget id=\"w\"><button id=\"b\"><clicked-event event=\"E\"/></button></widget>\n",
      "@:3: warning: widget \"w\": repeats the earlier widget \"w\" (line 2) word for word: what "
      "it holds is hooked again\n"},
     {"AnotherEventIsNoRepeat",
      "<action id=\"q\"><triggered-event event=\"A\"/></action>\n"
      "<action id=\"q\"><triggered-event event=\"B\"/></action>\n"
      "<action id=\"q\" propertyName=\"state\"><triggered-event event=\"A\"/></action>\n",
      ""}});

}  // namespace
