#include "Tracking/Tracking.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

using Velkor::KT::Tracking::Event;

namespace
{

using Writes = std::vector<std::pair<std::string, std::string>>;

struct WriteRow
{
    const char* label;
    bool assign;  // assign (last writer wins) or insert (first writer wins)
    Writes writes;
    Event::Params expected;
};

void PrintTo(const WriteRow& row, std::ostream* out)
{
    *out << row.label;
}

class EventWriteTest : public testing::TestWithParam<WriteRow>
{
};

TEST_P(EventWriteTest, KeepsOneEntryPerKey)
{
    const WriteRow& row = GetParam();
    Event event{"EMAIL_DIALOG_SHOWN", {}};
    for (const auto& [key, value] : row.writes)
    {
        if (row.assign)
        {
            event.params[key] = value;
        }
        else
        {
            event.params.emplace(key, value);
        }
    }
    EXPECT_EQ(event.params, row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    AssignAndInsert, EventWriteTest,
    testing::Values(
        WriteRow{"AssignTwiceKeepsSecond", true, {{"LANG", "en"}, {"LANG", "de"}}, {{"LANG", "de"}}},
        WriteRow{"InsertTwiceKeepsFirst", false, {{"LANG", "en"}, {"LANG", "de"}}, {{"LANG", "en"}}},
        WriteRow{"AssignEmptyOverValue", true, {{"K", "v"}, {"K", ""}}, {{"K", ""}}},
        WriteRow{"InsertValueOverEmpty", false, {{"K", ""}, {"K", "v"}}, {{"K", ""}}},
        WriteRow{"DistinctKeysBothKept", false, {{"A", "1"}, {"B", "2"}}, {{"A", "1"}, {"B", "2"}}}),
    [](const testing::TestParamInfo<WriteRow>& info) { return std::string(info.param.label); });

struct OrderRow
{
    const char* label;
    std::vector<std::string> inserted;
    std::vector<std::string> iterated;
};

void PrintTo(const OrderRow& row, std::ostream* out)
{
    *out << row.label;
}

class EventKeyOrderTest : public testing::TestWithParam<OrderRow>
{
};

TEST_P(EventKeyOrderTest, IteratesInByteOrderOfKeys)
{
    const OrderRow& row = GetParam();
    Event event;
    for (const auto& key : row.inserted)
    {
        event.params[key] = "x";
    }
    std::vector<std::string> keys;
    for (const auto& entry : event.params)
    {
        keys.push_back(entry.first);
    }
    EXPECT_EQ(keys, row.iterated);
}

INSTANTIATE_TEST_SUITE_P(
    ByteOrder, EventKeyOrderTest,
    testing::Values(
        OrderRow{"UpperBeforeLower", {"B", "a", "A"}, {"A", "B", "a"}},
        OrderRow{"UnderscoreBetweenCases", {"a", "_", "Z"}, {"Z", "_", "a"}},
        OrderRow{"DigitsBeforeLetters", {"K2", "K", "K10"}, {"K", "K10", "K2"}},
        // Bytes above 0x7F sort after ASCII: comparison is on unsigned bytes, not on the locale.
        OrderRow{"HighBytesLast", {"\xC3\xA9", "z", "A"}, {"A", "z", "\xC3\xA9"}}),
    [](const testing::TestParamInfo<OrderRow>& info) { return std::string(info.param.label); });

TEST(EventTest, EmptyNameAndParamsAreALegalRecord)
{
    const Event event{};
    EXPECT_TRUE(event.name.empty());
    EXPECT_TRUE(event.params.empty());
    EXPECT_EQ(event, Event{});
}

TEST(EventTest, CopiesAreIndependent)
{
    Event original{"A", {{"K", "1"}}};
    Event copy = original;
    copy.params["K"] = "2";
    copy.name = "B";
    EXPECT_EQ(original.params.at("K"), "1");
    EXPECT_EQ(original.name, "A");
    EXPECT_NE(original, copy);
}

}  // namespace
