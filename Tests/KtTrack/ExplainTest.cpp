// kttrack replay --explain: the road of each event, each step at the line of the rule that
// made it.

#include "KtTrackRun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

using namespace KtTrackTest;

namespace
{

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
         // A second cause replaces the first, unused one; the main event takes it over its own
         // value; the next main event finds no cause held.
         {"CauseReplacedThenMergedThenNoneHeld",
          R"({"name": "TRAY_CAPTURE_START_EVENT", "params": {"METHOD": "TRAY"}}
{"name": "MENU_BAR_CAPTURE_START_EVENT", "params": {"METHOD": "MENU_BAR"}}
{"name": "CAPTURE_START", "params": {"METHOD": "OWN"}}
{"name": "CAPTURE_START"}
)",
          R"(<stdin>:1: TRAY_CAPTURE_START_EVENT {"METHOD":"TRAY"}
  filter: no block applies
  @A(<event event="CAPTURE_START">|>TRAY_CAPTURE_START_EVENT<): aggregator: held as a cause of "CAPTURE_START": {"METHOD":"TRAY"}
  => held back by the aggregator

<stdin>:2: MENU_BAR_CAPTURE_START_EVENT {"METHOD":"MENU_BAR"}
  filter: no block applies
  @A(<event event="CAPTURE_START">|>MENU_BAR_CAPTURE_START_EVENT<): aggregator: held as a cause of "CAPTURE_START": {"METHOD":"MENU_BAR"}, replacing the unused cause {"METHOD":"TRAY"}
  => held back by the aggregator

<stdin>:3: CAPTURE_START {"METHOD":"OWN"}
  @F(<event event="CAPTURE_START">): filter block "CAPTURE_START" applies
  @A(<event event="CAPTURE_START">): aggregator: main event "CAPTURE_START", merges its held cause
  @A(<event event="CAPTURE_START">):   "METHOD": "OWN" -> "MENU_BAR"
  => delivered CAPTURE_START {"METHOD":"MENU_BAR"}

<stdin>:4: CAPTURE_START {}
  @F(<event event="CAPTURE_START">): filter block "CAPTURE_START" applies
  @A(<event event="CAPTURE_START">): aggregator: main event "CAPTURE_START", no cause held
  => delivered CAPTURE_START {}

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

}  // namespace
