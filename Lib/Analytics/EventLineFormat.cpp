#include "Analytics/EventLineFormat_p.h"

#include "Analytics/AnalyticsConstants.h"
#include "Analytics/JsonText.h"
#include "Analytics/RandomId_p.h"

#include <cstdint>
#include <ctime>

namespace Velkor::Analytics
{

namespace
{

void AppendDigits(char* at, unsigned value, int count)
{
    for (int index = count - 1; index >= 0; --index)
    {
        at[index] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

// "YYYY-MM-DDTHH:MM:SS.mmmZ" of now, quoted. The text of the second is kept per thread, as most
// calls fall into the same second as the one before.
void AppendUtcTime(std::string& out)
{
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    thread_local std::time_t cachedSecond = -1;
    thread_local char text[25] = "0000-00-00T00:00:00.000Z";
    if (now.tv_sec != cachedSecond)
    {
        std::tm utc{};
        ::gmtime_r(&now.tv_sec, &utc);
        AppendDigits(text, static_cast<unsigned>(utc.tm_year + 1900), 4);
        AppendDigits(text + 5, static_cast<unsigned>(utc.tm_mon + 1), 2);
        AppendDigits(text + 8, static_cast<unsigned>(utc.tm_mday), 2);
        AppendDigits(text + 11, static_cast<unsigned>(utc.tm_hour), 2);
        AppendDigits(text + 14, static_cast<unsigned>(utc.tm_min), 2);
        AppendDigits(text + 17, static_cast<unsigned>(utc.tm_sec), 2);
        cachedSecond = now.tv_sec;
    }
    AppendDigits(text + 20, static_cast<unsigned>(now.tv_nsec / 1000000), 3);
    out.push_back('"');
    out.append(text, sizeof text - 1);
    out.push_back('"');
}

// AppendJsonString(), with a fast way for the usual text: printable ASCII without '"' and '\\'
// goes in at once.
void AppendText(std::string& out, std::string_view text)
{
    for (const char c : text)
    {
        if (c < 0x20 || c > 0x7E || c == '"' || c == '\\')
        {
            AppendJsonString(out, text);
            return;
        }
    }
    out.push_back('"');
    out.append(text);
    out.push_back('"');
}

}  // namespace

void AppendEventLine(std::string& out, const EventLineContext& context, const std::string& name,
                     const Properties& properties)
{
    out += "{\"id\":\"";
    AppendRandomId(out);
    out += "\",\"time\":";
    AppendUtcTime(out);
    out += ",\"sid\":";
    const auto sid = context.defaults.find(SID);
    AppendText(out, sid == context.defaults.end() ? std::string_view() : sid->second);
    out += ",\"inst\":";
    AppendText(out, context.installation);
    out += ",\"app\":";
    AppendText(out, context.identity);
    out += ",\"ver\":";
    AppendText(out, context.version);
    out += ",\"name\":";
    AppendText(out, name);
    out += ",\"params\":{";

    // Both maps are ordered alike: merge them so the keys come out in byte order.
    bool first = true;
    auto writeEntry = [&](const std::string& key, const std::string& value)
    {
        if (!first)
        {
            out.push_back(',');
        }
        first = false;
        AppendText(out, key);
        out.push_back(':');
        AppendText(out, value);
    };
    const Properties& defaults = context.defaults;
    auto own = properties.begin();
    auto shared = defaults.begin();
    while (own != properties.end() || shared != defaults.end())
    {
        if (shared != defaults.end() && shared->first == SID)
        {
            ++shared;
            continue;
        }
        if (shared == defaults.end() || (own != properties.end() && own->first <= shared->first))
        {
            if (shared != defaults.end() && own->first == shared->first)
            {
                ++shared;  // the event's own value wins
            }
            writeEntry(own->first, own->second);
            ++own;
        }
        else
        {
            writeEntry(shared->first, shared->second);
            ++shared;
        }
    }
    out += "}}\n";
}

}  // namespace Velkor::Analytics
