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
    EXPECT_NE(run.out.find("gained: none\nlost: none\nrenamed: none\n"
                           "properties changed: 1 (\"FILE_SIZE_PRESET\" 1)\n"),
              std::string::npos)
        << run.out;
}

}  // namespace
