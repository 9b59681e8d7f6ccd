#include "BenchSupport.h"

using Velkor::Bench::TenProperties;
using Velkor::KT::Tracking::Event;

namespace
{

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
