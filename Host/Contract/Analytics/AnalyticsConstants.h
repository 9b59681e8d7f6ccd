#pragma once

// Event names and property keys that the analytics service gives a fixed meaning.

namespace Velkor::Analytics
{

// Key of the session identifier among an event's properties.
inline constexpr const char SID[] = "SID";

inline constexpr const char APP_FIRST_START[] = "APP_FIRST_START";
inline constexpr const char APP_FIRST_START_AFTER_MINOR_UPDATE[] =
    "APP_FIRST_START_AFTER_MINOR_UPDATE";
inline constexpr const char APP_EVERY_START[] = "APP_EVERY_START";
inline constexpr const char APP_FAILED[] = "APP_FAILED";
inline constexpr const char APP_EXIT[] = "APP_EXIT";

}  // namespace Velkor::Analytics
