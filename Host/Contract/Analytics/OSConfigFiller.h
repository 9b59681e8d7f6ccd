#pragma once

#include "Analytics/IDataFiller.h"
#include "HostExport.h"

namespace Velkor::Analytics
{

// Facts about the operating system the application runs on:
// - "OS_NAME": the system's name with its release, e.g. "Windows 10 Version 2009" or
//   "Debian GNU/Linux 12 (bookworm)";
// - "OS_VERSION": the release number, e.g. "10" or "12";
// - "OS_KERNEL": the kernel's type and version separated by a blank, e.g. "linux 6.1.0-18-amd64";
// - "OS_BITS": "64" on a 64-bit system, "32" on a 32-bit one (a 32-bit application on a 64-bit
//   system reports "64");
// - "OS_LANGUAGE": the system locale's name, e.g. "de_DE".
// A fact the system does not give is written as "UNKNOWN".
class KT_HOST_EXPORT OSConfigFiller : public Tracking::IDataFiller
{
public:
    void Fill(std::map<std::string, std::string>& params) override;
};

}  // namespace Velkor::Analytics
