#include "Tracking/Tracking.h"

#include "Support/RecordingTracker.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <atomic>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

using Velkor::KT::Tracking::AggregatorKtTracker;
using Velkor::KT::Tracking::Event;
using Velkor::KT::Tracking::FilterKtTracker;
using Velkor::KT::Tracking::IKtTracker;
using Velkor::KT::Tracking::IRuleTraceListener;
using Velkor::KT::Tracking::LoadConfigFromQrc;
using Velkor::KT::Tracking::RecordingKtTracker;

namespace
{

constexpr int kThreads = 8;
constexpr int kPerThread = 5000;

struct Chain
{
    std::shared_ptr<KtTest::RecordingTracker> out = std::make_shared<KtTest::RecordingTracker>();
    std::shared_ptr<AggregatorKtTracker> aggregator = std::make_shared<AggregatorKtTracker>(out);
    std::shared_ptr<FilterKtTracker> filter = std::make_shared<FilterKtTracker>(aggregator);

    void Configure()
    {
        filter->SetConfig(LoadConfigFromQrc("/KT/Tracking/FilterConfig.xml"));
        aggregator->SetConfig(LoadConfigFromQrc("/KT/Tracking/AggregatorConfig.xml"));
    }
};

void RunThreads(IKtTracker& head, const std::vector<std::vector<Event>>& streams)
{
    std::atomic<bool> go{false};
    std::vector<std::thread> threads;
    for (const auto& stream : streams)
    {
        threads.emplace_back([&head, &stream, &go] {
            while (!go.load())
            {
                std::this_thread::yield();
            }
            for (const auto& event : stream)
            {
                head.Track(event);
            }
        });
    }
    go = true;
    for (auto& thread : threads)
    {
        thread.join();
    }
}

// Each thread's events once each and in that thread's order; the name tells the thread.
void ExpectEachOnceInThreadOrder(const std::vector<Event>& events)
{
    ASSERT_EQ(events.size(), static_cast<size_t>(kThreads * kPerThread));
    std::map<std::string, int> next;
    for (const auto& event : events)
    {
        const int seq = std::stoi(event.params.at("SEQ"));
        ASSERT_EQ(seq, next[event.name]) << event.name << " lost, doubled or reordered";
        ++next[event.name];
    }
}

// Without documents both stages pass everything: each event arrives exactly once, and the
// events of one thread arrive in that thread's order. The recording stage at the head writes
// each of them as one whole line, in the same way.
TEST(ChainStressTest, WithoutDocumentsNothingIsLostOrDoubled)
{
    Chain chain;
    QTemporaryDir dir;
    const QString path = dir.filePath("raw.jsonl");
    auto recorder = std::make_shared<RecordingKtTracker>(chain.filter, path);
    std::vector<std::vector<Event>> streams(kThreads);
    for (int t = 0; t < kThreads; ++t)
    {
        for (int i = 0; i < kPerThread; ++i)
        {
            streams[t].push_back({"T" + std::to_string(t), {{"SEQ", std::to_string(i)}}});
        }
    }
    RunThreads(*recorder, streams);
    recorder.reset();

    ExpectEachOnceInThreadOrder(chain.out->Events());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    std::vector<Event> recorded;
    for (const QByteArray& line : file.readAll().split('\n'))
    {
        if (!line.isEmpty())
        {
            const QJsonObject object = QJsonDocument::fromJson(line).object();
            const QJsonValue seq = object.value("params").toObject().value("SEQ");
            recorded.push_back({object.value("name").toString().toStdString(),
                                {{"SEQ", seq.toString().toStdString()}}});
        }
    }
    ExpectEachOnceInThreadOrder(recorded);
}

// A per-thread stream whose delivered count does not depend on how threads interleave: causes
// are always held, main events always delivered, unknown hot keys always dropped. Only thread 0
// shows windows, so the repeat memory of that event is its alone.
std::vector<Event> Stream(int thread)
{
    const std::string id = std::to_string(thread);
    std::vector<Event> stream;
    for (int i = 0; i < kPerThread; ++i)
    {
        const std::string seq = std::to_string(i);
        switch (i % 7)
        {
        case 0: stream.push_back({"TRAY_CAPTURE_START_EVENT", {{"METHOD", "TRAY"}, {"BY", id}}}); break;
        case 1: stream.push_back({"CAPTURE_START", {{"AUDIO_SOURCES", ""}, {"BY", id}, {"SEQ", seq}}}); break;
        case 2: stream.push_back({"HOTKEY_TRIGGERED", {{"HOTKEY_ID", i % 2 ? "takeScreenshot" : "openEditor"}}}); break;
        case 3: stream.push_back({"SCREENSHOT_SAVE", {{"BY", id}}}); break;
        case 4: stream.push_back({"CAPTURE_STOP", {{"DURATION", seq}, {"FILE_SIZE", seq + "000"}}}); break;
        case 5:
            if (thread == 0)
            {
                stream.push_back({"SHOW_WINDOW", {{"WINDOW", (i / 7) % 3 ? "EDITOR" : "PLAYER"}}});
            }
            else
            {
                stream.push_back({"DELETE_FILE", {{"TYPE", "x.mp4"}}});
            }
            break;
        default: stream.push_back({"", {{"BY", id}}}); break;
        }
    }
    return stream;
}

// Counts the reports of each stage without a lock of its own: the stages call it under theirs,
// so a call made outside would show as a race in the thread-sanitizer build.
class StageCounts : public IRuleTraceListener
{
public:
    void FilterStarted(const Event&) override { ++filtered; }
    void AggregatorFinished(const Event& result) override { delivered += !result.name.empty(); }

    int filtered = 0;
    size_t delivered = 0;
};

TEST(ChainStressTest, ShippedDocumentsDeliverWhatASingleThreadPredicts)
{
    std::vector<std::vector<Event>> streams;
    size_t predicted = 0;
    for (int t = 0; t < kThreads; ++t)
    {
        streams.push_back(Stream(t));
        Chain alone;
        alone.Configure();
        for (const auto& event : streams.back())
        {
            alone.filter->Track(event);
        }
        predicted += alone.out->Events().size();
    }

    Chain chain;
    chain.Configure();
    const auto counts = std::make_shared<StageCounts>();
    chain.filter->SetTraceListener(counts);
    chain.aggregator->SetTraceListener(counts);
    RunThreads(*chain.filter, streams);
    const auto delivered = chain.out->Events();
    EXPECT_EQ(delivered.size(), predicted);
    EXPECT_EQ(counts->filtered, kThreads * kPerThread);
    EXPECT_EQ(counts->delivered, predicted);

    // No event comes out half rewritten: every delivered name is one the rules can produce.
    const std::set<std::string> names{"CAPTURE_START", "SCREENSHOT_SAVE", "CAPTURE_STOP",
                                      "SHOW_WINDOW", "DELETE_FILE"};
    for (const auto& event : delivered)
    {
        ASSERT_EQ(names.count(event.name), 1u) << event.name;
        if (event.name == "CAPTURE_START")
        {
            ASSERT_EQ(event.params.at("AUDIO_SOURCES"), "OFF");
        }
        if (event.name == "DELETE_FILE")
        {
            ASSERT_EQ(event.params.at("TYPE"), "VIDEO");
        }
    }
}

}  // namespace
