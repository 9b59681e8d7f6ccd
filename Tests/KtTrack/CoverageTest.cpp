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

}  // namespace
