#include "Tracking/Gui/QtEventHandler_p.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <memory>
#include <vector>

using Velkor::KT::Tracking::QtEventHandler;

namespace
{

// A handler watching `objects` objects, each for show, close and mouse release, as the GUI
// handler registers them.
struct Watched
{
    explicit Watched(int objects)
    {
        for (int i = 0; i < objects; ++i)
        {
            watched.push_back(std::make_unique<QObject>());
            for (QEvent::Type type : {QEvent::MouseButtonRelease, QEvent::Show, QEvent::Close})
            {
                handler.Register(type, watched.back().get(), [this](QObject*) { ++calls; });
            }
        }
    }

    QObject* Middle() const { return watched.at(watched.size() / 2).get(); }

    QtEventHandler handler;
    std::vector<std::unique_ptr<QObject>> watched;
    long calls = 0;
};

// The filter's cost per event of a watched object. range(1): 0 = an event it does not handle
// (paint, move and timer events are the bulk of what a watched widget receives), 1 = a handled
// one, with a callback that only counts.
void BM_EventFilter(benchmark::State& state)
{
    Watched watched(static_cast<int>(state.range(0)));
    QObject* object = watched.Middle();
    const bool handled = state.range(1) != 0;
    QEvent event(handled ? QEvent::Show : QEvent::Paint);
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(watched.handler.eventFilter(object, &event));
    }
    if (watched.calls != (handled ? static_cast<long>(state.iterations()) : 0))
    {
        state.SkipWithError("an event was not dispatched exactly as often as handled");
    }
}
BENCHMARK(BM_EventFilter)->ArgsProduct({{1, 100, 10000}, {0, 1}});

}  // namespace
