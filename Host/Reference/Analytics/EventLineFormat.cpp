#include "Analytics/EventLineFormat.h"

#include "Analytics/AnalyticsConstants.h"
#include "Analytics/JsonText.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace Velkor::Analytics
{

namespace
{

void AppendUtcTime(std::string& out)
{
    const auto now = std::chrono::system_clock::now();
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() %
        1000;
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm utc{};
    ::gmtime_r(&seconds, &utc);
    char text[32];
    const int length = std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ",
                                     utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday, utc.tm_hour,
                                     utc.tm_min, utc.tm_sec, static_cast<int>(milliseconds));
    out.push_back('"');
    out.append(text, static_cast<size_t>(length));
    out.push_back('"');
}

}  // namespace

std::string FormatEventLine(const std::string& identity, const Properties& defaults,
                            const std::string& name, const Properties& properties)
{
    std::string line;
    line.reserve(128 + name.size() + properties.size() * 32);
    line += "{\"time\":";
    AppendUtcTime(line);
    line += ",\"sid\":";
    const auto sid = defaults.find(SID);
    AppendJsonString(line, sid == defaults.end() ? std::string() : sid->second);
    line += ",\"app\":";
    AppendJsonString(line, identity);
    line += ",\"name\":";
    AppendJsonString(line, name);
    line += ",\"params\":{";

    // Both maps are ordered alike: merge them so the keys come out in byte order.
    bool first = true;
    auto writeEntry = [&](const std::string& key, const std::string& value)
    {
        if (!first)
        {
            line.push_back(',');
        }
        first = false;
        AppendJsonString(line, key);
        line.push_back(':');
        AppendJsonString(line, value);
    };
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
    line += "}}\n";
    return line;
}

}  // namespace Velkor::Analytics
