#pragma once

// Internal: the XML Schema lexical forms of the typed attribute values the documents carry. The
// generated object model converts these values without checking them; the reader checks them
// first so that a value that does not convert fails the parse.

#include <string>

namespace Velkor::KT::Tracking::Config::Detail
{

enum class ValueKind
{
    Boolean,
    Int,
    Double,
};

// Whether `text`, with its leading and trailing blanks collapsed away, is a lexical form of
// `kind`: "true", "false", "1", "0"; a decimal integer within the range of a 32-bit int; a
// decimal or scientific number, "INF", "-INF" or "NaN".
bool IsLexicalValue(ValueKind kind, const std::string& text);

// Whether the boolean `text` (a lexical form of ValueKind::Boolean) is true: "true" or "1".
bool IsTrue(const std::string& text);

// "boolean", "int", "double": the XML Schema name of `kind`, for messages.
const char* KindName(ValueKind kind);

}  // namespace Velkor::KT::Tracking::Config::Detail
