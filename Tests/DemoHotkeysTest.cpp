// The demo's global hot keys: which key presses are taken and reported, following changes of
// the hot key settings.

#include "GlobalHotkeyManager.h"
#include "Support/Table.h"

#include "KT/SettingsKinds.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace
{

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
    std::vector<std::pair<std::string, QString>> settings;  // in the order they are set
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    std::vector<QString> reported;
};

using DemoHotkeysTest = KtTest::Table<HotkeyRow>;

TEST_P(DemoHotkeysTest, TakesAndReportsConfiguredKeysOnly)
{
    const HotkeyRow& row = GetParam();
    Velkor::KT::HotkeySettings settings;
    settings.Set("startStop", {QString("Ctrl+F9")});
    settings.Set("takeScreenshot", {QString("Ctrl+F7")});
    Velkor::Demo::GlobalHotkeyManager hotkeys(settings);
    for (const auto& [field, key] : row.settings)
    {
        settings.Set(field, {key});
    }
    using Velkor::Demo::GlobalHotkeyManager;
    std::vector<QString> reported;
    QObject::connect(&hotkeys, &GlobalHotkeyManager::HotkeyTriggeredId,
                     [&reported](const QString& id) { reported.push_back(id); });
    // The commands' own signals, reported after the id.
    QObject::connect(&hotkeys, &GlobalHotkeyManager::CaptureStartStopTriggered,
                     [&reported] { reported.push_back("StartStop()"); });
    QObject::connect(&hotkeys, &GlobalHotkeyManager::CapturePauseResumeTriggered,
                     [&reported] { reported.push_back("PauseResume()"); });
    QObject::connect(&hotkeys, &GlobalHotkeyManager::TakeScreenshotTriggered,
                     [&reported] { reported.push_back("Screenshot()"); });
    KeyTarget target;

    QTest::keyClick(&target, row.key, row.modifiers);

    EXPECT_EQ(reported, row.reported);
    // A reported key is taken; any other reaches the widget.
    const auto presses = std::count(target.presses.begin(), target.presses.end(), row.key);
    EXPECT_EQ(presses, row.reported.empty() ? 1 : 0);
}

KT_ROWS(
    DemoHotkeysTest,
    {{"SetBeforeCreation",
      {},
      Qt::Key_F9,
      Qt::ControlModifier,
      {"captureStartStop", "StartStop()"}},
     {"OtherField", {}, Qt::Key_F7, Qt::ControlModifier, {"takeScreenshot", "Screenshot()"}},
     {"ModifierMatters", {}, Qt::Key_F9, Qt::NoModifier, {}},
     {"ChangedKeyWorks",
      {{"startStop", "Ctrl+F10"}},
      Qt::Key_F10,
      Qt::ControlModifier,
      {"captureStartStop", "StartStop()"}},
     {"ChangedKeyOldOneFree", {{"startStop", "Ctrl+F10"}}, Qt::Key_F9, Qt::ControlModifier, {}},
     {"SetAfterCreation",
      {{"pauseResume", "Shift+F8"}},
      Qt::Key_F8,
      Qt::ShiftModifier,
      {"capturePauseResume", "PauseResume()"}},
     {"ClearedKeyFree", {{"takeScreenshot", ""}}, Qt::Key_F7, Qt::ControlModifier, {}},
     {"OverlaysHaveNoCommandSignal",
      {{"showHideOverlays", "Ctrl+F6"}},
      Qt::Key_F6,
      Qt::ControlModifier,
      {"showHideOverlays"}},
     {"PresetFieldIsNoHotkey", {{"fastPreset", "Ctrl+F5"}}, Qt::Key_F5, Qt::ControlModifier, {}}});

}  // namespace
