// Cost of reading the shipped documents, each next to its floor: a bare Xerces DOM parse of the
// same text (namespaces on, no comment nodes, nothing checked, no model built). Xerces stays
// initialised around all of them, as it does for the statistics manager and the rule stages while
// they exist. Divide a reading's time by the BareDomParse time of its document for the ratio.

#include "Tracking/Tracking.h"

#include "KT/InstanceRegistry.h"

#include "BenchSupport.h"

#include <benchmark/benchmark.h>

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <malloc.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

using namespace Velkor;
using namespace Velkor::KT::Tracking;

namespace
{

const char* const kMain = "/KT/Tracking/Config.xml";
const char* const kFilter = "/KT/Tracking/FilterConfig.xml";
const char* const kAggregator = "/KT/Tracking/AggregatorConfig.xml";

using Bench::MakeManager;
using Bench::NullTracker;

// glibc adjusts when it maps a large block (a DOM's biggest heap blocks are) into memory of its
// own and when it gives the top of the heap back, learning from what the process freed before.
// Left to that, a parse costs up to twice as much in one order of benchmarks as in another, in
// page faults. Fixed thresholds keep every parse on a heap that stays, so readings and floors
// compare the same way whichever runs first. Set for the whole benchmark program, before main.
[[maybe_unused]] const bool kAllocatorSettled =
    mallopt(M_MMAP_THRESHOLD, 4 << 20) == 1 && mallopt(M_TRIM_THRESHOLD, 64 << 20) == 1;

// Runs `read` on the text of `path` once an iteration.
void ReadDocument(benchmark::State& state, const char* path,
                  const std::function<void(const std::string&)>& read)
{
    const std::string text = LoadConfigFromQrc(path);
    xercesc::XMLPlatformUtils::Initialize();
    for (auto _ : state)
    {
        read(text);
    }
    xercesc::XMLPlatformUtils::Terminate();
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_BareDomParse(benchmark::State& state, const char* path)
{
    ReadDocument(state, path,
                 [](const std::string& text)
                 {
                     xercesc::XercesDOMParser parser;
                     parser.setDoNamespaces(true);
                     parser.setCreateCommentNodes(false);
                     xercesc::MemBufInputSource source(
                         reinterpret_cast<const XMLByte*>(text.data()), text.size(), "");
                     parser.parse(source);
                     benchmark::DoNotOptimize(parser.getDocument());
                 });
}

template <typename Tracker>
void TrackerSetConfig(benchmark::State& state, const char* path)
{
    Tracker tracker(std::make_shared<NullTracker>());
    ReadDocument(state, path, [&tracker](const std::string& text) { tracker.SetConfig(text); });
}
const auto BM_FilterKtTrackerSetConfig = TrackerSetConfig<FilterKtTracker>;
const auto BM_AggregatorKtTrackerSetConfig = TrackerSetConfig<AggregatorKtTracker>;

// Reading the main document and handing its sections to both handlers.
void BM_StatisticsManagerSetConfig(benchmark::State& state, const char* path)
{
    KT::InstanceRegistry registry;
    const auto manager = MakeManager(std::make_shared<NullTracker>(), {});
    ReadDocument(state, path, [&manager](const std::string& text) { manager->SetConfig(text); });
}

void Settings(benchmark::internal::Benchmark* registered)
{
    Velkor::Bench::MinOfRepetitions(registered->Unit(benchmark::kMicrosecond));
}

BENCHMARK_CAPTURE(BM_BareDomParse, Main, kMain)->Apply(Settings);
BENCHMARK_CAPTURE(BM_StatisticsManagerSetConfig, Main, kMain)->Apply(Settings);

BENCHMARK_CAPTURE(BM_BareDomParse, Filter, kFilter)->Apply(Settings);
BENCHMARK_CAPTURE(BM_FilterKtTrackerSetConfig, Filter, kFilter)->Apply(Settings);

BENCHMARK_CAPTURE(BM_BareDomParse, Aggregator, kAggregator)->Apply(Settings);
BENCHMARK_CAPTURE(BM_AggregatorKtTrackerSetConfig, Aggregator, kAggregator)->Apply(Settings);

}  // namespace
