// kttrack coverage: which rules the recorded session fires.

#include "KtTrackRun.h"

#include <regex>

using namespace KtTrackTest;

namespace
{

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

// The whole output on a small document: the table, what never fired, the names no rule names,
// the summary lines, and the exit status with and without --require-all.
const char* const kSmallFilter = R"(<filter>
<event event="A">
<param key="K">
<equal value="1"><modEvent name="A1"/></equal>
<any><setValue value="x"/></any>
</param>
</event>
<event event="B"><param key="K"><any><setValue value="y"/></any></param></event>
</filter>
)";

struct SummaryRow
{
    const char* label;
    std::string session;
    int requireAllCode;
    std::string out;  // "@" stands for the filter's path
};
using CoverageSummaryTest = KtTest::Table<SummaryRow>;

TEST_P(CoverageSummaryTest, CountsEachRuleAndSumsThemUp)
{
    QTemporaryDir dir;
    const std::string filter = Write(dir, "f.xml", kSmallFilter);
    const std::string expected = KtTest::ReplaceAll(GetParam().out, "@", filter);
    const Outcome run = KtTrack({"coverage", filter, "-"}, GetParam().session);
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, expected);
    EXPECT_EQ(KtTrack({"coverage", "--require-all", filter, "-"}, GetParam().session).code,
              GetParam().requireAllCode);
}

KT_ROWS(CoverageSummaryTest,
        {{"SomeNeverFired",
          "{\"name\":\"A\",\"params\":{\"K\":\"1\"}}\n{\"name\":\"A\",\"params\":{\"K\":\"2\"}}\n"
          "{\"name\":\"C\"}\n",
          1,
          "@:2:     2 block \"A\"\n"
          "@:3:     2   param \"K\"\n"
          "@:4:     1     equal value=\"1\"\n"
          "@:5:     1     any\n"
          "@:8:     0 block \"B\"\n"
          "@:8:     0   param \"K\"\n"
          "@:8:     0     any\n"
          "\nnever fired:\n"
          "@:8: block \"B\"\n"
          "\nevent names no rule names:\n"
          "  C (1 event)\n"
          "\n@: 1 of 2 blocks, 1 of 2 params, 2 of 3 matchers fired\n"
          "3 events, 1 event names no rule names\n"},
         {"AllFired",
          "{\"name\":\"A\",\"params\":{\"K\":\"1\"}}\n{\"name\":\"A\",\"params\":{\"K\":\"2\"}}\n"
          "{\"name\":\"B\",\"params\":{\"K\":\"2\"}}\n",
          0,
          "@:2:     2 block \"A\"\n"
          "@:3:     2   param \"K\"\n"
          "@:4:     1     equal value=\"1\"\n"
          "@:5:     1     any\n"
          "@:8:     1 block \"B\"\n"
          "@:8:     1   param \"K\"\n"
          "@:8:     1     any\n"
          "\nnever fired: nothing\n"
          "\nevent names no rule names: none\n"
          "\n@: 2 of 2 blocks, 2 of 2 params, 3 of 3 matchers fired\n"
          "3 events, 0 event names no rule names\n"}});

}  // namespace
