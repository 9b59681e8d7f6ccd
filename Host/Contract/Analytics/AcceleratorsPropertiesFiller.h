#pragma once

#include "Analytics/IDataFiller.h"
#include "HostExport.h"

#include <string>

namespace Velkor::Analytics
{

// Which hardware video acceleration the machine offers. Every key is always written, "YES" or
// "NO":
// - "IM_HW_AVAILABLE": an Intel graphics device is present (Intel media encoding);
// - "NVENC_AVAILABLE", "NVDEC_AVAILABLE": an NVIDIA graphics device is present (NVIDIA encoding
//   and decoding);
// - "AMF_AVAILABLE": an AMD graphics device is present (AMD media framework);
// - "NVENC_ENABLED", "NVDEC_ENABLED", "AMF_ENABLED": the facility is available and its driver
//   runtime is installed and loads, so the application can use it.
// On Linux the graphics devices are the display controllers (PCI class 0x03) among the PCI
// devices; on other systems a facility counts as available when its driver runtime loads.
class KT_HOST_EXPORT AcceleratorsPropertiesFiller : public Tracking::IDataFiller
{
public:
    AcceleratorsPropertiesFiller();
    // Reads the PCI devices from another directory laid out like /sys/bus/pci/devices.
    explicit AcceleratorsPropertiesFiller(std::string pciDevicesDirectory);

    void Fill(std::map<std::string, std::string>& params) override;

private:
    const std::string m_pciDevicesDirectory;
};

}  // namespace Velkor::Analytics
