#pragma once

// The application-core stand-ins a statistics manager needs in the benchmarks: an ordinary start
// with no failed sessions, events going nowhere.

#include "Tracking/StatisticsManager.h"
#include "Tracking/Tracking.h"

#include "App/ICrashTracker.h"
#include "App/ILaunchTypeProcessor.h"
#include "App/LookAndFeelManager.h"
#include "KT/ConvertationSettings.h"

#include <memory>
#include <string>
#include <vector>

namespace Velkor::Bench
{

class NullTracker : public KT::Tracking::IKtTrackingEndpoint
{
public:
    void Track(const KT::Tracking::Event&) override {}
};

class OrdinaryStart : public App::ILaunchTypeProcessor
{
public:
    int GetLaunchType() const override { return EveryStart; }
};

class NoCrashes : public App::ICrashTracker
{
public:
    std::vector<std::string> TakeUnreportedFailedSessions() override { return {}; }
};

inline const std::vector<KT::Tracking::FillerTypes> kAllFillers = {
    KT::Tracking::FillerTypes::Accelerators,   KT::Tracking::FillerTypes::HyperPass,
    KT::Tracking::FillerTypes::AppLanguage,    KT::Tracking::FillerTypes::CountryName,
    KT::Tracking::FillerTypes::MonitorsConfig, KT::Tracking::FillerTypes::AppConfig,
    KT::Tracking::FillerTypes::HardwareConfig, KT::Tracking::FillerTypes::OSConfig};

inline std::unique_ptr<KT::Tracking::StatisticsManager> MakeManager(
    const std::shared_ptr<KT::Tracking::IKtTracker>& tracker,
    const std::vector<KT::Tracking::FillerTypes>& fillers)
{
    return std::make_unique<KT::Tracking::StatisticsManager>(
        tracker, std::make_shared<App::LookAndFeelManager>("en"), nullptr, nullptr,
        std::make_shared<OrdinaryStart>(), std::make_shared<NoCrashes>(),
        std::make_shared<KT::ConvertationSettings>(), fillers);
}

}  // namespace Velkor::Bench
