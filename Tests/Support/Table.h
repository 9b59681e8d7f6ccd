#pragma once

// Data-driven tables: a table is its rows. A row is a struct whose `label` names it; the label
// becomes the row's test name, and the ctest name is the suite, the test and the label.
//
//     struct Row
//     {
//         const char* label;
//         std::string text;
//         int expected;
//     };
//     using ParseTest = KtTest::Table<Row>;
//     TEST_P(ParseTest, ReadsTheNumber)
//     {
//         EXPECT_EQ(Parse(GetParam().text), GetParam().expected);
//     }
//     KT_ROWS(ParseTest, {{"Plain", "1", 1}, {"Signed", "-1", -1}});

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace KtTest
{

template <class Row>
class Table : public testing::TestWithParam<Row>
{
};

// `label` with every character that a test name cannot hold replaced by '_'.
std::string RowName(const std::string& label);

// `text` with every `from` replaced by `to`, left to right: a row's placeholders filled in.
inline std::string ReplaceAll(std::string text, const std::string& from, const std::string& to)
{
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    {
        text.replace(at, from.size(), to);
    }
    return text;
}

}  // namespace KtTest

// The rows of the table `Suite`: a braced list of rows, or any container of them.
#define KT_ROWS(Suite, ...)                                                                 \
    INSTANTIATE_TEST_SUITE_P(, Suite,                                                       \
                             testing::ValuesIn(std::vector<Suite::ParamType>(__VA_ARGS__)), \
                             [](const testing::TestParamInfo<Suite::ParamType>& info)       \
                             { return KtTest::RowName(info.param.label); })
