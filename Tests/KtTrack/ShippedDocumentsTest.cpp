// The shipped documents through `kttrack check`: each set cross-checked, every finding expected
// (the gaps and shared bounds of the duration and size ranges are the documents' own), and broken
// copies of the main document that the check must catch.

#include "KtTrackRun.h"
#include "ProducedEvents.h"

#include "Tracking/Config/KtmStat.h"

#include <regex>

using namespace KtTrackTest;

namespace
{

const std::string kDir = kConfigDir + "/";

// The findings without the directories of the documents: the shipped ones' and `dir`.
Outcome Check(const std::vector<std::string>& args, const std::string& dir = kDir)
{
    Outcome run = KtTrack(args);
    run.err = KtTest::ReplaceAll(KtTest::ReplaceAll(run.err, kDir, ""), dir, "");
    return run;
}

// The durations of a capture are bucketed by inclusive ranges with integer bounds.
std::string DurationFindings(const std::string& file, const std::string& event)
{
    const std::string at = file + ": warning: event '" + event + "', param 'DURATION': ";
    return at +
           "inRange from=\"1801\" to=\"3600\" and inRange from=\"3600\" to=\"10800\" touch: 3600 "
           "matches only inRange from=\"1801\" to=\"3600\"\n" +
           at +
           "inRange from=\"3600\" to=\"10800\" and inRange from=\"10800\" touch: 10800 matches "
           "only inRange from=\"3600\" to=\"10800\"\n" +
           at + "no range matches the values between 120 and 121 (such as 120.5)\n" + at +
           "no range matches the values between 600 and 601 (such as 600.5)\n" + at +
           "no range matches the values between 1800 and 1801 (such as 1800.5)\n";
}

std::string SizeFinding(const std::string& file)
{
    return file +
           ": warning: event 'CAPTURE_STOP', param 'FILE_SIZE': inRange to=\"10737418240\" and "
           "inRange from=\"10737418240\" touch: 10737418240 matches only inRange "
           "to=\"10737418240\"\n";
}

TEST(ShippedDocumentsTest, CheckFindsOnlyTheRangesBounds)
{
    const Outcome run = Check({"check", kDir + "Config.xml", kDir + "FilterConfig.xml",
                               kDir + "AggregatorConfig.xml", "+", kDir + "ConfigGACA.xml",
                               kDir + "FilterConfigGACA.xml", kDir + "AggregatorConfig.xml"});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, "5 documents checked: 0 errors, 22 warnings\n");
    const std::string full = "FilterConfig.xml";
    const std::string gaca = "FilterConfigGACA.xml";
    EXPECT_EQ(run.err, DurationFindings(full, "CAPTURE_PAUSE") +
                           DurationFindings(full, "CAPTURE_STOP") + SizeFinding(full) +
                           DurationFindings(full, "CAPTURE_CANCEL") +
                           DurationFindings(gaca, "CAPTURE_STOP") + SizeFinding(gaca));
}

// The reader stops silently at a misplaced element, and the check's producers must know every
// kind of entry: each element with an `event` attribute is an entry that sends an event.
TEST(ShippedDocumentsTest, EveryEntryOfTheMainDocumentsSendsItsEvent)
{
    for (const char* name : {"Config.xml", "ConfigGACA.xml"})
    {
        const std::string text =
            std::regex_replace(ReadText(kDir + name), std::regex("<!--[^]*?-->"), std::string());
        const std::regex event("\\sevent=\"");
        const auto written =
            std::distance(std::sregex_iterator(text.begin(), text.end(), event), {});
        std::istringstream input(text);
        const auto model =
            Velkor::KT::Tracking::Config::ktmstat(input, ::xml_schema::flags::dont_validate);
        ASSERT_GT(written, 0);
        EXPECT_EQ(Velkor::KT::KtTrack::ProducedBy(*model).entries, std::size_t(written)) << name;
    }
}

// The full main document broken in one way that silences a rule; '#' stands for a line number.
struct BrokenRow
{
    const char* label;
    std::vector<std::pair<std::string, std::string>> edits;  // every occurrence replaced
    std::string finding;
};
using BrokenMainDocumentTest = KtTest::Table<BrokenRow>;

TEST_P(BrokenMainDocumentTest, IsReported)
{
    std::string text = ReadText(kDir + "Config.xml");
    for (const auto& [find, replace] : GetParam().edits)
    {
        ASSERT_NE(text.find(find), std::string::npos) << find;
        text = KtTest::ReplaceAll(text, find, replace);
    }
    QTemporaryDir dir;
    const Outcome run = Check({"check", Write(dir, "Config.xml", text), kDir + "FilterConfig.xml",
                               kDir + "AggregatorConfig.xml"},
                              dir.path().toStdString() + "/");
    const std::string lines = std::regex_replace(run.err, std::regex(":[0-9]+: "), ":#: ");
    EXPECT_NE(lines.find(GetParam().finding), std::string::npos) << run.err;
}

KT_ROWS(BrokenMainDocumentTest,
        {
            // The raw hot key renamed: the events the filter makes of it are lost.
            {"RawEventMisnamed",
             {{"event=\"HOTKEY_TRIGGERED\"", "event=\"HOTKEY_PRESSED\""}},
             "AggregatorConfig.xml: warning: affecting event 'HOTKEY_CAPTURE_PAUSE_RESUME_EVENT' "
             "of 'CAPTURE_PAUSE' never arrives"},
            // The hot key reported under another key: the rename rules cannot fire any more.
            {"RenameKeyMisnamed",
             {{"key=\"HOTKEY_ID\"", "key=\"HOTKEY\""}},
             "FilterConfig.xml:#: warning: the rule for param 'HOTKEY_ID' of 'HOTKEY_TRIGGERED' "
             "never applies: neither Config.xml nor the rules before it set 'HOTKEY_ID'"},
            {"SettingKeyMisnamed",
             {{"value=\"CLICK_SOUND_TYPE\"", "value=\"CLICK_SOUND\""}},
             "FilterConfig.xml:#: warning: the rule for param 'CLICK_SOUND_TYPE' of 'PREF_CHANGE' "
             "never applies"},
            {"NestedKeyMisnamed",
             {{"<project size=\"FILE_SIZE\"/>", "<project size=\"SIZE\"/>"}},
             "FilterConfig.xml:#: warning: the rule for param 'FILE_SIZE' of 'CAPTURE_STOP' never "
             "applies"},
            // Signals are hooked on `object` entries only.
            {"SignalOnWidget",
             {{"<object id=\"SidebarPanel\">", "<widget id=\"SidebarPanel\">"},
              {"</object>\r\n            <abstractPresetButton",
               "</widget>\r\n            <abstractPresetButton"}},
             "FilterConfig.xml: warning: the block for 'SIDEBAR_FEATURE_CHANGE' never applies"},
            // A lone `cancel` attaches no capture observer.
            {"CancelOnlyCaptureSection",
             {{"<ICaptureInfo>", "<ICaptureInfo>\r\n<!--"},
              {"<cancel event=\"CAPTURE_CANCEL\" duration=\"DURATION\" "
               "captureRecordingType=\"CAPTURE_RECORDING_TYPE\"/>",
               "--><cancel event=\"CAPTURE_CANCEL\"/><!--"},
              {"</ICaptureInfo>", "--></ICaptureInfo>"}},
             "AggregatorConfig.xml: warning: main event 'CAPTURE_CANCEL' never arrives"},
            {"TrayWithoutMethod",
             {{"<param key=\"METHOD\" value=\"TRAY\"/>", ""}},
             "AggregatorConfig.xml:#: warning: affecting event 'TRAY_CAPTURE_RESUME_EVENT' of "
             "'CAPTURE_RESUME' never carries 'METHOD': 'CAPTURE_RESUME' is not told what caused "
             "it"},
        });

}  // namespace
