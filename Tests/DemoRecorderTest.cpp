// The demo's simulated recorder: what the capture service reports for a sequence of commands
// and clock steps.

#include "HostServices.h"
#include "Recorder.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <string>
#include <vector>

namespace
{

using Velkor::Demo::Recorder;

// Writes each notification with the duration the service reports at that moment, in seconds.
class CaptureLog : public Velkor::KT::ICaptureInfoObserver
{
public:
    explicit CaptureLog(const Velkor::KT::ICaptureInfo& service) : m_service(service) {}

    void OnCaptureStarted(const QRect&, const Velkor::KT::CaptureSettings&,
                          const std::vector<Velkor::KT::CaptureSource>& sources,
                          const Velkor::KT::Project&) override
    {
        Add("start sources=" + std::to_string(sources.size()));
    }
    void OnCapturePaused(int flag) override { Add("pause flag=" + std::to_string(flag)); }
    void OnCaptureResumed() override { Add("resume"); }
    void OnCaptureStopped(int reason, const Velkor::KT::Project& project,
                          const std::vector<Velkor::KT::CaptureSource>&) override
    {
        Add("stop reason=" + std::to_string(reason) + " size=" + std::to_string(project.size));
    }
    void OnCaptureError() override { Add("error"); }

    std::vector<std::string> lines;

private:
    void Add(const std::string& what)
    {
        lines.push_back(what + " at=" + std::to_string(m_service.GetCaptureDuration() / 1000000));
    }

    const Velkor::KT::ICaptureInfo& m_service;
};

struct Step
{
    void (Recorder::*command)();
    int waitSeconds;  // clock advance after the command
};

struct RecorderRow
{
    const char* label;
    std::vector<Step> steps;
    std::vector<std::string> expected;
    int finishedRecordings;
};

using DemoRecorderTest = KtTest::Table<RecorderRow>;

TEST_P(DemoRecorderTest, ReportsWhatARecorderReports)
{
    const RecorderRow& row = GetParam();
    QTemporaryDir data;
    Velkor::Demo::HostServices services(data.path());
    Velkor::Demo::SimulatedClock clock;
    Recorder recorder(services, clock);
    CaptureLog log(services.captureInfo);
    services.captureInfo.AddObserver(&log);
    int finished = 0;
    QObject::connect(&recorder, &Recorder::RecordingFinished, [&finished] { ++finished; });

    for (const Step& step : row.steps)
    {
        (recorder.*step.command)();
        clock.Advance(step.waitSeconds);
    }
    services.captureInfo.RemoveObserver(&log);

    EXPECT_EQ(log.lines, row.expected);
    EXPECT_EQ(finished, row.finishedRecordings);
}

constexpr auto Start = &Recorder::StartRecording;
constexpr auto Stop = &Recorder::StopRecording;
constexpr auto Cancel = &Recorder::CancelRecording;
constexpr auto Toggle = &Recorder::TogglePause;
constexpr auto StartStop = &Recorder::ToggleStartStop;

KT_ROWS(DemoRecorderTest,
        {{"StartStop",
          {{Start, 95}, {Stop, 0}},
          {"start sources=2 at=0", "stop reason=0 size=5937500 at=95"},
          1},
         {"PausedTimeNotCounted",
          {{Start, 40}, {Toggle, 300}, {Toggle, 20}, {Stop, 0}},
          {"start sources=2 at=0", "pause flag=0 at=40", "resume at=40",
           "stop reason=0 size=3750000 at=60"},
          1},
         {"StoppedWhilePaused",
          {{Start, 10}, {Toggle, 500}, {Stop, 0}},
          {"start sources=2 at=0", "pause flag=0 at=10", "stop reason=0 size=625000 at=10"},
          1},
         {"CancelIsNotAFinishedRecording",
          {{Start, 15}, {Cancel, 0}},
          {"start sources=2 at=0", "stop reason=1 size=937500 at=15"},
          0},
         {"CommandsOutOfPlaceDoNothing",
          {{Stop, 5}, {Toggle, 5}, {Start, 5}, {Start, 5}, {Stop, 0}, {Stop, 0}},
          {"start sources=2 at=0", "stop reason=0 size=625000 at=10"},
          1},
         {"SecondRecordingStartsFromZero",
          {{StartStop, 30}, {StartStop, 100}, {StartStop, 7}, {StartStop, 0}},
          {"start sources=2 at=0", "stop reason=0 size=1875000 at=30", "start sources=2 at=0",
           "stop reason=0 size=437500 at=7"},
          2}});

}  // namespace
