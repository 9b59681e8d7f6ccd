#pragma once

#include "KT/IConverter.h"
#include "KT/ObserverList.h"

#include <atomic>

namespace Velkor::KT
{

// Reference converter: the conversion job reports its steps; the acceleration type is set by
// whoever configures the job.
class Converter : public ObservableService<IConverter, IConverterObserver>
{
public:
    int GetAccelerationType() const override { return m_acceleration.load(); }
    void SetAccelerationType(int type) { m_acceleration.store(type); }

    void Start(const ConvertationContext& context)
    {
        Notify(&IConverterObserver::OnConversionStarted, context);
    }
    void Finish(int result) { Notify(&IConverterObserver::OnConversionFinished, result); }
    void Fail() { Notify(&IConverterObserver::OnConversionError); }
    void Pause() { Notify(&IConverterObserver::OnConversionPaused); }
    void Resume() { Notify(&IConverterObserver::OnConversionResumed); }
    void Progress(int percent) { Notify(&IConverterObserver::OnConversionProgress, percent); }

private:
    std::atomic<int> m_acceleration{0};
};

}  // namespace Velkor::KT
