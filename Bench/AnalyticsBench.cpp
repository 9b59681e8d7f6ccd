// The uploader (Kt::Analytics) beside its floors, in one run, the floors measured by turns with
// what they are the floor of so that a busy machine slows both alike:
// - Track on the host's thread, against the reference JSON Lines tracker;
// - events per second from Track into a local ClickHouse server until drained, against the same
//   rows posted to the server directly, batch after batch, by one client;
// - the upload thread's own work for a batch;
// - the memory a backlog of 1,000,000 events costs, against the reference tracker writing the
//   same events, and the rate at which that backlog drains;
// - the time from Track until the event can be queried, with the default batch age and with none.
// The ClickHouse server is the store tests' own (Tests/Support), started on free ports.

#include "Analytics/AnalyticsConstants.h"
#include "Analytics/BatchBuilder_p.h"
#include "Analytics/ClickHouseSink_p.h"
#include "Analytics/EventLineFormat_p.h"
#include "Analytics/Gzip_p.h"
#include "Analytics/JsonLinesApplicationTracker.h"
#include "Analytics/NdjsonSink_p.h"
#include "Analytics/UploadingApplicationTracker.h"

#include "Support/ClickHouseServer.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using namespace Velkor::Analytics;
using KtStoreTest::ClickHouseServer;
using Clock = std::chrono::steady_clock;

namespace
{

// The ten properties of a typical event (as Bench/BenchSupport.h's TenProperties()).
const Properties kTenProperties{
    {"KEY_0", "VALUE_0"},     {"KEY_1", "VALUE_1"}, {"KEY_2", "VALUE_2"}, {"KEY_3", "VALUE_3"},
    {"KEY_4", "VALUE_4"},     {"KEY_5", "VALUE_5"}, {"KEY_6", "VALUE_6"}, {"DURATION", "90"},
    {"FILE_SIZE", "5242880"}, {"AUDIO_SOURCES", ""}};

// `count` spool lines of the typical event.
std::string SpoolLines(int count)
{
    const EventLineContext context{"recorder", "installation", "3.1.0", {{SID, "session"}}};
    std::string data;
    for (int i = 0; i < count; ++i)
    {
        AppendEventLine(data, context, "CAPTURE_STOP", kTenProperties);
    }
    return data;
}

long ResidentKiB(const char* field = "VmRSS:")
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
    {
        if (line.rfind(field, 0) == 0)
        {
            return std::stol(line.substr(std::string(field).size()));
        }
    }
    return 0;
}

// The store's table kt.events, empty.
ClickHouseServer& EmptyStore()
{
    ClickHouseServer& store = ClickHouseServer::Shared();
    store.CreateDatabase("kt", KT_STORE_DIR "/schema.sql");
    store.Query("TRUNCATE TABLE events", "kt");
    return store;
}

// An uploader's options with the store away (a closed port) and a spool of 1 GiB, or into the
// store.
UploadOptions Options(bool storeAway)
{
    UploadOptions options;
    options.url =  // with the store away, a port nobody listens on
        storeAway ? "http://127.0.0.1:" + std::to_string(ClickHouseServer::FreePorts().http) + "/"
                  : ClickHouseServer::Shared().Url();
    if (storeAway)
    {
        options.minRetryDelay = std::chrono::minutes(10);
    }
    options.spoolCapBytes = 1ull << 30;
    options.applicationVersion = "3.1.0";
    return options;
}

RefPtr<UploadingApplicationTracker> Uploader(UploadOptions options, const QString& directory)
{
    auto tracker = UploadingApplicationTracker::Create(options);
    tracker->Initialize({{SID, "session"}}, "recorder", directory.toStdString());
    return tracker;
}

// The reference JSON Lines tracker, in one file.
RefPtr<JsonLinesApplicationTracker> Reference(const QString& directory)
{
    JsonLinesApplicationTracker::Options options;
    options.maxFileBytes = 1ull << 40;
    auto tracker = JsonLinesApplicationTracker::Create(options);
    tracker->Initialize({{SID, "session"}}, "recorder", directory.toStdString());
    return tracker;
}

// --- Track on the host's thread ---------------------------------------------------------------

// Median of a sample.
double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// The two trackers take turns, 1,000 events each, 300 turns: a machine that is busy at one
// moment slows both alike. Each gets a data directory of its own; the uploader's store is
// away, so its thread waits out a backoff and takes no time. Counters: the median time of one
// Track over the turns, in ns, and the uploader's against the reference tracker.
void BM_TrackSideBySide(benchmark::State& state)
{
    constexpr int kTurns = 300;
    constexpr int kPerTurn = 1000;
    const std::string name = "CAPTURE_STOP";
    const Properties& properties = kTenProperties;
    for (auto _ : state)
    {
        QTemporaryDir directory;
        auto reference = Reference(directory.path() + "/reference");
        auto uploader = Uploader(Options(true), directory.path() + "/uploader");

        std::vector<double> referenceTimes, uploading;
        const auto turn = [&](auto&& track, std::vector<double>& times)
        {
            const auto start = Clock::now();
            for (int i = 0; i < kPerTurn; ++i)
            {
                benchmark::DoNotOptimize(track());
            }
            times.push_back(std::chrono::duration<double, std::nano>(Clock::now() - start).count() /
                            kPerTurn);
        };
        for (int i = 0; i < kTurns; ++i)
        {
            turn([&] { return reference->Track(name, properties); }, referenceTimes);
            turn([&] { return uploader->Track(name, properties); }, uploading);
        }
        state.counters["reference ns"] = Median(referenceTimes);
        state.counters["uploader ns"] = Median(uploading);
        state.counters["x reference"] = Median(uploading) / Median(referenceTimes);
    }
    state.SetLabel("uploader / reference tracker (floor)");
}
BENCHMARK(BM_TrackSideBySide)->Iterations(1)->Unit(benchmark::kSecond);

// --- Into the store, drained -------------------------------------------------------------------

constexpr int kDrainEvents = 200000;

// The same 200,000 events, by turns: tracked into the uploader as fast as the host can until the
// store has every one, and, as the floor, their rows made and compressed beforehand and posted
// batch after batch by one client (only the server's work timed). Counters: events per second
// of each, best of three turns.
void BM_DrainSideBySide(benchmark::State& state)
{
    std::vector<std::string> bodies;
    const std::string data = SpoolLines(kDrainEvents);
    const ClickHouseSink sink(QUrl("http://store:8123/"), UploadOptions());
    Batch batch;
    for (std::size_t at = 0; at < data.size(); at += batch.consumedBytes)
    {
        BuildBatch(std::string_view(data).substr(at), 10000, sink, batch);
        QByteArray compressed;
        Gzip(batch.body, 1, compressed);
        bodies.push_back(compressed.toStdString());
    }
    const std::string target = "/?query=INSERT%20INTO%20kt.events%20FORMAT%20JSONEachRow";
    for (auto _ : state)
    {
        double uploaded = 0;
        double floor = 0;
        for (int round = 0; round < 3; ++round)
        {
            EmptyStore();
            QTemporaryDir directory;
            auto uploader = Uploader(Options(false), directory.path());
            auto start = Clock::now();
            for (int i = 0; i < kDrainEvents; ++i)
            {
                uploader->Track("CAPTURE_STOP", kTenProperties);
            }
            if (uploader->Flush(std::chrono::minutes(10)))
            {
                uploaded = std::max(
                    uploaded,
                    kDrainEvents / std::chrono::duration<double>(Clock::now() - start).count());
            }

            const int port = EmptyStore().GetPorts().http;
            start = Clock::now();
            for (const std::string& batch : bodies)
            {
                KtStoreTest::HttpPost(port, target, batch, {{"Content-Encoding", "gzip"}});
            }
            floor = std::max(
                floor, kDrainEvents / std::chrono::duration<double>(Clock::now() - start).count());
        }
        state.counters["uploader events/s"] = uploaded;
        state.counters["server alone events/s"] = floor;
    }
    state.SetLabel("Track to queryable / the server alone, the same gzip batches (floor)");
}
BENCHMARK(BM_DrainSideBySide)->Iterations(1)->Unit(benchmark::kSecond);

// The upload thread's own work for one batch of 10,000 spool lines: reading each line, writing
// its row (argument 0: the line as it is, NDJSON; 1: ClickHouse's row), and gzip at level 1.
void BM_MakeBatch(benchmark::State& state)
{
    const std::string data = SpoolLines(10000);
    const UploadOptions options;
    const QUrl url("http://store:8123/");
    const std::unique_ptr<Sink> sink =
        state.range(0) ? std::unique_ptr<Sink>(std::make_unique<ClickHouseSink>(url, options))
                       : std::make_unique<NdjsonSink>(url, options);
    Batch batch;
    QByteArray compressed;
    for (auto _ : state)
    {
        BuildBatch(data, 10000, *sink, batch);
        Gzip(batch.body, 1, compressed);
        benchmark::DoNotOptimize(compressed.data());
    }
    state.SetItemsProcessed(state.iterations() * 10000);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
    state.SetLabel(state.range(0) ? "ClickHouse rows" : "NDJSON");
}
BENCHMARK(BM_MakeBatch)->DenseRange(0, 1)->Unit(benchmark::kMillisecond);

// --- A backlog of 1,000,000 events ------------------------------------------------------------

constexpr int kBacklog = 1000000;

// Resident memory added while 1,000,000 events pile up in the spool (the store away), and while
// a new uploader drains them into the store (the peak); beside it the reference tracker writing
// the same events.
void BM_BacklogOfAMillion(benchmark::State& state)
{
    const bool reference = state.range(0) == 0;
    for (auto _ : state)
    {
        QTemporaryDir directory;
        const long before = ResidentKiB();
        if (reference)
        {
            auto tracker = Reference(directory.path());
            for (int i = 0; i < kBacklog; ++i)
            {
                tracker->Track("CAPTURE_STOP", kTenProperties);
            }
            state.counters["growth MB"] = (ResidentKiB() - before) / 1024.0;
            continue;
        }
        {
            auto uploader = Uploader(Options(true), directory.path());
            for (int i = 0; i < kBacklog; ++i)
            {
                uploader->Track("CAPTURE_STOP", kTenProperties);
            }
            state.counters["growth MB"] = (ResidentKiB() - before) / 1024.0;
            state.counters["backlog"] = static_cast<double>(uploader->Counters().backlog);
        }
        // Drained by the next start, the peak of resident memory meanwhile.
        EmptyStore();
        std::ofstream("/proc/self/clear_refs") << "5";
        const long restart = ResidentKiB();
        UploadOptions options = Options(false);
        options.minRetryDelay = std::chrono::seconds(1);
        const auto start = Clock::now();
        auto uploader = Uploader(options, directory.path());
        const bool drained = uploader->Flush(std::chrono::minutes(20));
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        state.counters["drain peak growth MB"] = (ResidentKiB("VmHWM:") - restart) / 1024.0;
        state.counters["drained events/s"] = drained ? kBacklog / seconds : 0;
    }
    state.SetLabel(reference ? "reference tracker, the same events (floor)"
                             : "uploader, store away, then drained by the next start");
}
BENCHMARK(BM_BacklogOfAMillion)->DenseRange(0, 1)->Iterations(1)->Unit(benchmark::kSecond);

// --- From Track to the store -------------------------------------------------------------------

// One event at a time on an idle machine: from Track until a query finds it. Argument: the
// batch age in milliseconds (5000 is the default; 0 sends every event as soon as it comes).
void BM_TrackToQueryable(benchmark::State& state)
{
    ClickHouseServer& store = EmptyStore();
    QTemporaryDir directory;
    UploadOptions options = Options(false);
    options.maxBatchAge = std::chrono::milliseconds(state.range(0));
    auto uploader = Uploader(options, directory.path());
    int probe = 0;
    for (auto _ : state)
    {
        const std::string value = std::to_string(state.range(0)) + "-" + std::to_string(++probe);
        const auto start = Clock::now();
        uploader->Track("PROBE", {{"N", value}});
        const std::string query =
            "SELECT count() FROM events WHERE name = 'PROBE' AND "
            "params.value[indexOf(params.key, 'N')] = '" +
            value + "'";
        while (store.Query(query, "kt") != "1\n")
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
    }
    state.SetLabel(state.range(0) == 0 ? "batch age 0" : "default batch age (5 s)");
}
BENCHMARK(BM_TrackToQueryable)
    ->Arg(0)
    ->Arg(5000)
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);

}  // namespace
