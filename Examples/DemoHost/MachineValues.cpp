#include "MachineValues.h"

#include <regex>
#include <set>
#include <sstream>

namespace Velkor::Demo
{

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
    static const std::regex monitor("MONITOR[0-9]+_(RECT|PHYSICAL_DPI|LOGICAL_DPI)");
    return keys.count(key) != 0 || std::regex_match(key, monitor);
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
