// Spool lines: what the writer makes of hostile texts reads back unchanged, what it could not
// have written is refused.

#include "Analytics/EventLineFormat_p.h"
#include "Analytics/EventLineReader_p.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <string>

using namespace Velkor::Analytics;

namespace
{

// A JSON string literal as text.
std::string Decoded(std::string_view literal)
{
    const QJsonDocument document =
        QJsonDocument::fromJson("[" + QByteArray(literal.data(), int(literal.size())) + "]");
    EXPECT_TRUE(document.isArray()) << literal;
    return document.array().at(0).toString().toStdString();
}

struct TextRow
{
    const char* label;
    std::string text;
};

using EventLineTextTest = KtTest::Table<TextRow>;

TEST_P(EventLineTextTest, ReadsBackWhatWasWritten)
{
    const std::string& text = GetParam().text;
    const EventLineContext context{"recorder/" + text, text, "3.1.0", {{"SID", text}, {"D", text}}};
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    std::string line;
    AppendEventLine(line, context, "N" + text, {{"K" + text, text}, {"E", ""}});
    const qint64 after = QDateTime::currentMSecsSinceEpoch();
    ASSERT_EQ(line.back(), '\n');
    line.pop_back();

    EventLineFields fields;
    ASSERT_TRUE(ReadEventLine(line, fields)) << line;
    EXPECT_GE(fields.unixMilliseconds, before);
    EXPECT_LE(fields.unixMilliseconds, after);
    EXPECT_EQ(Decoded(fields.sid), text);
    EXPECT_EQ(Decoded(fields.installation), text);
    EXPECT_EQ(Decoded(fields.identity), "recorder/" + text);
    EXPECT_EQ(Decoded(fields.version), "3.1.0");
    EXPECT_EQ(Decoded(fields.name), "N" + text);
    std::map<std::string, std::string> params;
    for (const auto& [key, value] : fields.params)
    {
        params[Decoded(key)] = Decoded(value);
    }
    EXPECT_EQ(params,
              (std::map<std::string, std::string>{{"D", text}, {"E", ""}, {"K" + text, text}}));
}

KT_ROWS(EventLineTextTest,
        {{"Plain", "abc"},
         {"NonAscii", "Zo\xC3\xAB \xE2\x9C\x93 \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x8E\xA5"},
         {"QuotesAndBackslashes", R"(say "hi" C:\dir\)"},
         {"NewlinesAndControls", std::string("a\nb\r\tc\x01\x7f", 9)},
         {"SixtyFourKiB", std::string(64 * 1024, 'v')}});

struct DamagedRow
{
    const char* label;
    std::string line;
};

using EventLineDamagedTest = KtTest::Table<DamagedRow>;

const std::string kGood =
    R"({"id":"0123abcd-0123-4567-89ab-cdef01234567","time":"2026-11-21T11:37:30.123Z",)"
    R"("sid":"s","inst":"i","app":"a","ver":"v","name":"N","params":{"K":"V"}})";

TEST(EventLineTest, TheWritersFormIsRead)
{
    EventLineFields fields;
    ASSERT_TRUE(ReadEventLine(kGood, fields));
    EXPECT_EQ(fields.unixMilliseconds, 1795261050123);
}

TEST_P(EventLineDamagedTest, IsRefused)
{
    EventLineFields fields;
    EXPECT_FALSE(ReadEventLine(GetParam().line, fields));
}

std::string Replaced(std::string text, const std::string& what, const std::string& with)
{
    return text.replace(text.find(what), what.size(), with);
}

KT_ROWS(EventLineDamagedTest,
        {{"Truncated", kGood.substr(0, kGood.size() / 2)},
         {"Binary", std::string("\x00\xff\xfe\x01{\"id\"\x80\x81", 11)},
         {"TrailingBytes", kGood + "x"},
         {"KeysReordered", Replaced(kGood, R"("sid":"s","inst":"i")", R"("inst":"i","sid":"s")")},
         {"WhiteSpace", Replaced(kGood, R"("name":"N")", R"("name": "N")")},
         {"RawNewlineInText", Replaced(kGood, R"("V")", "\"V\tW\"")},
         {"UnknownEscape", Replaced(kGood, R"("V")", R"("\x41")")},
         {"NotUtf8", Replaced(kGood, R"("V")", "\"\xC3\x28\"")},
         {"IdNotAUuid", Replaced(kGood, "0123abcd-", "0123abcdx")},
         {"TimeWithoutMilliseconds", Replaced(kGood, "30.123Z", "30Z")},
         {"NumberValue", Replaced(kGood, R"("K":"V")", R"("K":5)")},
         {"UnclosedParams", kGood.substr(0, kGood.size() - 1)}});

}  // namespace
