#include "Analytics/EventLineReader_p.h"

namespace Velkor::Analytics
{

namespace
{

class Cursor
{
public:
    explicit Cursor(std::string_view text) : m_text(text) {}

    bool Literal(std::string_view expected)
    {
        if (m_text.substr(m_at, expected.size()) != expected)
        {
            return false;
        }
        m_at += expected.size();
        return true;
    }

    bool Peek(char c) const { return m_at < m_text.size() && m_text[m_at] == c; }
    bool AtEnd() const { return m_at == m_text.size(); }

    // A JSON string literal: its view, quotes included, or false.
    bool String(std::string_view& literal)
    {
        const std::size_t start = m_at;
        if (!Literal("\""))
        {
            return false;
        }
        while (m_at < m_text.size())
        {
            const auto byte = static_cast<unsigned char>(m_text[m_at]);
            if (byte == '"')
            {
                ++m_at;
                literal = m_text.substr(start, m_at - start);
                return true;
            }
            if (byte < 0x20)
            {
                return false;
            }
            if (byte == '\\')
            {
                if (!Escape())
                {
                    return false;
                }
            }
            else if (byte >= 0x80)
            {
                if (!Utf8Sequence())
                {
                    return false;
                }
            }
            else
            {
                ++m_at;
            }
        }
        return false;
    }

private:
    static bool IsHex(char c)
    {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    }

    bool Escape()
    {
        if (m_at + 1 >= m_text.size())
        {
            return false;
        }
        const char kind = m_text[m_at + 1];
        if (kind == 'u')
        {
            if (m_at + 6 > m_text.size())
            {
                return false;
            }
            for (std::size_t index = m_at + 2; index < m_at + 6; ++index)
            {
                if (!IsHex(m_text[index]))
                {
                    return false;
                }
            }
            m_at += 6;
            return true;
        }
        if (std::string_view("\"\\/bfnrt").find(kind) == std::string_view::npos)
        {
            return false;
        }
        m_at += 2;
        return true;
    }

    // One well-formed UTF-8 sequence of two to four bytes (Unicode's table 3-7).
    bool Utf8Sequence()
    {
        const auto at = [&](std::size_t index)
        { return static_cast<unsigned char>(m_text[m_at + index]); };
        const unsigned char lead = at(0);
        std::size_t length = 0;
        unsigned char low = 0x80;
        unsigned char high = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF)
        {
            length = 2;
        }
        else if (lead >= 0xE0 && lead <= 0xEF)
        {
            length = 3;
            low = lead == 0xE0 ? 0xA0 : 0x80;
            high = lead == 0xED ? 0x9F : 0xBF;
        }
        else if (lead >= 0xF0 && lead <= 0xF4)
        {
            length = 4;
            low = lead == 0xF0 ? 0x90 : 0x80;
            high = lead == 0xF4 ? 0x8F : 0xBF;
        }
        else
        {
            return false;
        }
        if (m_at + length > m_text.size() || at(1) < low || at(1) > high)
        {
            return false;
        }
        for (std::size_t index = 2; index < length; ++index)
        {
            if (at(index) < 0x80 || at(index) > 0xBF)
            {
                return false;
            }
        }
        m_at += length;
        return true;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

bool IsUuidLiteral(std::string_view literal)
{
    if (literal.size() != 38)
    {
        return false;
    }
    for (std::size_t index = 1; index < 37; ++index)
    {
        const char c = literal[index];
        const bool dash = index == 9 || index == 14 || index == 19 || index == 24;
        if (dash ? c != '-' : !((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f')))
        {
            return false;
        }
    }
    return true;
}

// Days from 1970-01-01 to the given date of the proleptic Gregorian calendar.
std::int64_t DaysFromCivil(std::int64_t year, unsigned month, unsigned day)
{
    year -= month <= 2;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const auto yearOfEra = static_cast<unsigned>(year - era * 400);
    const unsigned dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + static_cast<std::int64_t>(dayOfEra) - 719468;
}

// "YYYY-MM-DDTHH:MM:SS.mmmZ", quoted, as milliseconds since the epoch.
bool ParseTime(std::string_view literal, std::int64_t& milliseconds)
{
    constexpr std::string_view pattern = "\"dddd-dd-ddTdd:dd:dd.dddZ\"";
    if (literal.size() != pattern.size())
    {
        return false;
    }
    for (std::size_t index = 0; index < pattern.size(); ++index)
    {
        const bool digit = literal[index] >= '0' && literal[index] <= '9';
        if (pattern[index] == 'd' ? !digit : literal[index] != pattern[index])
        {
            return false;
        }
    }
    const auto number = [&](std::size_t from, std::size_t count)
    {
        unsigned value = 0;
        for (std::size_t index = from; index < from + count; ++index)
        {
            value = value * 10 + static_cast<unsigned>(literal[index] - '0');
        }
        return value;
    };
    const unsigned year = number(1, 4), month = number(6, 2), day = number(9, 2);
    const unsigned hour = number(12, 2), minute = number(15, 2), second = number(18, 2);
    if (month < 1 || month > 12 || day < 1 || day > 31 || hour > 23 || minute > 59 || second > 60)
    {
        return false;
    }
    const std::int64_t days = DaysFromCivil(year, month, day);
    milliseconds = ((days * 24 + hour) * 60 + minute) * 60000 + second * 1000 + number(21, 3);
    return true;
}

}  // namespace

bool ReadEventLine(std::string_view line, EventLineFields& fields)
{
    Cursor cursor(line);
    fields.params.clear();
    const auto field = [&](std::string_view key, std::string_view& value)
    { return cursor.Literal(key) && cursor.String(value); };
    if (!(field("{\"id\":", fields.id) && IsUuidLiteral(fields.id) &&
          field(",\"time\":", fields.time) && ParseTime(fields.time, fields.unixMilliseconds) &&
          field(",\"sid\":", fields.sid) && field(",\"inst\":", fields.installation) &&
          field(",\"app\":", fields.identity) && field(",\"ver\":", fields.version) &&
          field(",\"name\":", fields.name) && cursor.Literal(",\"params\":{")))
    {
        return false;
    }
    if (!cursor.Peek('}'))
    {
        do
        {
            std::string_view key;
            std::string_view value;
            if (!cursor.String(key) || !cursor.Literal(":") || !cursor.String(value))
            {
                return false;
            }
            fields.params.emplace_back(key, value);
        } while (cursor.Literal(","));
    }
    return cursor.Literal("}}") && cursor.AtEnd();
}

}  // namespace Velkor::Analytics
