#include "Analytics/JsonText.h"

#include <cstdint>

namespace Velkor::Analytics
{

namespace
{

const char kReplacementCharacter[] = "\xEF\xBF\xBD";

bool IsContinuation(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

// Length of the well-formed UTF-8 sequence at the start of `bytes`, or 0 when it is ill-formed;
// then `consumed` tells how many bytes form the maximal ill-formed subpart (at least 1).
std::size_t WellFormedLength(std::string_view bytes, std::size_t& consumed)
{
    const auto lead = static_cast<unsigned char>(bytes[0]);
    std::size_t length = 0;
    unsigned char secondLow = 0x80;
    unsigned char secondHigh = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF)
    {
        length = 2;
    }
    else if (lead >= 0xE0 && lead <= 0xEF)
    {
        length = 3;
        if (lead == 0xE0)
        {
            secondLow = 0xA0;  // no overlong forms
        }
        else if (lead == 0xED)
        {
            secondHigh = 0x9F;  // no surrogates
        }
    }
    else if (lead >= 0xF0 && lead <= 0xF4)
    {
        length = 4;
        if (lead == 0xF0)
        {
            secondLow = 0x90;  // no overlong forms
        }
        else if (lead == 0xF4)
        {
            secondHigh = 0x8F;  // nothing above U+10FFFF
        }
    }
    else
    {
        consumed = 1;
        return 0;
    }

    std::size_t index = 1;
    for (; index < length && index < bytes.size(); ++index)
    {
        const auto byte = static_cast<unsigned char>(bytes[index]);
        const bool valid =
            index == 1 ? byte >= secondLow && byte <= secondHigh : IsContinuation(byte);
        if (!valid)
        {
            break;
        }
    }
    if (index == length)
    {
        consumed = length;
        return length;
    }
    consumed = index;
    return 0;
}

}  // namespace

void AppendJsonString(std::string& out, std::string_view bytes)
{
    static const char kHex[] = "0123456789abcdef";
    out.push_back('"');
    std::size_t position = 0;
    while (position < bytes.size())
    {
        const auto byte = static_cast<unsigned char>(bytes[position]);
        if (byte < 0x80)
        {
            switch (byte)
            {
                case '"':
                    out += "\\\"";
                    break;
                case '\\':
                    out += "\\\\";
                    break;
                case '\b':
                    out += "\\b";
                    break;
                case '\f':
                    out += "\\f";
                    break;
                case '\n':
                    out += "\\n";
                    break;
                case '\r':
                    out += "\\r";
                    break;
                case '\t':
                    out += "\\t";
                    break;
                default:
                    if (byte < 0x20 || byte == 0x7F)
                    {
                        out += "\\u00";
                        out.push_back(kHex[byte >> 4]);
                        out.push_back(kHex[byte & 0xF]);
                    }
                    else
                    {
                        out.push_back(static_cast<char>(byte));
                    }
            }
            ++position;
            continue;
        }
        std::size_t consumed = 0;
        const std::size_t length = WellFormedLength(bytes.substr(position), consumed);
        if (length > 0)
        {
            out.append(bytes.data() + position, length);
        }
        else
        {
            out += kReplacementCharacter;
        }
        position += consumed;
    }
    out.push_back('"');
}

}  // namespace Velkor::Analytics
