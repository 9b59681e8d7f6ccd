// kttrack replay: events through the real stages, compared with expected events with
// --expect, and the reading of event lines with their positions.

#include "KtTrackRun.h"

#include "Tracking/Delivery/RecordingKtTracker.h"
#include "Tracking/Events/EventJson.h"

#include "Support/RecordingTracker.h"

#include <memory>

using namespace KtTrackTest;

namespace
{

// ---- replay: the real stages, end to end through the command line ---------------------------

struct ReplayRow
{
    const char* label;
    std::vector<std::string> options;
    std::string events;
    std::string expectedOut;
};

using ReplayTest = KtTest::Table<ReplayRow>;

TEST_P(ReplayTest, DeliversWhatTheStagesLetThrough)
{
    const ReplayRow& row = GetParam();
    std::vector<std::string> args{"replay"};
    args.insert(args.end(), row.options.begin(), row.options.end());
    args.push_back("-");
    const Outcome run = KtTrack(args, row.events);
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, row.expectedOut);
}

KT_ROWS(ReplayTest,
        {// The filter makes the hot key's cause; only a filter standing before the aggregator
         // lets it reach the start.
         {"HotkeyRenamedThenMerged",
          {},
          R"({"name":"HOTKEY_TRIGGERED","params":{"HOTKEY_ID":"captureStartStop","METHOD":"HK"}}
{"name": "HOTKEY_TRIGGERED", "params": {"HOTKEY_ID": "showHideOverlays", "METHOD": "HK"}}
{"name": "CAPTURE_START"}
{"name": "CAPTURE_START"}
)",
          "{\"name\":\"CAPTURE_START\",\"params\":{\"METHOD\":\"HK\"}}\n"
          "{\"name\":\"CAPTURE_START\",\"params\":{}}\n"},
         {"NoStagesPassEverythingInOrder",
          {"--filter=none", "--aggregator=none"},
          R"({"name": "TRAY_CAPTURE_START_EVENT", "params": {"METHOD": "TRAY"}}
{"name": "SHOW_WINDOW", "params": {"WINDOW": "MAIN"}}
{"name": "SHOW_WINDOW", "params": {"WINDOW": "MAIN"}}
)",
          "{\"name\":\"TRAY_CAPTURE_START_EVENT\",\"params\":{\"METHOD\":\"TRAY\"}}\n"
          "{\"name\":\"SHOW_WINDOW\",\"params\":{\"WINDOW\":\"MAIN\"}}\n"
          "{\"name\":\"SHOW_WINDOW\",\"params\":{\"WINDOW\":\"MAIN\"}}\n"},
         {"TextFormatOfTheViewer",
          {"--format", "text", "--aggregator", "none"},
          R"({"name": "CAPTURE_STOP", "params": {"FILE_SIZE": "1048576", "AUDIO_SOURCES": "M"}})",
          "CAPTURE_STOP\n\tAUDIO_SOURCES=M\n\tFILE_SIZE=1048576\n"
          "\tFILE_SIZE_PRESET=UP_TO_1_MB\n"}});

TEST(ReplayDocumentsTest, OwnRuleDocumentsAreUsed)
{
    QTemporaryDir dir;
    const std::string filter = Write(dir, "f.xml", R"(<filter><event event="A"><param key="K">
        <equal value="1"><modEvent name="B"/></equal></param></event></filter>)");
    const std::string aggregator =
        Write(dir, "a.xml",
              "<aggregator><event event=\"C\"><affectingEventName>B</affectingEventName></event>"
              "</aggregator>");
    const Outcome run = KtTrack({"replay", "--filter", filter, "--aggregator", aggregator, "-"},
                                "{\"name\":\"A\",\"params\":{\"K\":\"1\"}}\n{\"name\":\"C\"}\n");
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, "{\"name\":\"C\",\"params\":{\"K\":\"1\"}}\n");
}

// ---- replay --expect --------------------------------------------------------------------------

TEST(ReplayExpectTest, EqualIsZeroDifferentIsOneNamingTheKey)
{
    QTemporaryDir dir;
    const std::string events =
        Write(dir, "events.jsonl",
              "{\"name\":\"TRAY_CAPTURE_START_EVENT\",\"params\":{\"METHOD\":\"TRAY\"}}\n"
              "{\"name\":\"CAPTURE_START\"}\n");
    const std::string same = Write(
        dir, "same.jsonl", "{\"name\": \"CAPTURE_START\", \"params\": {\"METHOD\": \"TRAY\"}}\n");
    const std::string other =
        Write(dir, "other.jsonl",
              "\n{\"name\": \"CAPTURE_START\", \"params\": {\"METHOD\": \"MENU\"}}\n");

    const Outcome equal = KtTrack({"replay", "--expect", same, events});
    EXPECT_EQ(equal.code, 0) << equal.out << equal.err;
    EXPECT_EQ(equal.out, "");

    const Outcome different = KtTrack({"replay", "--expect", other, events});
    EXPECT_EQ(different.code, 1);
    EXPECT_EQ(different.out, other +
                                 ":2: event #1 CAPTURE_START: \"METHOD\": expected \"MENU\", "
                                 "delivered \"TRAY\"\n");
}

// ---- malformed input ----------------------------------------------------------------------

struct MalformedRow
{
    const char* label;
    std::string text;
    std::string message;  // after "events.jsonl:"
};

using MalformedInputTest = KtTest::Table<MalformedRow>;

TEST_P(MalformedInputTest, NamesFileLineAndFault)
{
    EXPECT_THAT([this]
                { Tool::ParseEvents(QByteArray::fromStdString(GetParam().text), "events.jsonl"); },
                testing::ThrowsMessage<Tool::ToolError>(
                    testing::StartsWith("events.jsonl:" + GetParam().message)));
}

const std::string kTwoGood = "{\"name\":\"A\"}\n{\"name\":\"B\",\"params\":{}}\n";

KT_ROWS(MalformedInputTest,
        {{"BrokenJson", kTwoGood + "{\"name\":\"C\",}\n", "3: invalid JSON at column"},
         {"BlankLinesStillCount", "\n" + kTwoGood + "\r\n[1]\n", "5: expected an object"},
         {"NameMissing", kTwoGood + "{\"params\":{}}", "3: \"name\" is missing"},
         {"NameNotString", "{\"name\":7}", "1: \"name\" must be a string"},
         {"NumberValue", kTwoGood + "{\"name\":\"C\",\"params\":{\"D\":90}}",
          "3: value of \"D\" must be a string, not a number"},
         {"ParamsArray", "{\"name\":\"C\",\"params\":[]}", "1: \"params\" must be an object"},
         {"MisspelledKey", "{\"name\":\"C\",\"param\":{}}", "1: unknown key \"param\""},
         {"RepeatedParam", kTwoGood + "{\"name\":\"C\",\"params\":{\"D\":\"1\",\"D\":\"2\"}}",
          "3: key \"D\" appears twice in one object"},
         {"RepeatedThroughEscape", "{\"name\":\"C\",\"na\\u006de\":\"D\"}",
          "1: key \"name\" appears"},
         {"RepeatedObject", "{\"params\":{\"a\":[]},\"params\":{}}", "1: key \"params\" appears"}});

TEST(MalformedCommandTest, ExitsWithTwoAndTheLine)
{
    const Outcome run = KtTrack({"replay", "-"}, kTwoGood + "{\"name\":\n");
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("<stdin>:3: "), std::string::npos) << run.err;
}

// What the recording stage writes comes back unchanged, texts that need escaping included.
TEST(EventsJsonTest, RecordedEventsReadBack)
{
    using namespace std::string_literals;
    const std::vector<Event> events{
        {"A", {{"name", "name"}}},
        {"QUOTE\"BACK\\SLASH", {{"TAB\tKEY", "line\nbreak"}, {"EMPTY", ""}}},
        {"PATH", {{"FILE", "C:\\Users\\J\xc3\xb6rg\\v\xe2\x82\xac.mp4"}, {"CTRL", "\x01\x1f\x7f"}}},
        {"NUL\0INSIDE"s, {{"EMOJI \xf0\x9f\x8e\xa5", "\0"s}, {"\xe4\xb8\xad", "\r\b\f"}}},
        {"\xef\xbb\xbf"
         "BOM",
         {{"U+FEFF", "\xef\xbb\xbf\xef\xbb\xbfx\xef\xbb\xbf"}}}};
    QTemporaryDir dir;
    const QString path = dir.filePath("raw.jsonl");
    {
        Velkor::KT::Tracking::RecordingKtTracker recorder(
            std::make_shared<KtTest::RecordingTracker>(), path);
        for (const Event& event : events)
        {
            recorder.Track(event);
        }
    }
    const std::vector<Tool::NumberedEvent> read =
        Tool::ParseEvents(Tool::ReadInput(path.toStdString(), std::cin), "x");
    ASSERT_EQ(read.size(), events.size());
    for (std::size_t i = 0; i < events.size(); ++i)
    {
        EXPECT_EQ(read[i].event, events[i]) << i;
        EXPECT_EQ(read[i].line, int(i) + 1);
    }
}

}  // namespace
