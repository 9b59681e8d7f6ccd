#pragma once

namespace Velkor::KT::Tracking
{

// The kinds of property fillers a host can ask for. The values are fixed: hosts may keep them
// in their own settings.
enum class FillerTypes : int
{
    Accelerators = 0,    // the hardware video acceleration facts
    HyperPass = 1,       // "HP_ENABLED"
    AppLanguage = 2,     // "APP_LANGUAGE"
    CountryName = 3,     // "COUNTRY_NAME"
    MonitorsConfig = 4,  // "MONITORS_COUNT", "PRIMARY_MONITOR", three keys per monitor
    AppConfig = 5,       // "APP_BITS"
    HardwareConfig = 6,  // processor and memory facts
    OSConfig = 7,        // operating system facts
};

}  // namespace Velkor::KT::Tracking
