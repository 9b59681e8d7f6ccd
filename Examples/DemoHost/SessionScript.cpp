#include "SessionScript.h"

#include "HostServices.h"
#include "HostWidgets.h"
#include "MainWindow.h"
#include "Recorder.h"

#include "UI/AbstractPresetButton.h"
#include "UI/ButtonWithPopUpList.h"

#include <QAbstractButton>
#include <QApplication>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

namespace Velkor::Demo
{

namespace
{

void Click(QWidget* widget)
{
    QTest::mouseClick(widget, Qt::LeftButton);
}

void Key(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(widget, key, modifiers);
}

// Types `text` into a line edit in place of what it holds and confirms it with Enter.
void TypeInto(QWidget* edit, const QString& text)
{
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(edit, text);
    QTest::keyClick(edit, Qt::Key_Return);
}

// Opens `menu` at `where` (for a menu-bar menu: by clicking its title) and clicks `action`.
void ChooseFromMenu(QMenu* menu, QAction* action, QMenuBar* bar = nullptr)
{
    if (bar)
    {
        QTest::mouseClick(bar, Qt::LeftButton, {},
                          bar->actionGeometry(menu->menuAction()).center());
    }
    else
    {
        menu->popup(QPoint(900, 400));
    }
    // The click goes to the menu directly, so a menu the platform is slow to expose still takes
    // it; waiting only lets a person watching see it.
    const bool exposed = QTest::qWaitForWindowExposed(menu, 1000);
    Q_UNUSED(exposed)
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
    if (menu->isVisible())
    {
        menu->hide();
    }
}

}  // namespace

SessionScript::SessionScript(MainWindow& window, Recorder& recorder, SimulatedClock& clock,
                             HostServices& services, int stepDelayMs)
    : m_window(window),
      m_recorder(recorder),
      m_clock(clock),
      m_services(services),
      m_stepDelayMs(stepDelayMs)
{
}

void SessionScript::Settle()
{
    for (int round = 0; round < 3; ++round)
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    if (m_stepDelayMs > 0)
    {
        QTest::qWait(m_stepDelayMs);
    }
}

void SessionScript::Wait(int seconds)
{
    m_clock.Advance(seconds);
}

void SessionScript::Play(const std::function<void()>& beforeQuit)
{
    MainWindow& w = m_window;
    QMenuBar* bar = w.menuBar();
    const auto step = [this](const std::function<void()>& action)
    {
        action();
        Settle();
    };

    // Prepare the first recording: mode, frame, microphone, preset.
    step([&] { Key(w.captureModeComboBox, Qt::Key_Up); });
    step([&] { Key(w.framePresetComboBox, Qt::Key_Down); });
    step([&] { Key(w.microphoneComboBox, Qt::Key_Down); });
    step([&] { Click(w.capturePresetButton); });

    // Recording 1, from the main window's button: pause and resume on the panel, draw, shoot,
    // stop; then cut, choose a preset and save.
    step([&] { Click(w.recButton); });
    Wait(40);
    step([&] { Click(w.controlPanel->pauseButton); });
    Wait(5);
    step([&] { Click(w.controlPanel->pauseButton); });
    step([&] { Click(w.controlPanel->brushSettingsButton); });
    step([&] { Click(w.controlPanel->drawArrowButton); });
    step([&] { Click(w.controlPanel->takeScreenshotButton); });
    step([&] { Click(w.controlPanel->systemAudioButton); });
    Wait(55);
    step([&] { Click(w.controlPanel->stopButton); });
    SaveVideoDialog* save = w.SaveVideo();
    if (save)
    {
        step([&] { Click(save->player->play); });
        step([&] { Click(save->player->cut); });
        step([&] { Key(save->outputPresetComboBox, Qt::Key_Down); });
        step([&] { Click(save->saveButton); });
    }

    // Recording 2, from the tray menu, with the system audio the panel switched on; stopped
    // from the menu bar after a long pause; not saved.
    step([&] { ChooseFromMenu(w.trayMenu.get(), w.trayStartRecord); });
    Wait(30);
    step([&] { ChooseFromMenu(w.trayMenu.get(), w.trayPauseRecord); });
    Wait(300);
    step([&] { ChooseFromMenu(w.trayMenu.get(), w.trayResumeRecord); });
    Wait(700);
    step([&] { ChooseFromMenu(w.recordingMenu, w.actionStopRecord, bar); });
    if (save)
    {
        step([&] { Click(save->cancelButton); });
    }

    // Recording 3, by hot keys: start, pause, resume, screenshot, then cancelled on the panel.
    step([&] { Key(&w, Qt::Key_F9, Qt::ControlModifier); });
    Wait(12);
    step([&] { Key(&w, Qt::Key_F8, Qt::ControlModifier); });
    step([&] { Key(&w, Qt::Key_F8, Qt::ControlModifier); });
    step([&] { Key(&w, Qt::Key_F7, Qt::ControlModifier); });
    step([&] { Key(&w, Qt::Key_F6, Qt::ControlModifier); });
    Wait(3);
    step([&] { Click(w.controlPanel->cancelButton); });

    // Settings: a new start/stop hot key, codec, cursor, click sound, language, HyperPass.
    step([&] { Click(w.settingsButton); });
    if (SettingsDialog* settings = w.Settings())
    {
        step([&] { TypeInto(settings->startStopHotkeyEdit, "Ctrl+F10"); });
        step([&] { Key(settings->codecComboBox, Qt::Key_Down); });
        step([&] { Key(settings->highlightCursorCheckBox, Qt::Key_Space); });
        step([&] { TypeInto(settings->clickSoundEdit, "click.wav"); });
        step([&] { Key(settings->languageComboBox, Qt::Key_Down); });
        step([&] { Key(settings->hyperPassCheckBox, Qt::Key_Space); });
        step([&] { Click(settings->closeButton); });
    }

    // Recording 4, by the new hot key, with the web camera; stopped by the same hot key and
    // saved with HyperPass.
    step([&] { Click(w.webCameraButton); });
    step([&] { Click(w.webCameraWindow->configuringScreenshotButton); });
    step([&] { Key(&w, Qt::Key_F10, Qt::ControlModifier); });
    Wait(4000);
    step([&] { Click(w.webCameraWindow->capturingScreenshotButton); });
    step([&] { Key(&w, Qt::Key_F10, Qt::ControlModifier); });
    if (save)
    {
        step([&] { Click(save->saveButton); });
    }
    step([&] { Click(w.webCameraButton); });

    // Recording 5, started by the scheduler and stopped by the time limit.
    step([&] { m_recorder.RunScheduledCapture(); });
    Wait(1800);
    step([&] { m_recorder.ReachTimeLimit(); });
    if (save)
    {
        step([&] { Click(save->cancelButton); });
    }

    // Screenshots: the screenshot mode's panel, the menu bar, the tray, a preset.
    step([&] { Click(w.screenshotModeButton); });
    step([&] { Click(w.screenshotPanel->takeScreenshotButton); });
    step([&] { ChooseFromMenu(w.recordingMenu, w.actionTakeScreenshot, bar); });
    step([&] { ChooseFromMenu(w.trayMenu.get(), w.trayTakeScreenshot); });
    step([&] { Click(w.screenshotPresetButton); });
    step([&] { w.screenshotPanel->close(); });

    // The media library: show the file, send it by e-mail, upload it, move it to the trash.
    step([&] { Click(w.mediaLibraryButton); });
    if (MediaLibraryWindow* library = w.MediaLibrary())
    {
        step([&] { Click(library->showInFolderButton); });
        step([&] { Click(library->emailButton); });
        if (EmailDialog* email = w.Email())
        {
            step([&] { QTest::keyClicks(email->recipientEdit, "friend@example.org"); });
            step([&] { Click(email->sendButton); });
        }
        step([&] { Click(library->uploader->upload); });
        step([&] { Click(library->deleteButton); });
        step([&] { Click(library->closeButton); });
    }
    // Opening the library twice in a row counts once.
    step([&] { Click(w.mediaLibraryButton); });
    step([&] { Click(w.MediaLibrary()->closeButton); });

    // The main window's other controls.
    step(
        [&]
        {
            Click(w.recentProjectsButton);
            QListWidget* list = w.recentProjectsButton->PopUp();
            if (list)
            {
                QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                                  list->visualItemRect(list->item(2)).center());
            }
        });
    step([&] { Click(w.sidebar->webCameraFeature); });
    step([&] { Click(w.sidebar->removeSchedulerFeature); });
    step([&] { Click(w.quickActions->screenshot); });

    // About box: follow the home page link.
    step([&] { ChooseFromMenu(w.helpMenu, w.actionAbout, bar); });
    if (AboutBoxDialog* about = w.About())
    {
        step(
            [&]
            {
                QLabel* label = about->homePageLabel;
                QTest::mouseClick(label, Qt::LeftButton, {}, QPoint(12, label->height() / 2));
            });
        step([&] { Click(about->closeButton); });
    }

    // Quit while the settings are open.
    step([&] { ChooseFromMenu(w.recordingMenu, w.actionSettings, bar); });
    if (beforeQuit)
    {
        beforeQuit();
    }
    step([&] { ChooseFromMenu(w.recordingMenu, w.actionQuit, bar); });
}

}  // namespace Velkor::Demo
