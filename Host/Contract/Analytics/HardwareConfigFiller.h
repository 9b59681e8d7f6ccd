#pragma once

#include "Analytics/IDataFiller.h"
#include "HostExport.h"

namespace Velkor::Analytics
{

// Facts about the machine's hardware:
// - "CPU_NAME": the processor's model name, e.g. "Intel(R) Core(TM) i7-8700 CPU @ 3.20GHz";
// - "CPU_ARCHITECTURE": the processor's architecture, e.g. "x86_64" or "arm64";
// - "CPU_CORES": the number of logical processors, in decimal;
// - "RAM_TOTAL_MB": the installed memory usable by the system, in whole MiB, in decimal.
// A fact the system does not give is written as "UNKNOWN".
class KT_HOST_EXPORT HardwareConfigFiller : public Tracking::IDataFiller
{
public:
    void Fill(std::map<std::string, std::string>& params) override;
};

}  // namespace Velkor::Analytics
