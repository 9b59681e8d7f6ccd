#pragma once

// What the benchmarks share: an endpoint that drops events, a typical event, the shipped main
// document, the statistics manager's application-core stand-ins, and the timing helpers.

#include "Tracking/Manager/StatisticsManager.h"
#include "Tracking/Tracking.h"

#include "App/LookAndFeelManager.h"
#include "KT/ConvertationSettings.h"
#include "Support/LaunchAndCrashDoubles.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace Velkor::Bench
{

class NullTracker : public KT::Tracking::IKtTrackingEndpoint
{
public:
    void Track(const KT::Tracking::Event& event) override
    {
        benchmark::DoNotOptimize(event.name.data());
    }
};

// An event named `name` with ten properties, three of them ones the shipped rules read.
inline KT::Tracking::Event TenProperties(const std::string& name = "CAPTURE_STOP")
{
    return {name,
            {{"KEY_0", "VALUE_0"},
             {"KEY_1", "VALUE_1"},
             {"KEY_2", "VALUE_2"},
             {"KEY_3", "VALUE_3"},
             {"KEY_4", "VALUE_4"},
             {"KEY_5", "VALUE_5"},
             {"KEY_6", "VALUE_6"},
             {"DURATION", "90"},
             {"FILE_SIZE", "5242880"},
             {"AUDIO_SOURCES", ""}}};
}

// The shipped main document, read once, with the line of each element.
struct ShippedMain
{
    ShippedMain()
    {
        std::istringstream text(KT::Tracking::LoadConfigFromQrc("/KT/Tracking/Config.xml"));
        document = KT::Tracking::Config::ktmstat(text, lines, ::xml_schema::flags::dont_validate);
    }

    KT::Tracking::Config::GuiLines lines;
    std::unique_ptr<KT::Tracking::Config::KtmStat> document;
};

inline const ShippedMain& Shipped()
{
    static const ShippedMain main;
    return main;
}

// CPU time of this thread, in seconds: other processes on the machine do not count.
inline double ThreadSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + 1e-9 * double(now.tv_nsec);
}

// On a shared machine the least of several repetitions (--benchmark_repetitions) is the figure
// least disturbed by other work.
inline void MinOfRepetitions(benchmark::internal::Benchmark* registered)
{
    registered->ComputeStatistics("min", [](const std::vector<double>& values)
                                  { return *std::min_element(values.begin(), values.end()); });
}

inline const std::vector<KT::Tracking::FillerTypes> kAllFillers = {
    KT::Tracking::FillerTypes::Accelerators,   KT::Tracking::FillerTypes::HyperPass,
    KT::Tracking::FillerTypes::AppLanguage,    KT::Tracking::FillerTypes::CountryName,
    KT::Tracking::FillerTypes::MonitorsConfig, KT::Tracking::FillerTypes::AppConfig,
    KT::Tracking::FillerTypes::HardwareConfig, KT::Tracking::FillerTypes::OSConfig};

// A manager over `tracker` for an ordinary start with no failed sessions.
inline std::unique_ptr<KT::Tracking::StatisticsManager> MakeManager(
    const std::shared_ptr<KT::Tracking::IKtTracker>& tracker,
    const std::vector<KT::Tracking::FillerTypes>& fillers)
{
    return std::make_unique<KT::Tracking::StatisticsManager>(
        tracker, std::make_shared<App::LookAndFeelManager>("en"), nullptr, nullptr,
        std::make_shared<KtTest::FixedLaunchType>(App::ILaunchTypeProcessor::EveryStart),
        std::make_shared<KtTest::ListCrashTracker>(std::vector<std::string>{}),
        std::make_shared<KT::ConvertationSettings>(), fillers);
}

}  // namespace Velkor::Bench
