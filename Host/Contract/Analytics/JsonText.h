#pragma once

#include "HostExport.h"

#include <string>
#include <string_view>

namespace Velkor::Analytics
{

// Appends `bytes` to `out` as a JSON string literal, quotes included.
//
// The result is always valid JSON in valid UTF-8, whatever the input:
// - '"' and '\' are escaped; the control characters U+0000 to U+001F and U+007F are written
//   as \b, \f, \n, \r, \t or \u00XX;
// - well-formed UTF-8 sequences are copied unchanged (no \u escapes for non-ASCII text);
// - bytes that are not well-formed UTF-8 (stray continuation bytes, truncated, overlong or
//   surrogate sequences, code points above U+10FFFF, the bytes C0, C1, F5 to FF) are replaced by
//   U+FFFD, one per maximal ill-formed subpart, as Unicode recommends. Such bytes are therefore
//   not preserved: event texts are expected to be UTF-8.
KT_HOST_EXPORT void AppendJsonString(std::string& out, std::string_view bytes);

}  // namespace Velkor::Analytics
