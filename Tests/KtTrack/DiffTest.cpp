// kttrack diff, and the description of differing events that replay --expect and diff share.

#include "KtTrackRun.h"

using namespace KtTrackTest;

namespace
{

// ---- the difference ------------------------------------------------------------------------

struct DiffRow
{
    const char* label;
    std::vector<Event> expected;
    std::vector<Event> delivered;
    std::vector<std::string> lines;
};

using EventDiffTest = KtTest::Table<DiffRow>;

TEST_P(EventDiffTest, DescribesEachDifference)
{
    const DiffRow& row = GetParam();
    std::vector<Tool::NumberedEvent> expected;
    for (std::size_t i = 0; i < row.expected.size(); ++i)
    {
        expected.push_back({row.expected[i], int(10 + i)});
    }
    EXPECT_EQ(Tool::DiffEvents(expected, row.delivered, "out"), row.lines);
}

const Event kStart{"CAPTURE_START", {{"METHOD", "TRAY"}}};
const Event kPause{"CAPTURE_PAUSE", {{"DURATION", "5"}}};
const Event kStop{"CAPTURE_STOP", {{"DURATION", "90"}, {"METHOD", "BUTTON"}}};

KT_ROWS(EventDiffTest,
        {{"Equal", {kStart, kStop}, {kStart, kStop}, {}},
         {"ValueDiffers",
          {kStart, kStop},
          {kStart, {"CAPTURE_STOP", {{"DURATION", "91"}, {"METHOD", "BUTTON"}}}},
          {"out:11: event #2 CAPTURE_STOP: \"DURATION\": expected \"90\", delivered \"91\""}},
         {"KeyMissingAndKeyExtra",
          {kStop},
          {{"CAPTURE_STOP", {{"DURATION", "90"}, {"REASON", "X"}}}},
          {"out:10: event #1 CAPTURE_STOP: \"METHOD\": expected \"BUTTON\", not delivered",
           "out:10: event #1 CAPTURE_STOP: \"REASON\": not expected, delivered \"X\""}},
         // Later events stay paired with their own counterparts.
         {"MissingInTheMiddle",
          {kStart, kPause, kStop},
          {kStart, kStop},
          {"out:11: event #2 missing: "
           "{\"name\":\"CAPTURE_PAUSE\",\"params\":{\"DURATION\":\"5\"}}"}},
         {"UnexpectedThenValueDiffers",
          {kStart, kStop},
          {kStart, kPause, {"CAPTURE_STOP", {{"DURATION", "90"}, {"METHOD", "MENU"}}}},
          {"delivered event #2 not expected: "
           "{\"name\":\"CAPTURE_PAUSE\",\"params\":{\"DURATION\":\"5\"}}",
           "out:11: event #2 (delivered #3) CAPTURE_STOP: \"METHOD\": expected \"BUTTON\", "
           "delivered \"MENU\""}},
         {"NothingDelivered",
          {kStart},
          {},
          {"out:10: event #1 missing: "
           "{\"name\":\"CAPTURE_START\",\"params\":{\"METHOD\":\"TRAY\"}}"}}});

// A changed range of the filter moves exactly the one recorded stop whose size lies between
// the old and the new bound into the next bucket.
TEST(DiffTest, ChangedRangeShowsExactlyTheChangedBucket)
{
    QTemporaryDir dir;
    std::string changed = ReadText(kFilter);
    const std::string range = "<inRange to=\"104857600\">";
    changed.replace(changed.find(range), range.size(), "<inRange to=\"40000000\">");
    const std::string newer = Write(dir, "NewFilter.xml", changed);

    const Outcome run =
        KtTrack({"diff", "--changed-only", "--old", kFilter, "--new", newer, kRawSession});
    EXPECT_EQ(run.code, 1) << run.err;
    const std::string session = ReadText(kRawSession);
    const std::string at =
        kRawSession + ":" + std::to_string(LineOf(session, session.find("\"45625000\"")));
    // Columns aside.
    std::string rows = run.out.substr(run.out.find("\n\n") + 2);
    rows = rows.substr(0, rows.find("\n\n") + 1);
    rows = QString::fromStdString(rows).simplified().toStdString();
    EXPECT_EQ(rows, at + " CAPTURE_STOP | CAPTURE_STOP \"FILE_SIZE_PRESET\": \"10_100_MB\" -> "
                         "\"100_MB_1_GB\"");
    EXPECT_NE(run.out.find("\n1 of 108 session events are delivered differently"),
              std::string::npos)
        << run.out;
}

// The whole output of two small filters over a short session: each side's events, the
// properties only one side has, the summary lines and the exit status.
const char* const kAddsP =
    "<filter><event event=\"A\"><param key=\"K\"><any><addParam key=\"P\" value=\"v\"/></any>"
    "</param></event><event event=\"D\"><param key=\"K\"><any><skipEvent/></any></param></event>"
    "</filter>";
const char* const kRenames =
    "<filter><event event=\"A\"><param key=\"K\"><any><modEvent name=\"A2\"/></any></param>"
    "</event></filter>";

struct SideRow
{
    const char* label;
    const char* older;
    const char* newer;
    std::vector<std::string> options;
    int code;
    std::string out;  // "@old" and "@new" stand for the documents' paths
};
using DiffSummaryTest = KtTest::Table<SideRow>;

TEST_P(DiffSummaryTest, PairsTheSidesAndSumsThemUp)
{
    QTemporaryDir dir;
    const std::string older = Write(dir, "old.xml", GetParam().older);
    const std::string newer = Write(dir, "new.xml", GetParam().newer);
    std::vector<std::string> args{"diff", "--old", older, "--new", newer};
    args.insert(args.end(), GetParam().options.begin(), GetParam().options.end());
    args.push_back("-");
    const Outcome run = KtTrack(args,
                                "{\"name\":\"A\",\"params\":{\"K\":\"1\"}}\n"
                                "{\"name\":\"D\",\"params\":{\"K\":\"1\"}}\n"
                                "{\"name\":\"E\"}\n");
    EXPECT_EQ(run.out,
              KtTest::ReplaceAll(KtTest::ReplaceAll(GetParam().out, "@old", older), "@new", newer));
    EXPECT_EQ(run.code, GetParam().code) << run.err;
}

KT_ROWS(DiffSummaryTest,
        {{"OnlyTheOldSideHasTheProperty",
          kAddsP,
          kRenames,
          {},
          1,
          "old: @old, :/KT/Tracking/AggregatorConfig.xml\nnew: @new, "
          ":/KT/Tracking/AggregatorConfig.xml\n\n"
          "<stdin>:1               A  | A2\n"
          "      \"P\": \"v\" -> absent\n"
          "<stdin>:2               -  > D\n"
          "      {\"K\":\"1\"}\n"
          "<stdin>:3               E    E\n"
          "\n2 of 3 session events are delivered differently (old delivers 2 events, new 3)\n"
          "gained: 1 (D 1)\nlost: none\nrenamed: 1 (A -> A2 1)\n"
          "properties changed: 1 (\"P\" 1)\n"},
         {"OnlyTheNewSideHasTheProperty",
          kRenames,
          kAddsP,
          {"--changed-only"},
          1,
          "old: @old, :/KT/Tracking/AggregatorConfig.xml\nnew: @new, "
          ":/KT/Tracking/AggregatorConfig.xml\n\n"
          "<stdin>:1               A2 | A\n"
          "      \"P\": absent -> \"v\"\n"
          "<stdin>:2               D  < -\n"
          "      {\"K\":\"1\"}\n"
          "\n2 of 3 session events are delivered differently (old delivers 3 events, new 2)\n"
          "gained: none\nlost: 1 (D 1)\nrenamed: 1 (A2 -> A 1)\n"
          "properties changed: 1 (\"P\" 1)\n"},
         {"SameRules",
          kRenames,
          kRenames,
          {"--changed-only"},
          0,
          "old: @old, :/KT/Tracking/AggregatorConfig.xml\nnew: @new, "
          ":/KT/Tracking/AggregatorConfig.xml\n\n"
          "\n0 of 3 session events are delivered differently (old delivers 3 events, new 3)\n"
          "gained: none\nlost: none\nrenamed: none\nproperties changed: none\n"}});

}  // namespace
