#include "BenchSupport.h"

#include <benchmark/benchmark.h>

#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>

#include <locale.h>

using namespace Velkor::KT::Tracking;
using Velkor::Bench::TenProperties;
using NullEndpoint = Velkor::Bench::NullTracker;

namespace
{

// ---- The floor: the stages' evaluation as it was before they could report to a listener, kept
// here only to be measured side by side with the stages without a listener.
namespace Untraced
{

namespace F = Config::Filter;
namespace A = Config::Aggregator;

bool ReadNumber(const std::string& text, double& number)
{
    static const locale_t cLocale = newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(nullptr));
    const char* begin = text.c_str();
    char* end = nullptr;
    const int savedErrno = errno;
    errno = 0;
    const double value = strtod_l(begin, &end, cLocale);
    const bool outOfRange = errno == ERANGE;
    errno = savedErrno;
    if (end == begin || outOfRange)
    {
        return false;
    }
    number = value;
    return true;
}

bool Passes(const F::MatcherEqual& m, const std::string& v)
{
    return (v == m.value()) == m.actOn();
}
bool Passes(const F::MatcherStartsWith& m, const std::string& v)
{
    const std::string& p = m.value();
    return (v.size() >= p.size() && v.compare(0, p.size(), p) == 0) == m.actOn();
}
bool Passes(const F::MatcherEndsWith& m, const std::string& v)
{
    const std::string& s = m.value();
    return s.size() <= v.size() && (v.compare(v.size() - s.size(), s.size(), s) == 0) == m.actOn();
}
bool Passes(const F::MatcherContains& m, const std::string& v)
{
    return (v.find(m.value()) != std::string::npos) == m.actOn();
}
bool Passes(const F::MatcherRange& m, const std::string& v)
{
    double n = 0;
    const bool inside = (m.from() || m.to()) && ReadNumber(v, n) && (!m.from() || n >= *m.from()) &&
                        (!m.to() || n <= *m.to());
    return inside == m.actOn();
}
bool Passes(const F::MatcherAny& m, const std::string&)
{
    return m.actOn();
}

struct Filter : IKtTracker
{
    void Track(const Event& event) override
    {
        const Event w = Rewrite(event);
        if (!w.name.empty())
        {
            next->Track(w);
        }
    }

    template <typename Matchers>
    bool TryKind(const Matchers& matchers, const std::string& key, const std::string& value,
                 Event& w)
    {
        for (const auto& matcher : matchers)
        {
            if (Passes(matcher, value))
            {
                Act(matcher, key, w);
                return true;
            }
        }
        return false;
    }

    void Act(const F::Updater& actions, const std::string& key, Event& w)
    {
        if (actions.setValue())
        {
            w.params[key] = actions.setValue()->value();
        }
        for (const auto& add : actions.addParam())
        {
            w.params.emplace(add.key(), add.value());
        }
        for (const auto& mod : actions.modParam())
        {
            w.params[mod.key()] = mod.value();
        }
        for (const auto& rename : actions.modEvent())
        {
            w.name = rename.name();
        }
        for (const auto& skip : actions.skipEvent())
        {
            const auto last = repeats.find(w.name);
            if (!skip.skipFullRepeats() || (last != repeats.end() && last->second == w.params))
            {
                w.name.clear();
            }
            else
            {
                repeats[w.name] = w.params;
            }
        }
        for (const auto& del : actions.delParam())
        {
            w.params.erase(del.key());
        }
    }

    Event Rewrite(const Event& event)
    {
        Event w = event;
        std::lock_guard<std::mutex> lock(mutex);
        for (const auto& block : document->event())
        {
            if (block.event() != w.name)
            {
                continue;
            }
            for (const auto& rule : block.param())
            {
                const auto found = w.params.find(rule.key());
                if (found == w.params.end())
                {
                    continue;
                }
                const std::string value = found->second;
                const std::string& key = rule.key();
                TryKind(rule.equal(), key, value, w) || TryKind(rule.startsWith(), key, value, w) ||
                    TryKind(rule.endsWith(), key, value, w) ||
                    TryKind(rule.contains(), key, value, w) ||
                    TryKind(rule.inRange(), key, value, w) || TryKind(rule.any(), key, value, w);
            }
        }
        return w;
    }

    std::shared_ptr<IKtTracker> next;
    std::unique_ptr<F::Filter> document;
    std::mutex mutex;
    std::map<std::string, Event::Params> repeats;
};

struct Aggregator : IKtTracker
{
    void Track(const Event& event) override
    {
        const Event w = Merge(event);
        if (!w.name.empty())
        {
            next->Track(w);
        }
    }

    Event Merge(const Event& event)
    {
        Event w = event;
        std::lock_guard<std::mutex> lock(mutex);
        bool holdBack = false;
        for (const auto& block : document->event())
        {
            if (block.event() == w.name)
            {
                const auto held = pending.find(block.event());
                if (held != pending.end() && !held->second.empty())
                {
                    for (const auto& [key, value] : held->second)
                    {
                        w.params[key] = value;
                    }
                    held->second.clear();
                }
                continue;
            }
            for (const auto& affecting : block.affectingEventName())
            {
                if (affecting == w.name)
                {
                    pending[block.event()] = w.params;
                    holdBack = true;
                    break;
                }
            }
        }
        if (holdBack)
        {
            w.name.clear();
        }
        return w;
    }

    std::shared_ptr<IKtTracker> next;
    std::unique_ptr<A::Aggregator> document;
    std::mutex mutex;
    std::map<std::string, Event::Params> pending;
};

template <typename Root>
std::unique_ptr<Root> Read(const char* resource,
                           std::unique_ptr<Root> (*parse)(std::istream&, ::xml_schema::flags,
                                                          const ::xml_schema::properties&))
{
    std::istringstream text(LoadConfigFromQrc(resource));
    return parse(text, ::xml_schema::flags::dont_validate, ::xml_schema::properties());
}

}  // namespace Untraced

// Counts what the stages report, as kttrack coverage does.
class CountingListener : public IRuleTraceListener
{
public:
    void FilterBlockEntered(int block, const Event&) override { counts[block] += 1; }
    void FilterMatcherFired(const FilterMatcherRef& m, const std::string&,
                            const std::string&) override
    {
        counts[1000 + m.block * 100 + m.rule] += 1;
    }
    void FilterActionRun(const FilterActionTrace& action) override
    {
        benchmark::DoNotOptimize(action.after);
    }
    void AggregatorMainEvent(int block, bool) override { counts[block] += 1; }
    void AggregatorHeld(int block, int affecting, const Event::Params&,
                        const Event::Params&) override
    {
        counts[1000 + block * 100 + affecting] += 1;
    }

    std::map<int, int> counts;
};

// How a stage is measured: range(1) of the benchmarks below.
enum Mode
{
    kUntracedFloor = 0,
    kNoListener = 1,
    kListener = 2,
};

void Label(benchmark::State& state, int mode)
{
    state.SetLabel(mode == kUntracedFloor ? "untraced copy (floor)"
                   : mode == kNoListener  ? "stage, no listener"
                                          : "stage, counting listener");
}

// A stage of the shipped document `resource`, measured in `mode`, before a null endpoint; the
// floor reads the document with `read`.
template <class Stage, class Floor, class Root>
std::shared_ptr<IKtTracker> MakeStage(
    int mode, const char* resource,
    std::unique_ptr<Root> (*read)(std::istream&, ::xml_schema::flags,
                                  const ::xml_schema::properties&))
{
    const auto endpoint = std::make_shared<NullEndpoint>();
    if (mode == kUntracedFloor)
    {
        auto floor = std::make_shared<Floor>();
        floor->next = endpoint;
        floor->document = Untraced::Read(resource, read);
        return floor;
    }
    auto stage = std::make_shared<Stage>(endpoint);
    stage->SetConfig(LoadConfigFromQrc(resource));
    if (mode == kListener)
    {
        stage->SetTraceListener(std::make_shared<CountingListener>());
    }
    return stage;
}

std::shared_ptr<IKtTracker> FilterStage(int mode)
{
    return MakeStage<FilterKtTracker, Untraced::Filter>(mode, "/KT/Tracking/FilterConfig.xml",
                                                        &Untraced::F::filter);
}

std::shared_ptr<IKtTracker> AggregatorStage(int mode)
{
    return MakeStage<AggregatorKtTracker, Untraced::Aggregator>(
        mode, "/KT/Tracking/AggregatorConfig.xml", &Untraced::A::aggregator);
}

// range(0): 0 = an event no block names (walks the whole document), 1 = "CAPTURE_STOP"
// (three rules fire). range(1): the Mode.
void BM_FilterShippedDocument(benchmark::State& state)
{
    const int mode = static_cast<int>(state.range(1));
    Label(state, mode);
    const Event event = TenProperties(state.range(0) ? "CAPTURE_STOP" : "EMAIL_DIALOG_SHOWN");
    const std::shared_ptr<IKtTracker> stage = FilterStage(mode);
    IKtTracker* track = stage.get();
    benchmark::DoNotOptimize(track);  // every mode is called through the interface
    for (auto _ : state)
    {
        track->Track(event);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FilterShippedDocument)
    ->ArgsProduct({{0, 1}, {kUntracedFloor, kNoListener, kListener}});

// A cause and its main event. range(0): the Mode.
void BM_AggregatorShippedDocument(benchmark::State& state)
{
    const int mode = static_cast<int>(state.range(0));
    Label(state, mode);
    const Event cause{"TRAY_CAPTURE_START_EVENT", {{"METHOD", "TRAY"}}};
    const Event main = TenProperties("CAPTURE_START");
    const std::shared_ptr<IKtTracker> stage = AggregatorStage(mode);
    IKtTracker* track = stage.get();
    benchmark::DoNotOptimize(track);
    for (auto _ : state)
    {
        track->Track(cause);
        track->Track(main);
    }
    state.SetItemsProcessed(2 * state.iterations());
}
BENCHMARK(BM_AggregatorShippedDocument)->DenseRange(kUntracedFloor, kListener);

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
