#include "Tracking/QtEventHandler.h"

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

// The filter's own cost for an event of a watched object that it does not handle (paint, move
// and timer events are the bulk of what a watched widget receives).
void BM_EventFilterUnhandled(benchmark::State& state)
{
    Watched watched(static_cast<int>(state.range(0)));
    QObject* object = watched.Middle();
    QEvent event(QEvent::Paint);
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(watched.handler.eventFilter(object, &event));
    }
    if (watched.calls != 0)
    {
        state.SkipWithError("an unhandled event was dispatched");
    }
}
BENCHMARK(BM_EventFilterUnhandled)->Arg(1)->Arg(100)->Arg(10000);

// The filter's cost for a handled event, with a callback that only counts.
void BM_EventFilterHandled(benchmark::State& state)
{
    Watched watched(static_cast<int>(state.range(0)));
    QObject* object = watched.Middle();
    QEvent event(QEvent::Show);
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(watched.handler.eventFilter(object, &event));
    }
    if (watched.calls != static_cast<long>(state.iterations()))
    {
        state.SkipWithError("a handled event was not dispatched exactly once");
    }
}
BENCHMARK(BM_EventFilterHandled)->Arg(1)->Arg(100)->Arg(10000);

}  // namespace
