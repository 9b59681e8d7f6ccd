#include "BenchSupport.h"

#include "Tracking/Rules/AggregatorPass_p.h"
#include "Tracking/Rules/FilterPass_p.h"

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>

using namespace Velkor::KT::Tracking;
using Velkor::Bench::TenProperties;
using NullEndpoint = Velkor::Bench::NullTracker;

namespace
{

// ---- The floor: the stages' own evaluation instantiated without the trace (FilterPass<false>,
// AggregatorPass<false>), under a lock and before the same endpoint, but without the stage
// around it: what the stage adds is its dispatch between the traced and the untraced pass.
template <template <bool> class Pass, class Root>
struct Floor : IKtTracker
{
    void Track(const Event& event) override
    {
        Event w;
        {
            std::lock_guard<std::mutex> lock(mutex);
            w = Pass<false>(*document, memory, nullptr).Run(event);
        }
        if (!w.name.empty())
        {
            next->Track(w);
        }
    }

    std::shared_ptr<IKtTracker> next;
    std::unique_ptr<Root> document;
    std::mutex mutex;
    std::map<std::string, Event::Params> memory;
};

// Counts what the stages report, as kttrack coverage does.
class CountingListener : public IRuleTraceListener
{
public:
    void FilterBlockEntered(int block, const Event&) override { counts[block] += 1; }
    void FilterMatcherFired(const FilterMatcherRef& m, const std::string&,
                            const std::string&) override
    {
        counts[1000 + m.block * 100 + m.rule] += 1;
    }
    void FilterActionRun(const FilterActionTrace& action) override
    {
        benchmark::DoNotOptimize(action.after);
    }
    void AggregatorMainEvent(int block, bool) override { counts[block] += 1; }
    void AggregatorHeld(int block, int affecting, const Event::Params&,
                        const Event::Params&) override
    {
        counts[1000 + block * 100 + affecting] += 1;
    }

    std::map<int, int> counts;
};

// How a stage is measured: a range of the benchmarks below.
enum Mode
{
    kUntracedFloor = 0,
    kNoListener = 1,
    kListener = 2,
};

const char* const kModeLabels[] = {"untraced pass (floor)", "stage, no listener",
                                   "stage, counting listener"};

// A stage of the shipped document `resource`, measured in `mode`, before a null endpoint; the
// floor reads the document with `read`.
template <class Stage, template <bool> class Pass, class Root>
std::shared_ptr<IKtTracker> MakeStage(
    benchmark::State& state, int mode, const char* resource,
    std::unique_ptr<Root> (*read)(std::istream&, ::xml_schema::flags,
                                  const ::xml_schema::properties&))
{
    state.SetLabel(kModeLabels[mode]);
    const auto endpoint = std::make_shared<NullEndpoint>();
    std::istringstream text(LoadConfigFromQrc(resource));
    if (mode == kUntracedFloor)
    {
        auto floor = std::make_shared<Floor<Pass, Root>>();
        floor->next = endpoint;
        floor->document =
            read(text, ::xml_schema::flags::dont_validate, ::xml_schema::properties());
        return floor;
    }
    auto stage = std::make_shared<Stage>(endpoint);
    stage->SetConfig(text.str());
    if (mode == kListener)
    {
        stage->SetTraceListener(std::make_shared<CountingListener>());
    }
    return stage;
}

// range(0): 0 = an event no block names (walks the whole document), 1 = "CAPTURE_STOP"
// (three rules fire). range(1): the Mode.
void BM_FilterShippedDocument(benchmark::State& state)
{
    const Event event = TenProperties(state.range(0) ? "CAPTURE_STOP" : "EMAIL_DIALOG_SHOWN");
    const std::shared_ptr<IKtTracker> stage = MakeStage<FilterKtTracker, FilterPass>(
        state, static_cast<int>(state.range(1)), "/KT/Tracking/FilterConfig.xml",
        &Config::Filter::filter);
    IKtTracker* track = stage.get();
    benchmark::DoNotOptimize(track);  // every mode is called through the interface
    for (auto _ : state)
    {
        track->Track(event);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FilterShippedDocument)
    ->ArgsProduct({{0, 1}, {kUntracedFloor, kNoListener, kListener}});

// A cause and its main event. range(0): the Mode.
void BM_AggregatorShippedDocument(benchmark::State& state)
{
    const Event cause{"TRAY_CAPTURE_START_EVENT", {{"METHOD", "TRAY"}}};
    const Event main = TenProperties("CAPTURE_START");
    const std::shared_ptr<IKtTracker> stage = MakeStage<AggregatorKtTracker, AggregatorPass>(
        state, static_cast<int>(state.range(0)), "/KT/Tracking/AggregatorConfig.xml",
        &Config::Aggregator::aggregator);
    IKtTracker* track = stage.get();
    benchmark::DoNotOptimize(track);
    for (auto _ : state)
    {
        track->Track(cause);
        track->Track(main);
    }
    state.SetItemsProcessed(2 * state.iterations());
}
BENCHMARK(BM_AggregatorShippedDocument)->DenseRange(kUntracedFloor, kListener);

// The floor for any stage that copies an event before editing it.
void BM_EventCopy(benchmark::State& state)
{
    const Event event = TenProperties();
    for (auto _ : state)
    {
        Event copy = event;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(BM_EventCopy);

}  // namespace
