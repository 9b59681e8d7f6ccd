#include "Analytics/AcceleratorsPropertiesFiller.h"

#include <QDir>
#include <QFile>
#include <QString>

#include <initializer_list>
#include <utility>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace Velkor::Analytics
{

namespace
{

constexpr unsigned VENDOR_INTEL = 0x8086;
constexpr unsigned VENDOR_NVIDIA = 0x10de;
constexpr unsigned VENDOR_AMD = 0x1002;

struct Runtimes
{
    std::initializer_list<const char*> nvenc;
    std::initializer_list<const char*> nvdec;
    std::initializer_list<const char*> amf;
};

#ifdef Q_OS_WIN
const Runtimes RUNTIMES{{"nvEncodeAPI64.dll"}, {"nvcuvid.dll"}, {"amfrt64.dll"}};
const std::initializer_list<const char*> INTEL_RUNTIME{"libmfxhw64.dll", "libmfx64-gen.dll"};
#else
const Runtimes RUNTIMES{{"libnvidia-encode.so.1"}, {"libnvcuvid.so.1"}, {"libamfrt64.so.1"}};
#endif

// Whether one of the shared libraries can be loaded into the process.
bool RuntimeLoads(std::initializer_list<const char*> names)
{
    for (const char* name : names)
    {
#ifdef Q_OS_WIN
        if (HMODULE module = LoadLibraryA(name))
        {
            FreeLibrary(module);
            return true;
        }
#else
        if (void* handle = dlopen(name, RTLD_LAZY | RTLD_LOCAL))
        {
            dlclose(handle);
            return true;
        }
#endif
    }
    return false;
}

struct GraphicsVendors
{
    bool intel = false;
    bool nvidia = false;
    bool amd = false;
};

#ifndef Q_OS_WIN
unsigned ReadHex(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
    {
        return 0;
    }
    bool ok = false;
    const unsigned value = file.readAll().trimmed().toUInt(&ok, 0);
    return ok ? value : 0;
}

GraphicsVendors FindGraphicsVendors(const QString& pciDevicesDirectory)
{
    GraphicsVendors vendors;
    const QDir directory(pciDevicesDirectory);
    for (const QString& device :
         directory.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::System, QDir::Name))
    {
        const QString base = directory.filePath(device) + QLatin1Char('/');
        // "0x030000": base class 0x03 is a display controller; other devices of the same
        // vendors (host bridges, audio, USB) say nothing about video acceleration.
        if ((ReadHex(base + QLatin1String("class")) >> 16) != 0x03)
        {
            continue;
        }
        switch (ReadHex(base + QLatin1String("vendor")))
        {
            case VENDOR_INTEL:
                vendors.intel = true;
                break;
            case VENDOR_NVIDIA:
                vendors.nvidia = true;
                break;
            case VENDOR_AMD:
                vendors.amd = true;
                break;
            default:
                break;
        }
    }
    return vendors;
}
#endif

const char* Flag(bool value)
{
    return value ? "YES" : "NO";
}

}  // namespace

AcceleratorsPropertiesFiller::AcceleratorsPropertiesFiller()
    : AcceleratorsPropertiesFiller("/sys/bus/pci/devices")
{
}

AcceleratorsPropertiesFiller::AcceleratorsPropertiesFiller(std::string pciDevicesDirectory)
    : m_pciDevicesDirectory(std::move(pciDevicesDirectory))
{
}

void AcceleratorsPropertiesFiller::Fill(std::map<std::string, std::string>& params)
{
    const bool nvencLoads = RuntimeLoads(RUNTIMES.nvenc);
    const bool nvdecLoads = RuntimeLoads(RUNTIMES.nvdec);
    const bool amfLoads = RuntimeLoads(RUNTIMES.amf);
#ifdef Q_OS_WIN
    // No device list to read: the vendors install these runtimes with their drivers.
    GraphicsVendors vendors;
    vendors.intel = RuntimeLoads(INTEL_RUNTIME);
    vendors.nvidia = nvencLoads || nvdecLoads;
    vendors.amd = amfLoads;
#else
    const GraphicsVendors vendors =
        FindGraphicsVendors(QString::fromStdString(m_pciDevicesDirectory));
#endif
    params["IM_HW_AVAILABLE"] = Flag(vendors.intel);
    params["NVENC_AVAILABLE"] = Flag(vendors.nvidia);
    params["NVDEC_AVAILABLE"] = Flag(vendors.nvidia);
    params["AMF_AVAILABLE"] = Flag(vendors.amd);
    params["NVENC_ENABLED"] = Flag(vendors.nvidia && nvencLoads);
    params["NVDEC_ENABLED"] = Flag(vendors.nvidia && nvdecLoads);
    params["AMF_ENABLED"] = Flag(vendors.amd && amfLoads);
}

}  // namespace Velkor::Analytics
