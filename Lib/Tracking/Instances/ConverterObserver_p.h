#pragma once

#include "KT/IConverter.h"
#include "Tracking/Instances/AttachedObserver_p.h"
#include "Tracking/Instances/ValueCallback_p.h"

#include "Tracking/Config/KtmStat.hxx"

#include <optional>

namespace Velkor::KT::Tracking
{

// Observer of the converter. The start event gets the configured context values, then the
// acceleration type; the stop event the result's text. Text forms chosen here: the output
// file path as UTF-8 with '/' separators; the cut intervals as "begin-end" pairs in
// microseconds joined by ";" (empty without intervals); the project size in bytes. Progress
// notifications are not reported.
class ConverterObserver : public AttachedObserver<KT::IConverter, KT::IConverterObserver>
{
public:
    ConverterObserver(KT::IConverter* service, IKtTracker* tracker,
                      const Config::IConverter& section);

    void OnConversionStarted(const KT::ConvertationContext& context) override;
    void OnConversionFinished(int result) override;
    void OnConversionError() override;
    void OnConversionPaused() override;
    void OnConversionResumed() override;
    void OnConversionProgress(int percent) override;

    static std::string CutIntervalsText(const KT::ConvertationContext& context);

private:
    std::optional<Config::ConvertStartEvent> m_start;
    std::optional<Config::ConvertStopEvent> m_stop;
    Event m_startEvent;
    Event m_stopEvent;
    const ValueCallback m_pause;
    const ValueCallback m_resume;
    const ValueCallback m_error;
};

}  // namespace Velkor::KT::Tracking
