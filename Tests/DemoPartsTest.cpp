// The demo's parts: the simulated recorder (what the capture service reports for a sequence of
// commands and clock steps) and the global hot keys (which key presses are taken and reported,
// following changes of the hot key settings).

#include "GlobalHotkeyManager.h"
#include "HostServices.h"
#include "KT/SettingsKinds.h"
#include "Recorder.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <map>
#include <sstream>
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

// Commands, each followed by the seconds the clock then advances: S starts, X stops, C cancels,
// P toggles the pause, T toggles start and stop.
struct RecorderRow
{
    const char* label;
    const char* steps;
    int finishedRecordings;
    std::string expected;  // the log's lines, "; "-separated
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
    const std::map<char, void (Recorder::*)()> commands{{'S', &Recorder::StartRecording},
                                                        {'X', &Recorder::StopRecording},
                                                        {'C', &Recorder::CancelRecording},
                                                        {'P', &Recorder::TogglePause},
                                                        {'T', &Recorder::ToggleStartStop}};

    std::istringstream steps(row.steps);
    char command = 0;
    int seconds = 0;
    while (steps >> command >> seconds)
    {
        (recorder.*commands.at(command))();
        clock.Advance(seconds);
    }
    services.captureInfo.RemoveObserver(&log);

    std::string lines;
    for (const std::string& line : log.lines)
    {
        lines += (lines.empty() ? "" : "; ") + line;
    }
    EXPECT_EQ(lines, row.expected);
    EXPECT_EQ(finished, row.finishedRecordings);
}

KT_ROWS(DemoRecorderTest,
        {{"StartStop", "S95 X0", 1, "start sources=2 at=0; stop reason=0 size=5937500 at=95"},
         {"PausedTimeNotCounted", "S40 P300 P20 X0", 1,
          "start sources=2 at=0; pause flag=0 at=40; resume at=40; "
          "stop reason=0 size=3750000 at=60"},
         {"StoppedWhilePaused", "S10 P500 X0", 1,
          "start sources=2 at=0; pause flag=0 at=10; stop reason=0 size=625000 at=10"},
         {"CancelIsNotAFinishedRecording", "S15 C0", 0,
          "start sources=2 at=0; stop reason=1 size=937500 at=15"},
         {"CommandsOutOfPlaceDoNothing", "X5 P5 S5 S5 X0 X0", 1,
          "start sources=2 at=0; stop reason=0 size=625000 at=10"},
         {"SecondRecordingStartsFromZero", "T30 T100 T7 T0", 2,
          "start sources=2 at=0; stop reason=0 size=1875000 at=30; start sources=2 at=0; "
          "stop reason=0 size=437500 at=7"}});

// A widget that keeps the keys of the presses that reach it (modifier keys included).
class KeyTarget : public QWidget
{
public:
    std::vector<int> presses;

protected:
    void keyPressEvent(QKeyEvent* event) override { presses.push_back(event->key()); }
};

struct HotkeyRow
{
    const char* label;
    const char* field;  // set after the manager is made, if any
    const char* value;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    QString reported;  // the id, then the command's own signal
};

using DemoHotkeysTest = KtTest::Table<HotkeyRow>;

TEST_P(DemoHotkeysTest, TakesAndReportsConfiguredKeysOnly)
{
    using Velkor::Demo::GlobalHotkeyManager;
    const HotkeyRow& row = GetParam();
    Velkor::KT::HotkeySettings settings;
    settings.Set("startStop", {QString("Ctrl+F9")});
    settings.Set("takeScreenshot", {QString("Ctrl+F7")});
    GlobalHotkeyManager hotkeys(settings);
    if (row.field)
    {
        settings.Set(row.field, {QString(row.value)});
    }
    QString reported;
    QObject::connect(&hotkeys, &GlobalHotkeyManager::HotkeyTriggeredId,
                     [&reported](const QString& id) { reported += id; });
    QObject::connect(&hotkeys, &GlobalHotkeyManager::CaptureStartStopTriggered,
                     [&reported] { reported += " StartStop()"; });
    QObject::connect(&hotkeys, &GlobalHotkeyManager::CapturePauseResumeTriggered,
                     [&reported] { reported += " PauseResume()"; });
    QObject::connect(&hotkeys, &GlobalHotkeyManager::TakeScreenshotTriggered,
                     [&reported] { reported += " Screenshot()"; });
    KeyTarget target;

    QTest::keyClick(&target, row.key, row.modifiers);

    EXPECT_EQ(reported, row.reported);
    // A reported key is taken; any other reaches the widget.
    const auto presses = std::count(target.presses.begin(), target.presses.end(), row.key);
    EXPECT_EQ(presses, row.reported.isEmpty() ? 1 : 0);
}

constexpr auto Ctrl = Qt::ControlModifier;

KT_ROWS(DemoHotkeysTest,
        {{"SetBeforeCreation", nullptr, "", Qt::Key_F9, Ctrl, "captureStartStop StartStop()"},
         {"OtherField", nullptr, "", Qt::Key_F7, Ctrl, "takeScreenshot Screenshot()"},
         {"ModifierMatters", nullptr, "", Qt::Key_F9, Qt::NoModifier, ""},
         {"ChangedKeyWorks", "startStop", "Ctrl+F10", Qt::Key_F10, Ctrl,
          "captureStartStop StartStop()"},
         {"ChangedKeyOldOneFree", "startStop", "Ctrl+F10", Qt::Key_F9, Ctrl, ""},
         {"SetAfterCreation", "pauseResume", "Shift+F8", Qt::Key_F8, Qt::ShiftModifier,
          "capturePauseResume PauseResume()"},
         {"ClearedKeyFree", "takeScreenshot", "", Qt::Key_F7, Ctrl, ""},
         {"OverlaysHaveNoCommandSignal", "showHideOverlays", "Ctrl+F6", Qt::Key_F6, Ctrl,
          "showHideOverlays"},
         {"PresetFieldIsNoHotkey", "fastPreset", "Ctrl+F5", Qt::Key_F5, Ctrl, ""}});

}  // namespace
