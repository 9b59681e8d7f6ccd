#pragma once

#include <QByteArray>
#include <QDateTime>

#include <chrono>
#include <optional>

namespace Velkor::Analytics
{

// The wait a Retry-After header asks for: delay-seconds ("120") or an HTTP-date ("Wed, 21 Oct
// 2026 07:28:00 GMT", counted from `now`; a date in the past asks for none). Nothing for an
// empty or unreadable value.
std::optional<std::chrono::milliseconds> ParseRetryAfter(const QByteArray& value,
                                                         const QDateTime& now);

}  // namespace Velkor::Analytics
