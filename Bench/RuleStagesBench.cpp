#include "Tracking/Tracking.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

using namespace Velkor::KT::Tracking;

namespace
{

class NullEndpoint : public IKtTrackingEndpoint
{
public:
    void Track(const Event& event) override { benchmark::DoNotOptimize(event.name.data()); }
};

Event TenProperties(const std::string& name)
{
    Event event{name, {}};
    for (int i = 0; i < 7; ++i)
    {
        event.params["KEY_" + std::to_string(i)] = "VALUE_" + std::to_string(i);
    }
    event.params["DURATION"] = "90";
    event.params["FILE_SIZE"] = "5242880";
    event.params["AUDIO_SOURCES"] = "";
    return event;
}

// range(0): 0 = an event no block names (walks the whole document), 1 = "CAPTURE_STOP"
// (three rules fire).
void BM_FilterShippedDocument(benchmark::State& state)
{
    FilterKtTracker filter(std::make_shared<NullEndpoint>());
    filter.SetConfig(LoadConfigFromQrc("/KT/Tracking/FilterConfig.xml"));
    const Event event = TenProperties(state.range(0) ? "CAPTURE_STOP" : "EMAIL_DIALOG_SHOWN");
    for (auto _ : state)
    {
        filter.Track(event);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FilterShippedDocument)->Arg(0)->Arg(1);

void BM_AggregatorShippedDocument(benchmark::State& state)
{
    AggregatorKtTracker aggregator(std::make_shared<NullEndpoint>());
    aggregator.SetConfig(LoadConfigFromQrc("/KT/Tracking/AggregatorConfig.xml"));
    const Event cause{"TRAY_CAPTURE_START_EVENT", {{"METHOD", "TRAY"}}};
    const Event main = TenProperties("CAPTURE_START");
    for (auto _ : state)
    {
        aggregator.Track(cause);
        aggregator.Track(main);
    }
    state.SetItemsProcessed(2 * state.iterations());
}
BENCHMARK(BM_AggregatorShippedDocument);

// Filter, then aggregator, shipped documents, as a host assembles them.
void BM_RuleChain(benchmark::State& state)
{
    auto aggregator = std::make_shared<AggregatorKtTracker>(std::make_shared<NullEndpoint>());
    aggregator->SetConfig(LoadConfigFromQrc("/KT/Tracking/AggregatorConfig.xml"));
    FilterKtTracker filter(aggregator);
    filter.SetConfig(LoadConfigFromQrc("/KT/Tracking/FilterConfig.xml"));
    const Event cause{"BUTTON_CAPTURE_STOP_EVENT", {{"METHOD", "BUTTON"}}};
    const Event main = TenProperties("CAPTURE_STOP");
    for (auto _ : state)
    {
        filter.Track(cause);
        filter.Track(main);
    }
    state.SetItemsProcessed(2 * state.iterations());
}
BENCHMARK(BM_RuleChain);

}  // namespace
