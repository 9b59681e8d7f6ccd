#pragma once

#include "HostExport.h"

#include "KT/ObservableSettings.h"

#include <QtGlobal>

namespace Velkor::KT
{

// The recorder's settings for converting a finished recording. Every getter and setter may be
// called from any thread; a setter takes effect for every later getter call and tells the
// observers (fields "hyperPassEnabled", "deleteProject": bool; "screenshotQuality": int).
class KT_HOST_EXPORT ConvertationSettings : public ObservableSettings
{
public:
    ConvertationSettings();
    ~ConvertationSettings() override;

    // Whether conversion may use the hardware-accelerated "HyperPass" path. Off by default.
    bool IsHyperPassEnabled() const;
    void SetHyperPassEnabled(bool enabled);

    // Whether the recording's project is deleted once it has been converted. Off by default.
    bool IsDeleteProject() const;
    void SetDeleteProject(bool enabled);

    // Quality of screenshots taken from a recording, 1 to 100; 90 by default. Values outside
    // the range are clamped.
    int GetScreenshotQuality() const;
    void SetScreenshotQuality(int quality);

private:
    Q_DISABLE_COPY(ConvertationSettings)
};

}  // namespace Velkor::KT
