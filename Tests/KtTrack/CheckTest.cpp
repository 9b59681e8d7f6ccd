// kttrack check: documents read and validated with positions, and the checks across a main
// document and its rule documents.

#include "KtTrackRun.h"

#include <memory>

using namespace KtTrackTest;

namespace
{

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

// The main document is cross-checked with the rule documents of its own set only.
TEST(CheckTest, CrossCheckStaysWithinASet)
{
    QTemporaryDir dir;
    const std::string main = Write(dir, "main.xml",
                                   "<ktmstat><instances><IScheduler><start event=\"A\"/>"
                                   "</IScheduler></instances></ktmstat>");
    const std::string filter = Write(dir, "filter.xml", "<filter>" + Block("Z", "") + "</filter>");
    EXPECT_EQ(KtTrack({"check", "--werror", main, filter}).code, 1);
    EXPECT_EQ(KtTrack({"check", "--werror", main, "+", filter}).code, 0);
}

}  // namespace
