#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace Velkor::Analytics
{

// One line of AppendEventLine() read back. Every text is a view into the line of its JSON string
// literal, quotes and escapes included, so it can be copied into other JSON as it is.
struct EventLineFields
{
    std::string_view id;
    std::string_view time;
    std::int64_t unixMilliseconds = 0;  // "time" as milliseconds since 1970-01-01T00:00:00Z
    std::string_view sid;
    std::string_view installation;
    std::string_view identity;
    std::string_view version;
    std::string_view name;
    std::vector<std::pair<std::string_view, std::string_view>> params;
};

// Reads `line` (without its line end) into `fields`. Answers false for anything the writer would
// not have written: other keys or another key order, white space, a string literal with a raw
// control character, an unknown escape or bytes that are not UTF-8, an id that is not in the
// form of a UUID, a time that is not "YYYY-MM-DDTHH:MM:SS.mmmZ", a value that is not a string,
// or anything after the closing brace.
bool ReadEventLine(std::string_view line, EventLineFields& fields);

}  // namespace Velkor::Analytics
