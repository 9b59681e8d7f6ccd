#include "BenchSupport.h"

#include <QCoreApplication>

using Velkor::Bench::TenProperties;
using Velkor::KT::Tracking::DebugKtTracker;
using Velkor::KT::Tracking::Event;

namespace
{

// What Track() costs the calling thread: a copy of the event and a queue operation.
void BM_DebugTrackerTrackCall(benchmark::State& state)
{
    DebugKtTracker tracker;
    const Event event = TenProperties();
    for (auto _ : state)
    {
        tracker.Track(event);
    }
    state.SetItemsProcessed(state.iterations());
    // The queued display work is discarded with the tracker.
}
BENCHMARK(BM_DebugTrackerTrackCall);

// Track and display: the GUI-thread cost per event (text, log line, item, scroll) with
// `range(0)` items already in the list.
void BM_DebugTrackerDisplay(benchmark::State& state)
{
    auto tracker = std::make_unique<DebugKtTracker>();
    const Event event = TenProperties();
    for (int64_t i = 0; i < state.range(0); ++i)
    {
        tracker->Track(event);
    }
    QCoreApplication::sendPostedEvents();
    for (auto _ : state)
    {
        tracker->Track(event);
        QCoreApplication::sendPostedEvents();
    }
    state.SetItemsProcessed(state.iterations());
    tracker.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
BENCHMARK(BM_DebugTrackerDisplay)->Arg(0)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

}  // namespace
