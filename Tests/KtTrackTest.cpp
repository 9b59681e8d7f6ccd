// The rule authors' tool: replaying events through the real stages, comparing with expected
// events, reading and validating documents with positions, the checks across documents, and
// matching gui sections against a dumped object tree.

#include "EventDiff.h"
#include "EventsJson.h"
#include "KtTrack.h"
#include "ReplayCommand.h"
#include "Report.h"
#include "RuleChecks.h"
#include "RuleDocument.h"
#include "Schemas.h"
#include "ToolError.h"

#include "Tracking/Config/ConfigLoader.h"
#include "Tracking/Delivery/RecordingKtTracker.h"
#include "Tracking/Events/EventJson.h"
#include "Tracking/Gui/ObjectTree.h"

#include "Support/RecordingTracker.h"
#include "Support/Table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QWidget>

#include <iostream>
#include <memory>
#include <ostream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

using Velkor::KT::Tracking::Event;
using Velkor::KT::Tracking::LoadConfigFromQrc;
namespace Tool = Velkor::KT::KtTrack;

namespace
{

const std::string kConfigDir = SOURCE_CONFIG_DIR;

struct Outcome
{
    int code;
    std::string out;
    std::string err;
};

Outcome KtTrack(const std::vector<std::string>& args, const std::string& input = {})
{
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    const int code = Tool::RunKtTrack(args, in, out, err);
    return {code, out.str(), err.str()};
}

std::string Write(const QTemporaryDir& dir, const std::string& name, const std::string& text)
{
    const QString path = dir.filePath(QString::fromStdString(name));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.data(), static_cast<qint64>(text.size()));
    return path.toStdString();
}

int LineOf(const std::string& text, std::size_t offset)
{
    return 1 + static_cast<int>(std::count(text.begin(), text.begin() + offset, '\n'));
}

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
         {"MisspelledKey", "{\"name\":\"C\",\"param\":{}}", "1: unknown key \"param\""}});

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
        {"A", {}},
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

// ---- check: seeded errors ----------------------------------------------------------------------

struct SeedRow
{
    const char* label;
    const char* document;
    std::string find;
    std::string replace;
    std::string errorAt;  // the error is on the first line at or after the seed holding this
    std::string message;
};
using SeededErrorTest = KtTest::Table<SeedRow>;

TEST_P(SeededErrorTest, ReportedAtItsLine)
{
    const SeedRow& row = GetParam();
    std::string text = LoadConfigFromQrc(std::string("/KT/Tracking/") + row.document);
    const std::size_t seed = text.find(row.find);
    ASSERT_NE(seed, std::string::npos);
    text.replace(seed, row.find.size(), row.replace);
    const std::size_t at = text.find(row.errorAt, seed);
    ASSERT_NE(at, std::string::npos);

    QTemporaryDir dir;
    const std::string path = Write(dir, row.document, text);
    const Outcome run = KtTrack({"check", path});
    EXPECT_EQ(run.code, 2);
    const std::string prefix = path + ":" + std::to_string(LineOf(text, at)) + ":";
    const std::size_t line = run.err.find(prefix);
    ASSERT_NE(line, std::string::npos) << run.err;
    EXPECT_NE(run.err.find(row.message, line), std::string::npos) << run.err;
}

KT_ROWS(SeededErrorTest,
        {
            {"UnclosedTag", "FilterConfig.xml", "</param>", "", "</event>", ": error: "},
            {"BadBoolean", "FilterConfig.xml", "skipFullRepeats=\"true\"",
             "skipFullRepeats=\"maybe\"", "maybe", "invalid"},
            {"MissingAttribute", "AggregatorConfig.xml", "<event event=\"CAPTURE_PAUSE\">",
             "<event>", "<event>", "expected attribute 'event'"},
            // Read by the application without complaint, but everything after it is ignored.
            {"SectionsSwapped", "Config.xml", "<gui>", "<instances/><gui>", "<gui>",
             "(KtmStat.xsd)"},
            {"UnknownRoot", "AggregatorConfig.xml", "<aggregator ", "<aggregators ", "<aggregators",
             "unknown root element 'aggregators'"},
            // Valid for the reader, not for the schemas: each kind is validated against its own.
            {"MatchersOutOfOrder", "FilterConfig.xml", "<param key=\"WINDOW\">",
             "<param key=\"WINDOW\"><any/>", "<equal", "(Filter.xsd)"},
            {"TextInEvent", "AggregatorConfig.xml", "<affectingEventName>",
             "text<affectingEventName>", "text", "(Aggregator.xsd)"},
        });

// ---- check: the rules and the documents across ----------------------------------------------

// The main document emits "A" with the keys "K" and "METHOD", and "N" without keys. Each filter
// block is a line of its own, the first on line 2.
struct CrossRow
{
    const char* label;
    std::string filter;                 // inside <filter>; empty: no filter document
    std::string aggregator;             // inside <aggregator>; empty: no aggregator document
    std::vector<std::string> warnings;  // substrings, each of one warning line, in order
};
using CrossCheckTest = KtTest::Table<CrossRow>;

std::unique_ptr<Tool::RuleDocument> Parse(const std::string& path, const std::string& text,
                                          Tool::Schemas& schemas)
{
    std::ostringstream errors;
    Tool::Report report(errors);
    auto document = Tool::ParseRuleDocument(path, text, schemas, report);
    EXPECT_TRUE(document) << errors.str();
    return document;
}

std::string Block(const std::string& event, const std::string& param, const char* key = "K")
{
    return "<event event=\"" + event + "\"><param key=\"" + key + "\">" + param +
           "</param></event>\n";
}

TEST_P(CrossCheckTest, WarnsOfRulesThatCannotWork)
{
    const CrossRow& row = GetParam();
    Tool::Schemas schemas;
    const auto main = Parse("main.xml",
                            "<ktmstat><instances><IDurationLimiter><beforeUserStop event=\"A\">"
                            "<param key=\"K\" value=\"1\"/><param key=\"METHOD\" value=\"M\"/>"
                            "</beforeUserStop><beforeScheduleStop event=\"N\"/></IDurationLimiter>"
                            "</instances></ktmstat>",
                            schemas);
    std::unique_ptr<Tool::RuleDocument> filter;
    std::unique_ptr<Tool::RuleDocument> aggregator;
    std::ostringstream lines;
    Tool::Report report(lines);
    if (!row.filter.empty())
    {
        filter = Parse("filter.xml", "<filter>\n" + row.filter + "</filter>", schemas);
        Tool::CheckFilterRanges(*filter, report);
    }
    if (!row.aggregator.empty())
    {
        aggregator = Parse("agg.xml", "<aggregator>" + row.aggregator + "</aggregator>", schemas);
        Tool::CheckAggregatorRoles(*aggregator, report);
    }
    Tool::CrossCheck(*main, filter.get(), aggregator.get(), report);

    std::vector<std::string> warnings;
    std::istringstream in(lines.str());
    for (std::string line; std::getline(in, line);)
    {
        warnings.push_back(line);
    }
    ASSERT_EQ(warnings.size(), row.warnings.size()) << lines.str();
    for (std::size_t i = 0; i < warnings.size(); ++i)
    {
        EXPECT_NE(warnings[i].find(row.warnings[i]), std::string::npos) << warnings[i];
    }
    EXPECT_EQ(report.Warnings(), int(row.warnings.size()));
}

const std::string kRenameAToB = Block("A", "<any><modEvent name=\"B\"/></any>");
const std::string kCByB = "<event event=\"C\"><affectingEventName>B</affectingEventName></event>";

KT_ROWS(
    CrossCheckTest,
    {
        {"BlockForEmittedEvent", Block("A", "<any/>"), "", {}},
        {"BlockNothingEmits",
         Block("Z", "<any/>"),
         "",
         {"filter.xml: warning: the block for 'Z' never applies: main.xml emits no such event "
          "and no block renames"}},
        {"BlockAfterRenameApplies", kRenameAToB + Block("B", "<any/>"), "", {}},
        {"BlockBeforeRenameNever",
         Block("B", "<any/>") + kRenameAToB,
         "",
         {"'B' never applies: main.xml emits no such event, and only a later block"}},
        // A rename in a block that never applies produces nothing either.
        {"RenameOfUnemittedEvent",
         Block("Q", "<any><modEvent name=\"B\"/></any>") + Block("B", "<any/>"),
         "",
         {"the block for 'Q' never applies",
          "'B' never applies: main.xml emits no such event, and the blocks before it"}},
        // Nor does one in a rule on a key that nothing sets; keys added before are set.
        {"RuleOnKeyNothingSets",
         Block("N", "<any><modEvent name=\"B\"/></any>") + Block("B", "<any/>"),
         "",
         {"filter.xml:2: warning: the rule for param 'K' of 'N' never applies: neither main.xml "
          "nor the rules before it set 'K' on 'N'",
          "the block for 'B' never applies"}},
        {"KeyAddedBeforeTravelsWithRename",
         Block("A", "<any><addParam key=\"L\" value=\"1\"/><modEvent name=\"B\"/></any>") +
             Block("B", "<any/>", "L"),
         "",
         {}},
        {"AffectingMadeByFilter",
         kRenameAToB,
         "<event event=\"A\"><affectingEventName>B</affectingEventName></event>",
         {}},
        {"AffectingWithoutFilter",
         "",
         "<event event=\"A\"><affectingEventName>B</affectingEventName></event>",
         {"agg.xml: warning: affecting event 'B' of 'A' never arrives: main.xml does not emit "
          "it"}},
        {"MainNeverArrives",
         kRenameAToB,
         kCByB,
         {"main event 'C' never arrives: neither main.xml nor the renames of filter.xml"}},
        {"AffectingWithoutMethod",
         "",
         "<event event=\"A\">\n<affectingEventName>N</affectingEventName></event>",
         {"agg.xml:2: warning: affecting event 'N' of 'A' never carries 'METHOD': 'A' is not "
          "told what caused it"}},
        {"MainAlsoAffecting",
         "",
         "<event event=\"A\"><affectingEventName>A</affectingEventName></event>",
         {"'A' is a main event and also an affecting event of 'A'"}},
        {"ApplicationStartIsEmitted", Block("APP_EVERY_START", "<any/>"), "", {}},
        // Ranges of one param: bounds are inclusive and the first range that matches wins.
        {"AscendingThresholds",
         Block("A",
               "<inRange to=\"1048576\"/><inRange to=\"10485760\"/><inRange from=\"10485761\"/>"),
         "",
         {"no range matches the values between 10485760 and 10485761 (such as 10485760.5)"}},
        {"SharedBound",
         Block("A", "<inRange from=\"1801\" to=\"3600\"/><inRange from=\"3600\" to=\"10800\"/>"),
         "",
         {"inRange from=\"1801\" to=\"3600\" and inRange from=\"3600\" to=\"10800\" touch: 3600 "
          "matches only inRange from=\"1801\" to=\"3600\""}},
        {"CoveredByEarlier",
         Block("A", "<inRange to=\"100\"/><inRange from=\"50\"/><inRange from=\"60\" to=\"70\"/>"),
         "",
         {"inRange from=\"60\" to=\"70\" never matches: the ranges before it cover"}},
        {"NoBounds",
         Block("A", "<inRange/><inRange from=\"0\"/>"),
         "",
         {"inRange without \"from\" or \"to\" never matches"}},
        // Inverted ranges match outside their bounds and take no part.
        {"InvertedIgnored",
         Block("A",
               "<inRange to=\"10\"/><inRange actOn=\"false\" from=\"20\" to=\"30\"/>"
               "<inRange from=\"10\"/>"),
         "",
         {"touch: 10 matches only inRange to=\"10\""}},
    });

TEST(CheckTest, WarningsFailOnlyWithWerror)
{
    QTemporaryDir dir;
    const std::string main = Write(dir, "main.xml",
                                   "<ktmstat><instances><IScheduler><start event=\"A\"/>"
                                   "</IScheduler></instances></ktmstat>");
    const std::string filter = Write(dir, "filter.xml", "<filter>" + Block("Z", "") + "</filter>");
    const Outcome lenient = KtTrack({"check", main, filter});
    EXPECT_EQ(lenient.code, 0);
    EXPECT_NE(lenient.err.find(filter + ": warning: the block for 'Z'"), std::string::npos)
        << lenient.err;
    EXPECT_EQ(KtTrack({"check", "--werror", main, filter}).code, 1);
    // In another set the main document does not meet the filter.
    EXPECT_EQ(KtTrack({"check", "--werror", main, "+", filter}).code, 0);
}

// ---- the rule author's workbench: explain, coverage, diff ------------------------------------

const std::string kFilter = kConfigDir + "/FilterConfig.xml";
const std::string kAggregator = kConfigDir + "/AggregatorConfig.xml";
const std::string kRawSession = std::string(KT_TEST_DATA) + "/DemoSessionRaw.jsonl";

std::string ReadText(const std::string& path)
{
    QFile file(QString::fromStdString(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    return file.readAll().toStdString();
}

// Replaces each "@F(MARK|MARK...)" and "@A(...)" by "FILE:LINE" of the shipped filter or
// aggregator document: the line of the last MARK, each searched after the one before.
std::string Expand(std::string text)
{
    for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at))
    {
        const std::string& path = text[at + 1] == 'F' ? kFilter : kAggregator;
        const std::string document = ReadText(path);
        const std::size_t end = text.find(')', at);
        std::size_t found = 0;
        std::istringstream marks(text.substr(at + 3, end - at - 3));
        for (std::string mark; std::getline(marks, mark, '|');)
        {
            found = document.find(mark, found);
            EXPECT_NE(found, std::string::npos) << mark;
        }
        const std::string where = path + ":" + std::to_string(LineOf(document, found));
        text.replace(at, end + 1 - at, where);
        at += where.size();
    }
    return text;
}

struct ExplainRow
{
    const char* label;
    std::string events;
    std::string explanation;  // with @F(...) and @A(...) for the rules' FILE:LINE
};

using ExplainTest = KtTest::Table<ExplainRow>;

// The road of each event as the stages report it, each step at the line of the rule that made it;
// the JSON form tells the same steps at the same places.
TEST_P(ExplainTest, NamesEachRuleThatActed)
{
    const ExplainRow& row = GetParam();
    const std::vector<std::string> args{"replay",       "--explain", "--filter", kFilter,
                                        "--aggregator", kAggregator, "-"};
    const Outcome text = KtTrack(args, row.events);
    EXPECT_EQ(text.code, 0) << text.err;
    EXPECT_EQ(text.out, Expand(row.explanation));

    // The second event alone, after the first has run.
    std::vector<std::string> lineArgs = args;
    lineArgs.insert(lineArgs.end() - 1, {"--line", "2"});
    const std::size_t second = text.out.find("<stdin>:2:");
    EXPECT_EQ(KtTrack(lineArgs, row.events).out,
              text.out.substr(second, text.out.find("\n\n", second) + 2 - second));

    std::vector<std::string> textPlaces;
    std::istringstream lines(text.out);
    for (std::string line; std::getline(lines, line);)
    {
        if (line.rfind("  " + kConfigDir, 0) == 0)
        {
            textPlaces.push_back(line.substr(2, line.find(": ") - 2));
        }
    }
    std::vector<std::string> jsonPlaces;
    std::vector<std::string> jsonArgs = args;
    jsonArgs.insert(jsonArgs.end() - 1, {"--format", "jsonl"});
    const Outcome json = KtTrack(jsonArgs, row.events);
    for (const QByteArray& line : QByteArray::fromStdString(json.out).split('\n'))
    {
        for (const QJsonValue step :
             QJsonDocument::fromJson(line).object().value("steps").toArray())
        {
            jsonPlaces.push_back(step.toObject().value("at").toString().toStdString());
        }
    }
    EXPECT_EQ(jsonPlaces, textPlaces);
}

KT_ROWS(ExplainTest,
        {// The stop button's cause is held back; the stop is classified by three rules of its
         // block and then takes the cause's method.
         {"HeldCauseClassifiedStopMergedMethod",
          R"({"name": "BUTTON_CAPTURE_STOP_EVENT", "params": {"METHOD": "BUTTON"}}
{"name": "CAPTURE_STOP", "params": {"DURATION": "90", "FILE_SIZE": "5242880", "AUDIO_SOURCES": ""}}
)",
          R"(<stdin>:1: BUTTON_CAPTURE_STOP_EVENT {"METHOD":"BUTTON"}
  filter: no block applies
  @A(<event event="CAPTURE_STOP">|>BUTTON_CAPTURE_STOP_EVENT<): aggregator: held as a cause of "CAPTURE_STOP": {"METHOD":"BUTTON"}
  => held back by the aggregator

<stdin>:2: CAPTURE_STOP {"AUDIO_SOURCES":"","DURATION":"90","FILE_SIZE":"5242880"}
  @F(<event event="CAPTURE_STOP">): filter block "CAPTURE_STOP" applies
  @F(<event event="CAPTURE_STOP">|<inRange to="120">):   param "DURATION" = "90": inRange to="120" matches
  @F(<event event="CAPTURE_STOP">|"UP_TO_2_MIN"):     addParam "DURATION_ID": absent -> "UP_TO_2_MIN"
  @F(<event event="CAPTURE_STOP">|<param key="AUDIO_SOURCES">|<equal value="">):   param "AUDIO_SOURCES" = "": equal value="" matches
  @F(<event event="CAPTURE_STOP">|<param key="AUDIO_SOURCES">|<setValue value="OFF"/>):     setValue "AUDIO_SOURCES": "" -> "OFF"
  @F(<event event="CAPTURE_STOP">|<inRange to="10485760">):   param "FILE_SIZE" = "5242880": inRange to="10485760" matches
  @F(<event event="CAPTURE_STOP">|"1_10_MB"):     addParam "FILE_SIZE_PRESET": absent -> "1_10_MB"
  @A(<event event="CAPTURE_STOP">): aggregator: main event "CAPTURE_STOP", merges its held cause
  @A(<event event="CAPTURE_STOP">):   "METHOD": absent -> "BUTTON"
  => delivered CAPTURE_STOP {"AUDIO_SOURCES":"OFF","DURATION":"90","DURATION_ID":"UP_TO_2_MIN","FILE_SIZE":"5242880","FILE_SIZE_PRESET":"1_10_MB","METHOD":"BUTTON"}

)"},
         // The hot key is renamed, loses its id, gains its method and is held for both main
         // events that share it; the repeat memory lets a window pass once.
         {"RenamedHotkeyHeldTwiceWindowRepeatDropped",
          R"({"name": "HOTKEY_TRIGGERED", "params": {"HOTKEY_ID": "takeScreenshot"}}
{"name": "SHOW_WINDOW", "params": {"WINDOW": "MAIN"}}
{"name": "SHOW_WINDOW", "params": {"WINDOW": "MAIN"}}
)",
          R"(<stdin>:1: HOTKEY_TRIGGERED {"HOTKEY_ID":"takeScreenshot"}
  @F(<event event="HOTKEY_TRIGGERED">): filter block "HOTKEY_TRIGGERED" applies
  @F(<event event="HOTKEY_TRIGGERED">|<equal value="takeScreenshot">):   param "HOTKEY_ID" = "takeScreenshot": equal value="takeScreenshot" matches
  @F(<event event="HOTKEY_TRIGGERED">|<equal value="takeScreenshot">|<modParam):     modParam "METHOD": absent -> "HOTKEY_CAPTURING"
  @F(<event event="HOTKEY_TRIGGERED">|<equal value="takeScreenshot">|<modEvent):     modEvent: "HOTKEY_TRIGGERED" -> "HOTKEY_TAKE_SCREENSHOT_EVENT"
  @F(<event event="HOTKEY_TRIGGERED">|<equal value="takeScreenshot">|<delParam):     delParam "HOTKEY_ID": "takeScreenshot" -> deleted
  @A(<event event="SCREENSHOT_SAVE">|>HOTKEY_TAKE_SCREENSHOT_EVENT<): aggregator: held as a cause of "SCREENSHOT_SAVE": {"METHOD":"HOTKEY_CAPTURING"}
  @A(<event event="SCREENSHOT_ERROR">|>HOTKEY_TAKE_SCREENSHOT_EVENT<): aggregator: held as a cause of "SCREENSHOT_ERROR": {"METHOD":"HOTKEY_CAPTURING"}
  => held back by the aggregator

<stdin>:2: SHOW_WINDOW {"WINDOW":"MAIN"}
  @F(<event event="SHOW_WINDOW">): filter block "SHOW_WINDOW" applies
  @F(<event event="SHOW_WINDOW">|<any>):   param "WINDOW" = "MAIN": any matches
  @F(<event event="SHOW_WINDOW">|<skipEvent):     skipEvent skipFullRepeats: not a repeat of the last "SHOW_WINDOW": remembered, passes
  aggregator: names no such event
  => delivered SHOW_WINDOW {"WINDOW":"MAIN"}

<stdin>:3: SHOW_WINDOW {"WINDOW":"MAIN"}
  @F(<event event="SHOW_WINDOW">): filter block "SHOW_WINDOW" applies
  @F(<event event="SHOW_WINDOW">|<any>):   param "WINDOW" = "MAIN": any matches
  @F(<event event="SHOW_WINDOW">|<skipEvent):     skipEvent skipFullRepeats: the same properties as the last "SHOW_WINDOW" that passed: dropped
  => dropped by the filter

)"}});

// `text` without the element whose tag begins on `line`.
std::string WithoutElementAt(const std::string& text, int line)
{
    std::size_t begin = 0;
    for (int i = 1; i < line; ++i)
    {
        begin = text.find('\n', begin) + 1;
    }
    begin = text.find('<', begin);
    const std::string name = text.substr(begin + 1, text.find_first_of(" />", begin) - begin - 1);
    const std::size_t close = text.find('>', begin);
    const std::size_t end =
        text[close - 1] == '/' ? close + 1 : text.find("</" + name + ">", begin) + name.size() + 3;
    return text.substr(0, begin) + text.substr(end);
}

// Coverage is checked against what each rule does: the demo's recorded raw session through the
// shipped documents, one matcher or aggregator entry deleted at a time. A rule that never fired
// leaves the delivered stream as it is; one that fired changes it, unless all it does is write
// what is already there.
TEST(CoverageTest, DemoSessionFiresExactlyTheRulesThatShapeWhatItDelivers)
{
    const Outcome run = KtTrack({"coverage", kFilter, kAggregator, kRawSession});
    ASSERT_EQ(run.code, 0) << run.err;
    const std::vector<Event> session = []
    {
        std::vector<Event> events;
        for (auto& numbered :
             Tool::ParseEvents(QByteArray::fromStdString(ReadText(kRawSession)), "s"))
        {
            events.push_back(numbered.event);
        }
        return events;
    }();
    const std::string filter = ReadText(kFilter);
    const std::string aggregator = ReadText(kAggregator);
    const std::vector<Event> delivered = Tool::Replay(session, &filter, &aggregator);
    // Fired, but writes only what the demo's events already hold: NOISE_CONTROL "YES" -> "YES".
    const std::string noEffect = "param \"NOISE_CONTROL\" equal value=\"YES\"";

    int checked = 0;
    int fired = 0;
    std::string param;  // the param rule or main event the rows below belong to
    int mainCount = 0;
    std::istringstream rows(run.out);
    for (std::string row; std::getline(rows, row) && !row.empty();)
    {
        // FILE:LINE: COUNT WHAT, WHAT indented by depth.
        std::smatch match;
        ASSERT_TRUE(std::regex_match(row, match, std::regex("(.+?):(\\d+): +(\\d+) +(.*)"))) << row;
        const int line = std::stoi(match[2]);
        const int count = std::stoi(match[3]);
        const std::string what = match[4];
        const bool isFilter = match[1] == kFilter;
        if (what.rfind("param ", 0) == 0 || what.rfind("main ", 0) == 0)
        {
            param = what;
            mainCount = count;
        }
        if (what.rfind("block ", 0) == 0 || what.rfind("param ", 0) == 0)
        {
            continue;  // what they do is their matchers'
        }
        const std::string edited = WithoutElementAt(isFilter ? filter : aggregator, line);
        const std::vector<Event> without = isFilter ? Tool::Replay(session, &edited, &aggregator)
                                                    : Tool::Replay(session, &filter, &edited);
        ++checked;
        fired += count > 0;
        // A cause held for a main event that never comes is never delivered with it.
        const bool observable =
            param + " " + what != noEffect && !(what.rfind("affecting ", 0) == 0 && mainCount == 0);
        if (count == 0)
        {
            EXPECT_TRUE(without == delivered) << "never fired, yet it matters: " << row;
        }
        else if (observable)
        {
            EXPECT_TRUE(without != delivered) << "fired, yet nothing changes without it: " << row;
        }
    }
    EXPECT_EQ(checked, 130 + 7 + 35);  // matchers, main events, affecting events
    EXPECT_GT(fired, 50);
}

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

// ---- the executable --------------------------------------------------------------------------

struct ProcessRow
{
    const char* label;
    std::vector<std::string> args;  // "@" is replaced by the shipped documents' directory
    int code;
};

using ProcessTest = KtTest::Table<ProcessRow>;

TEST_P(ProcessTest, ExitStatus)
{
    QStringList args;
    for (std::string arg : GetParam().args)
    {
        if (arg.rfind("@", 0) == 0)
        {
            arg = kConfigDir + arg.substr(1);
        }
        args << QString::fromStdString(arg);
    }
    QProcess process;
    process.start(QStringLiteral(KTTRACK_PATH), args);
    process.closeWriteChannel();
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), GetParam().code) << process.readAllStandardError().toStdString();
}

KT_ROWS(ProcessTest,
        {{"Help", {"--help"}, 0},
         {"NoCommand", {}, 2},
         {"UnknownCommand", {"fly"}, 2},
         {"ReplayEmptyInput", {"replay", "-"}, 0},
         {"ReplayMissingFile", {"replay", "/nonexistent.jsonl"}, 2},
         {"ReplayWrongKindOfDocument", {"replay", "--filter", "@/AggregatorConfig.xml", "-"}, 2},
         {"CheckMissingFile", {"check", "/nonexistent.xml"}, 2},
         {"ReplayLineWithoutExplain", {"replay", "--line", "2", "-"}, 2},
         {"CoverageNoSession", {"coverage", "@/FilterConfig.xml"}, 2},
         {"CoverageMainDocument", {"coverage", "@/Config.xml", "-"}, 2},
         {"CoverageRequireAllUnfired", {"coverage", "--require-all", "@/FilterConfig.xml", "-"}, 1},
         {"DiffSameRules",
          {"diff", "--old", "@/FilterConfig.xml", "--new", "@/FilterConfig.xml", "-"},
          0},
         {"DiffNoNewRules", {"diff", "--old", "@/FilterConfig.xml", "-"}, 2},
         {"MatchFilterDocument", {"match", "@/FilterConfig.xml", "-"}, 2},
         {"MatchWithoutTree", {"match", "@/Config.xml"}, 2}});

}  // namespace
