#pragma once

#include "KT/CaptureTypes.h"

namespace Velkor::KT
{

// Result codes of a conversion: 0 success, 1 cancelled, 2 invalid output directory,
// 3 processing error.
class IConverterObserver
{
public:
    virtual ~IConverterObserver() = default;

    virtual void OnConversionStarted(const ConvertationContext& context) = 0;
    virtual void OnConversionFinished(int result) = 0;
    virtual void OnConversionError() = 0;
    virtual void OnConversionPaused() = 0;
    virtual void OnConversionResumed() = 0;
    // Percent done, 0..100.
    virtual void OnConversionProgress(int percent) = 0;
};

class IConverter
{
public:
    virtual ~IConverter() = default;

    virtual void AddObserver(IConverterObserver* observer) = 0;
    virtual void RemoveObserver(IConverterObserver* observer) = 0;

    // The hardware acceleration the converter uses (0 none, 1 lossless, 2 and 3 media SDK
    // hardware and software, 4 NVENC, 5 AMF).
    virtual int GetAccelerationType() const = 0;
};

}  // namespace Velkor::KT
