#include "MachineValues.h"

#include <cctype>
#include <set>
#include <sstream>

namespace Velkor::Demo
{

namespace
{

// "MONITOR<n>_RECT", "MONITOR<n>_PHYSICAL_DPI" or "MONITOR<n>_LOGICAL_DPI" for a number n.
bool IsMonitorKey(const std::string& key)
{
    static const std::string prefix = "MONITOR";
    if (key.compare(0, prefix.size(), prefix) != 0)
    {
        return false;
    }
    std::size_t end = prefix.size();
    while (end < key.size() && std::isdigit(static_cast<unsigned char>(key[end])))
    {
        ++end;
    }
    const std::string suffix = key.substr(end);
    return end > prefix.size() &&
           (suffix == "_RECT" || suffix == "_PHYSICAL_DPI" || suffix == "_LOGICAL_DPI");
}

}  // namespace

bool IsMachineKey(const std::string& key)
{
    static const std::set<std::string> keys{
        // Acceleration facts.
        "IM_HW_AVAILABLE", "NVENC_AVAILABLE", "NVDEC_AVAILABLE", "AMF_AVAILABLE", "NVENC_ENABLED",
        "NVDEC_ENABLED", "AMF_ENABLED",
        // System locale, bitness, hardware and operating system.
        "COUNTRY_NAME", "APP_BITS", "CPU_NAME", "CPU_ARCHITECTURE", "CPU_CORES", "RAM_TOTAL_MB",
        "OS_NAME", "OS_VERSION", "OS_KERNEL", "OS_BITS", "OS_LANGUAGE",
        // Screens.
        "MONITORS_COUNT"};
    return keys.count(key) != 0 || IsMonitorKey(key);
}

std::string MaskMachineValues(const std::string& eventText)
{
    std::istringstream lines(eventText);
    std::string result;
    std::string line;
    bool first = true;
    while (std::getline(lines, line))
    {
        if (!first && !line.empty() && line.front() == '\t')
        {
            const auto equals = line.find('=');
            if (equals != std::string::npos && IsMachineKey(line.substr(1, equals - 1)))
            {
                line = line.substr(0, equals + 1) + kMachineValue;
            }
        }
        first = false;
        result += line;
        result += '\n';
    }
    return result;
}

}  // namespace Velkor::Demo
