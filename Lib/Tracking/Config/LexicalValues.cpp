#include "Tracking/Config/LexicalValues_p.h"

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace Velkor::KT::Tracking::Config::Detail
{

namespace
{

// XML Schema whitespace collapse for the types checked here: leading and trailing blanks go.
std::string Collapsed(const std::string& text)
{
    const char* const blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string::npos)
    {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsBoolean(const std::string& text)
{
    return text == "true" || text == "false" || text == "1" || text == "0";
}

bool IsInt(const std::string& text)
{
    std::size_t i = (!text.empty() && (text[0] == '+' || text[0] == '-')) ? 1 : 0;
    if (i == text.size())
    {
        return false;
    }
    for (std::size_t j = i; j < text.size(); ++j)
    {
        if (!IsDigit(text[j]))
        {
            return false;
        }
    }
    errno = 0;
    const long long value = std::strtoll(text.c_str(), nullptr, 10);
    return errno == 0 && value >= INT_MIN && value <= INT_MAX;
}

bool IsDouble(const std::string& text)
{
    if (text == "INF" || text == "-INF" || text == "NaN")
    {
        return true;
    }
    std::size_t i = 0;
    const auto digits = [&]
    {
        const std::size_t start = i;
        while (i < text.size() && IsDigit(text[i]))
        {
            ++i;
        }
        return i - start;
    };
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
    {
        ++i;
    }
    std::size_t mantissa = digits();
    if (i < text.size() && text[i] == '.')
    {
        ++i;
        mantissa += digits();
    }
    if (mantissa == 0)
    {
        return false;
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E'))
    {
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        {
            ++i;
        }
        if (digits() == 0)
        {
            return false;
        }
    }
    return i == text.size();
}

}  // namespace

bool IsLexicalValue(ValueKind kind, const std::string& text)
{
    const std::string value = Collapsed(text);
    switch (kind)
    {
        case ValueKind::Boolean:
            return IsBoolean(value);
        case ValueKind::Int:
            return IsInt(value);
        case ValueKind::Double:
            return IsDouble(value);
    }
    return false;
}

bool IsTrue(const std::string& text)
{
    const std::string value = Collapsed(text);
    return value == "true" || value == "1";
}

const char* KindName(ValueKind kind)
{
    switch (kind)
    {
        case ValueKind::Boolean:
            return "boolean";
        case ValueKind::Int:
            return "int";
        case ValueKind::Double:
            return "double";
    }
    return "value";
}

}  // namespace Velkor::KT::Tracking::Config::Detail
