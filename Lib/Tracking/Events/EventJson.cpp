#include "Tracking/Events/EventJson.h"

#include <QByteArray>
#include <QString>

namespace Velkor::KT::Tracking
{

namespace
{

// The escape of an ASCII byte, or null when it stands for itself.
const char* Escape(unsigned char byte, char (&hex)[7])
{
    switch (byte)
    {
        case '"':
            return "\\\"";
        case '\\':
            return "\\\\";
        case '\b':
            return "\\b";
        case '\f':
            return "\\f";
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default:
            break;
    }
    if (byte >= 0x20 && byte != 0x7F)
    {
        return nullptr;
    }
    static const char kDigits[] = "0123456789abcdef";
    hex[4] = kDigits[byte >> 4];
    hex[5] = kDigits[byte & 0xF];
    return hex;
}

}  // namespace

void AppendJsonString(std::string& out, std::string_view text)
{
    out.push_back('"');
    std::size_t i = 0;
    while (i < text.size())
    {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte >= 0x80)
        {
            // U+FEFF is escaped: taken for a byte order mark, it is dropped by UTF-8 decoders at
            // the start of their input (QString::fromUtf8 here, Qt's JSON reader at the start of
            // a string).
            static const std::string_view kByteOrderMark = "\xEF\xBB\xBF";
            if (text.substr(i, kByteOrderMark.size()) == kByteOrderMark)
            {
                out += "\\ufeff";
                i += kByteOrderMark.size();
                continue;
            }
            // A run of non-ASCII bytes up to the next U+FEFF: kept when it is UTF-8, ill-formed
            // parts replaced.
            std::size_t end = i + 1;
            while (end < text.size() && static_cast<unsigned char>(text[end]) >= 0x80 &&
                   text.substr(end, kByteOrderMark.size()) != kByteOrderMark)
            {
                ++end;
            }
            const QByteArray utf8 =
                QString::fromUtf8(text.data() + i, static_cast<int>(end - i)).toUtf8();
            out.append(utf8.constData(), static_cast<std::size_t>(utf8.size()));
            i = end;
            continue;
        }
        char hex[7] = "\\u00";
        if (const char* escaped = Escape(byte, hex))
        {
            out += escaped;
        }
        else
        {
            out.push_back(static_cast<char>(byte));
        }
        ++i;
    }
    out.push_back('"');
}

std::string EventJson(const Event& event)
{
    std::string out = "{\"name\":";
    AppendJsonString(out, event.name);
    out += ",\"params\":{";
    const char* separator = "";
    for (const auto& [key, value] : event.params)
    {
        out += separator;
        separator = ",";
        AppendJsonString(out, key);
        out.push_back(':');
        AppendJsonString(out, value);
    }
    out += "}}";
    return out;
}

}  // namespace Velkor::KT::Tracking
