// Cost of reading the shipped documents, as SetConfig pays it.

#include "Tracking/Tracking.h"

#include <benchmark/benchmark.h>

#include <xercesc/util/PlatformUtils.hpp>

#include <sstream>
#include <string>

namespace Config = Velkor::KT::Tracking::Config;
using Velkor::KT::Tracking::LoadConfigFromQrc;

namespace
{

// With state.range(0) set, Xerces stays initialised around the loop, which shows how much of a
// parse is the initialisation each parse otherwise does on its own.
template <typename Parse>
void ParseDocument(benchmark::State& state, const char* path, Parse parse)
{
    const std::string text = LoadConfigFromQrc(path);
    const bool held = state.range(0) != 0;
    ::xml_schema::flags flags = ::xml_schema::flags::dont_validate;
    if (held)
    {
        xercesc::XMLPlatformUtils::Initialize();
        flags = flags | ::xml_schema::flags::dont_initialize;
    }
    for (auto _ : state)
    {
        std::istringstream input(text);
        auto model = parse(input, flags);
        benchmark::DoNotOptimize(model);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
    if (held)
    {
        xercesc::XMLPlatformUtils::Terminate();
    }
}

void BM_ParseMainDocument(benchmark::State& state)
{
    ParseDocument(state, "/KT/Tracking/Config.xml",
                  [](std::istream& in, ::xml_schema::flags f) { return Config::ktmstat(in, f); });
}
BENCHMARK(BM_ParseMainDocument)->Arg(0)->Arg(1);

void BM_ParseFilterDocument(benchmark::State& state)
{
    ParseDocument(state, "/KT/Tracking/FilterConfig.xml",
                  [](std::istream& in, ::xml_schema::flags f)
                  { return Config::Filter::filter(in, f); });
}
BENCHMARK(BM_ParseFilterDocument)->Arg(0)->Arg(1);

void BM_LoadConfigFromQrc(benchmark::State& state)
{
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(LoadConfigFromQrc("/KT/Tracking/Config.xml"));
    }
}
BENCHMARK(BM_LoadConfigFromQrc);

}  // namespace
