// The library in the demo host: its whole start-up, and the cost of the attach report (attaching
// the demo host's windows with and without it, and the events of a hooked widget afterwards).

#include "HostServices.h"
#include "MainWindow.h"
#include "Recorder.h"

#include "BenchSupport.h"
#include "Tracking/Gui/GuiHandler.h"
#include "Tracking/Manager/StatisticsManager.h"
#include "Tracking/Tracking.h"

#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <QTemporaryDir>
#include <QWidget>

#include <memory>

using namespace Velkor::KT::Tracking;

namespace
{

using NullEndpoint = Velkor::Bench::NullTracker;
using Velkor::Bench::Shipped;
using Velkor::Bench::ThreadSeconds;
namespace Demo = Velkor::Demo;

// The demo host's windows, every dialog opened once: 15 top-level widgets, about 260 objects.
struct DemoWindows
{
    DemoWindows()
    {
        window.show();
        window.OpenSettings();
        window.OpenSaveVideo();
        window.OpenMediaLibrary();
        window.OpenEmail();
        window.OpenAbout();
    }

    QTemporaryDir directory;
    Demo::HostServices services{directory.path()};
    Demo::SimulatedClock clock;
    Demo::Recorder recorder{services, clock};
    Demo::MainWindow window{services, recorder, [](QWidget*) {}};
};

// A handler with the shipped section; with a report sink, whose installation makes the table of
// the section's entries once, in `prepared` seconds.
std::unique_ptr<GuiHandler> Handler(bool report, int& reports, double& prepared)
{
    auto handler = std::make_unique<GuiHandler>(std::make_shared<NullEndpoint>());
    handler->SetConfig(*Shipped().document->gui(), Shipped().lines);
    if (report)
    {
        const double start = ThreadSeconds();
        handler->SetAttachReportSink([&reports](const AttachReport&) { ++reports; });
        prepared += ThreadSeconds() - start;
    }
    return handler;
}

// Forgets the marks, so that the windows can be attached again.
void ForgetMarks()
{
    for (QWidget* widget : QApplication::topLevelWidgets())
    {
        widget->setProperty("GuiElementAutoAttacher_isAttached", QVariant());
        for (QAction* action : widget->actions())
        {
            action->setProperty("GuiElementAutoAttacher_isAttached", QVariant());
        }
    }
}

// Mouse moves on the hooked "recButton", in CPU time per event.
double SecondsPerMouseMove(QPushButton* button)
{
    constexpr int kRounds = 2000;
    const double start = ThreadSeconds();
    for (int i = 0; i < kRounds; ++i)
    {
        QMouseEvent move(QEvent::MouseMove, QPointF(1, 1), QPointF(1, 1), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(button, &move);
    }
    return (ThreadSeconds() - start) / kRounds;
}

// Attaching the demo host's windows with the shipped section, without and with a report sink,
// alternately in the same run, in CPU time of the attaching thread; then the events of a hooked
// widget, which the report must not make dearer.
void BM_AttachDemoWindows(benchmark::State& state)
{
    DemoWindows demo;
    double attach[2] = {0, 0};
    double perEvent[2] = {0, 0};
    double prepared = 0;
    int reports = 0;
    for (auto _ : state)
    {
        state.PauseTiming();
        for (const bool report : {false, true})
        {
            auto handler = Handler(report, reports, prepared);
            const double start = ThreadSeconds();
            handler->AttachAllTopLevelWindows();  // as StatisticsManager's does it
            attach[report] += ThreadSeconds() - start;
            perEvent[report] += SecondsPerMouseMove(demo.window.recButton);
            ForgetMarks();
        }
        state.ResumeTiming();
    }
    state.counters["ms_without_report"] = 1e3 * attach[0] / state.iterations();
    state.counters["ms_with_report"] = 1e3 * attach[1] / state.iterations();
    state.counters["ratio"] = attach[1] / attach[0];
    state.counters["ms_sink_prepares_report"] = 1e3 * prepared / state.iterations();
    state.counters["reports"] = double(reports) / state.iterations();
    state.counters["ns_per_event_without_report"] = 1e9 * perEvent[0] / state.iterations();
    state.counters["ns_per_event_with_report"] = 1e9 * perEvent[1] / state.iterations();
}
BENCHMARK(BM_AttachDemoWindows)->Unit(benchmark::kMillisecond)->Iterations(40);

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
    const auto endpoint = std::make_shared<NullEndpoint>();
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
            services.convertationSettings, Velkor::Bench::kAllFillers);
        manager->SetConfig(LoadConfigFromQrc("/KT/Tracking/Config.xml"));
        manager->AttachAllTopLevelWindows();
        manager->AttachInstances();

        state.PauseTiming();
        manager.reset();
        window.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_LibraryStartUp)->Unit(benchmark::kMillisecond)->Apply(Velkor::Bench::MinOfRepetitions);

}  // namespace
