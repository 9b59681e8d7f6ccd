#include "Tracking/StatisticsManager.h"
#include "Tracking/Tracking.h"

#include "BenchSupport.h"

// The demo host's services and windows (Examples/DemoHost).
#include "HostServices.h"
#include "MainWindow.h"
#include "Recorder.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include <memory>

using namespace Velkor;
using namespace Velkor::KT::Tracking;
using Bench::kAllFillers;
using Bench::NullTracker;

namespace
{

// The library's whole start-up in the demo host, as the host runs it on its GUI thread: the
// rule stages given their documents, the manager with every filler (its start event goes down
// the chain), the main document, the demo's windows attached and its services' observers
// connected. The services and the windows are the host's own and made outside the measurement;
// the windows anew each time, since an object is attached once. Each time Xerces is initialised
// anew when the first rule stage is made, as in a host starting.
void BM_LibraryStartUp(benchmark::State& state)
{
    QTemporaryDir data;
    Demo::HostServices services(data.path());
    Demo::SimulatedClock clock;
    Demo::Recorder recorder(services, clock);
    const auto endpoint = std::make_shared<NullTracker>();
    for (auto _ : state)
    {
        state.PauseTiming();
        auto window = std::make_unique<Demo::MainWindow>(services, recorder, [](QWidget*) {});
        state.ResumeTiming();

        auto aggregator = std::make_shared<AggregatorKtTracker>(endpoint);
        aggregator->SetConfig(LoadConfigFromQrc("/KT/Tracking/AggregatorConfig.xml"));
        auto filter = std::make_shared<FilterKtTracker>(aggregator);
        filter->SetConfig(LoadConfigFromQrc("/KT/Tracking/FilterConfig.xml"));
        auto manager = std::make_unique<StatisticsManager>(
            filter, services.lookAndFeel, services.productSettingsManager,
            services.applicationSettings, services.launchType, services.crashTracker,
            services.convertationSettings, kAllFillers);
        manager->SetConfig(LoadConfigFromQrc("/KT/Tracking/Config.xml"));
        manager->AttachAllTopLevelWindows();
        manager->AttachInstances();

        state.PauseTiming();
        manager.reset();
        window.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_LibraryStartUp)->Unit(benchmark::kMillisecond)->Apply(Bench::MinOfRepetitions);

}  // namespace
