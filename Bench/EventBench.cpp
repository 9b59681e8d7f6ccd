#include "Tracking/Tracking.h"

#include <benchmark/benchmark.h>

#include <string>

using Velkor::KT::Tracking::Event;

namespace
{

Event MakeEvent(int properties)
{
    Event event{"CAPTURE_STOP", {}};
    for (int i = 0; i < properties; ++i)
    {
        event.params["KEY_" + std::to_string(i)] = "VALUE_" + std::to_string(i);
    }
    return event;
}

// The floor for any stage that copies an event before editing it.
void BM_EventCopy(benchmark::State& state)
{
    const Event event = MakeEvent(static_cast<int>(state.range(0)));
    for (auto _ : state)
    {
        Event copy = event;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(BM_EventCopy)->Arg(0)->Arg(3)->Arg(10)->Arg(30);

}  // namespace
