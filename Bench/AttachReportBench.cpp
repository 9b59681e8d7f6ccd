// The cost of the attach report: attaching the demo host's windows with and without it, and the
// events of a hooked widget afterwards.

#include "HostServices.h"
#include "MainWindow.h"
#include "Recorder.h"

#include "BenchSupport.h"
#include "Tracking/GuiHandler.h"

#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <QTemporaryDir>
#include <QWidget>

#include <ctime>
#include <memory>
#include <set>
#include <sstream>
#include <vector>

using namespace Velkor::KT::Tracking;

namespace
{

using NullEndpoint = Velkor::Bench::NullTracker;
using Velkor::Bench::Shipped;
using Velkor::Bench::ThreadSeconds;

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
    Velkor::Demo::HostServices services{directory.path()};
    Velkor::Demo::SimulatedClock clock;
    Velkor::Demo::Recorder recorder{services, clock};
    Velkor::Demo::MainWindow window{services, recorder, [](QWidget*) {}};
};

std::unique_ptr<GuiHandler> Handler(bool report, int& reports)
{
    auto handler = std::make_unique<GuiHandler>(std::make_shared<NullEndpoint>());
    handler->SetConfig(*Shipped().document->gui(), Shipped().lines);
    if (report)
    {
        handler->SetAttachReportSink([&reports](const AttachReport&) { ++reports; });
    }
    return handler;
}

// What StatisticsManager::AttachAllTopLevelWindows() does, with the time it takes.
double AttachAll(GuiHandler& handler)
{
    const double start = ThreadSeconds();
    std::set<QAction*> actions;
    for (QWidget* widget : QApplication::topLevelWidgets())
    {
        handler.Attach(widget);
        const auto widgetActions = widget->actions();
        actions.insert(widgetActions.begin(), widgetActions.end());
    }
    for (QAction* action : actions)
    {
        handler.Attach(action);
    }
    return ThreadSeconds() - start;
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
        QMouseEvent move(QEvent::MouseMove, QPointF(1, 1), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
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
    int reports = 0;
    for (auto _ : state)
    {
        state.PauseTiming();
        for (const bool report : {false, true})
        {
            auto handler = Handler(report, reports);
            attach[report] += AttachAll(*handler);
            perEvent[report] += SecondsPerMouseMove(demo.window.recButton);
            ForgetMarks();
        }
        state.ResumeTiming();
    }
    state.counters["ms_without_report"] = 1e3 * attach[0] / state.iterations();
    state.counters["ms_with_report"] = 1e3 * attach[1] / state.iterations();
    state.counters["ratio"] = attach[1] / attach[0];
    state.counters["reports"] = double(reports) / state.iterations();
    state.counters["ns_per_event_without_report"] = 1e9 * perEvent[0] / state.iterations();
    state.counters["ns_per_event_with_report"] = 1e9 * perEvent[1] / state.iterations();
}
BENCHMARK(BM_AttachDemoWindows)->Unit(benchmark::kMillisecond)->Iterations(40);

}  // namespace
