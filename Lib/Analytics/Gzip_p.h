#pragma once

#include <QByteArray>

#include <string_view>

namespace Velkor::Analytics
{

// Compresses `input` into one gzip member (RFC 1952) at zlib `level` (0 to 9); answers false
// when zlib fails.
bool Gzip(std::string_view input, int level, QByteArray& output);

}  // namespace Velkor::Analytics
