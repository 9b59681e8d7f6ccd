#include "BenchSupport.h"
#include "Tracking/GuiHandler.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QMouseEvent>
#include <QMoveEvent>
#include <QPaintEvent>
#include <QPushButton>
#include <QTimerEvent>
#include <QWidget>

#include <chrono>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using namespace Velkor::KT::Tracking;

namespace
{

using NullEndpoint = Velkor::Bench::NullTracker;

const Config::Gui& ShippedGui()
{
    return *Velkor::Bench::Shipped().document->gui();
}

// A storm of the events every widget sees all the time: paint, move, timer and mouse moves.
void Storm(QWidget* target, int rounds)
{
    const QRect area(0, 0, 10, 10);
    for (int i = 0; i < rounds; ++i)
    {
        QPaintEvent paint(area);
        QMoveEvent move(QPoint(i % 7, 0), QPoint(0, 0));
        QTimerEvent timer(1);
        QMouseEvent mouse(QEvent::MouseMove, QPointF(1, 1), Qt::NoButton, Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(target, &paint);
        QCoreApplication::sendEvent(target, &move);
        QCoreApplication::sendEvent(target, &timer);
        QCoreApplication::sendEvent(target, &mouse);
    }
}

double SecondsPerRound(QWidget* target, int rounds)
{
    const auto start = std::chrono::steady_clock::now();
    Storm(target, rounds);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() / rounds;
}

// The cost per Qt event that the library adds with the shipped `gui` section attached, as a
// ratio against the same events without the library, measured in the same run.
// range(0): 1 = the events go to a watched button, 0 = to an unwatched one.
void BM_GuiEventOverhead(benchmark::State& state)
{
    const bool watched = state.range(0) != 0;
    QWidget window;
    window.setObjectName("CaptureControlPanel");
    auto* stop = new QPushButton("Stop", &window);
    stop->setObjectName("stopButton");
    auto* other = new QPushButton("Other", &window);
    other->setObjectName("unwatchedButton");
    window.show();
    QWidget* target = watched ? static_cast<QWidget*>(stop) : other;

    constexpr int kRounds = 2000;
    Storm(target, kRounds);  // warm up
    double without = 0;
    double with = 0;
    auto handler = std::make_unique<GuiHandler>(std::make_shared<NullEndpoint>());
    handler->SetConfig(ShippedGui());
    handler->Attach(&window);
    for (auto _ : state)
    {
        // Alternate so that both sides see the same machine load.
        with += SecondsPerRound(target, kRounds);
        state.PauseTiming();
        handler.reset();
        without += SecondsPerRound(target, kRounds);
        handler = std::make_unique<GuiHandler>(std::make_shared<NullEndpoint>());
        handler->SetConfig(ShippedGui());
        handler->Attach(&window);
        state.ResumeTiming();
    }
    state.counters["ns_per_event_without"] = 1e9 * without / state.iterations() / 4;
    state.counters["ns_per_event_with"] = 1e9 * with / state.iterations() / 4;
    state.counters["overhead_percent"] = 100.0 * (with - without) / without;
}
BENCHMARK(BM_GuiEventOverhead)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Attaching the shipped `gui` section to a window of range(0) objects: a tree of panels, each
// with named buttons, a tenth of them with names the section looks for.
void BM_GuiAttachShipped(benchmark::State& state)
{
    const int objects = static_cast<int>(state.range(0));
    QWidget window;
    window.setObjectName("MainWindow");
    std::vector<QWidget*> panels;
    for (int i = 0; i < objects / 10; ++i)
    {
        auto* panel = new QWidget(&window);
        panel->setObjectName(i % 10 == 0 ? "CaptureControlPanel" : "Panel" + QString::number(i));
        for (int j = 0; j < 9; ++j)
        {
            auto* button = new QPushButton(panel);
            button->setObjectName(j == 0 ? "stopButton" : "button" + QString::number(j));
        }
    }
    for (auto _ : state)
    {
        GuiHandler handler(std::make_shared<NullEndpoint>());
        handler.SetConfig(ShippedGui());
        handler.Attach(&window);
        state.PauseTiming();
        // Forget the marks, so that the next round attaches the same tree again.
        window.setProperty("GuiElementAutoAttacher_isAttached", QVariant());
        state.ResumeTiming();
    }
    state.counters["objects"] = objects + objects / 10;
}
BENCHMARK(BM_GuiAttachShipped)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
