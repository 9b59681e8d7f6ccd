#pragma once

#include "Analytics/IDataFiller.h"

#include <string>

namespace Velkor::KT::Tracking::Fillers
{

// Describes the application's screens, numbered from 1 in the order the application lists
// them; the first one is the primary screen:
// - "MONITORS_COUNT": the number of screens;
// - "PRIMARY_MONITOR": always "1";
// - "MONITOR<n>_RECT": the screen's geometry in device pixels (before any interface scaling),
//   "x,y,width,height", e.g. "1920,0,2560,1440";
// - "MONITOR<n>_PHYSICAL_DPI", "MONITOR<n>_LOGICAL_DPI": the physical and the logical dots per
//   inch with six decimals and a point as decimal separator under any locale, e.g. "96.000000".
// Needs a QGuiApplication.
class MonitorsConfigFiller : public Velkor::Tracking::IDataFiller
{
public:
    void Fill(std::map<std::string, std::string>& params) override;

    // dpi printed with "%f" with every comma turned into a point.
    static std::string FormatDpi(double dpi);
};

}  // namespace Velkor::KT::Tracking::Fillers
