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
