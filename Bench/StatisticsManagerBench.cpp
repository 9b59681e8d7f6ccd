#include "Tracking/StatisticsManager.h"
#include "Tracking/Tracking.h"

#include "App/ICrashTracker.h"
#include "App/ILaunchTypeProcessor.h"
#include "App/LookAndFeelManager.h"
#include "KT/ConvertationSettings.h"
#include "KT/InstanceRegistry.h"

#include <benchmark/benchmark.h>

#include <QPushButton>
#include <QWidget>

#include <memory>
#include <string>
#include <vector>

using namespace Velkor;
using namespace Velkor::KT::Tracking;

namespace
{

class NullTracker : public IKtTracker
{
public:
    void Track(const Event&) override {}
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

std::unique_ptr<StatisticsManager> MakeManager(const std::vector<FillerTypes>& fillers)
{
    return std::make_unique<StatisticsManager>(
        std::make_shared<NullTracker>(), std::make_shared<App::LookAndFeelManager>("en"), nullptr,
        nullptr, std::make_shared<OrdinaryStart>(), std::make_shared<NoCrashes>(),
        std::make_shared<KT::ConvertationSettings>(), fillers);
}

const std::vector<FillerTypes> kAllFillers = {
    FillerTypes::Accelerators, FillerTypes::HyperPass,      FillerTypes::AppLanguage,
    FillerTypes::CountryName,  FillerTypes::MonitorsConfig, FillerTypes::AppConfig,
    FillerTypes::HardwareConfig, FillerTypes::OSConfig};

// What a host pays at start-up and exit: creating the fillers, running them for the start
// event, and the exit event; with no fillers, with all of them.
void BM_StatisticsManagerStartAndExit(benchmark::State& state)
{
    const std::vector<FillerTypes> fillers =
        state.range(0) ? kAllFillers : std::vector<FillerTypes>{};
    for (auto _ : state)
    {
        MakeManager(fillers).reset();
    }
}
BENCHMARK(BM_StatisticsManagerStartAndExit)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Reading the shipped main document and handing its sections to both handlers.
void BM_StatisticsManagerSetConfig(benchmark::State& state)
{
    KT::InstanceRegistry registry;
    auto manager = MakeManager({});
    const std::string document = LoadConfigFromQrc("/KT/Tracking/Config.xml");
    for (auto _ : state)
    {
        manager->SetConfig(document);
    }
}
BENCHMARK(BM_StatisticsManagerSetConfig)->Unit(benchmark::kMillisecond);

}  // namespace
