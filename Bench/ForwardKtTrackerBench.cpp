#include "BenchSupport.h"

#include "Analytics/ApplicationTrackerFactory.h"
#include "Analytics/JsonLinesApplicationTracker.h"
#include "App/CustomizationManager.h"
#include "App/SessionId.h"
#include "App/ioPath.h"
#include "KT/ProductSettings.h"

#include <QTemporaryDir>

#include <memory>
#include <string>

using Velkor::Analytics::IApplicationTracker;
using Velkor::Analytics::JsonLinesApplicationTracker;
using Velkor::Analytics::RefPtr;
using Velkor::Analytics::ScopedApplicationTrackerCreator;
using Velkor::KT::Tracking::Event;
using Velkor::KT::Tracking::ForwardKtTracker;

namespace
{

// Events per second through the forwarding tracker into the reference analytics tracker: the
// permission check, formatting one JSON line and one write(2) per event, rotation included.
// `range(0)` = 1 lets the statistics through, 0 stops them at the permission check.
void BM_ForwardIntoJsonLines(benchmark::State& state)
{
    QTemporaryDir directory;
    ScopedApplicationTrackerCreator creator(
        []
        {
            JsonLinesApplicationTracker::Options options;
            options.maxFileBytes = 16 * 1024 * 1024;
            options.maxFiles = 2;
            return RefPtr<IApplicationTracker>(JsonLinesApplicationTracker::Create(options));
        });
    auto settings = std::make_shared<Velkor::KT::ProductSettings>();
    settings->SetAllowSendStatistics(state.range(0) != 0);
    ForwardKtTracker tracker(std::make_shared<Velkor::App::CustomizationManager>("recorder", ""),
                             settings, std::make_shared<Velkor::App::SessionId>(),
                             Velkor::App::ioPath(directory.path()), {});
    const Event event = Velkor::Bench::TenProperties();
    for (auto _ : state)
    {
        tracker.Track(event);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ForwardIntoJsonLines)->ArgName("allowed")->Arg(1)->Arg(0);

}  // namespace
