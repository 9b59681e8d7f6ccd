#pragma once

#include "RecorderWindows.h"

#include <QMainWindow>

#include <functional>
#include <memory>

class QAction;
class QComboBox;
class QMenu;
class QPushButton;

namespace Velkor::KT
{
class ButtonWithPopUpList;
namespace UI
{
class AbstractPresetButton;
}
}  // namespace Velkor::KT

namespace Velkor::Demo
{

class GlobalHotkeyManager;
class HostServices;
class QuickActionsMenu;
class Recorder;
class SidebarPanel;

// The recorder's main window. It owns the other windows: the tray menu, the capture control
// panel, the screenshot panel and the web camera window exist from the start; the dialogs are
// made the first time they are opened and handed to `attachWindow` before they are shown.
//
// Commands reach the recorder through the event loop, after the widget that gave them has
// finished reporting (a real recorder starts capturing asynchronously too), so statistics of
// the click always come before those of its effect.
class MainWindow : public QMainWindow
{
public:
    using AttachWindow = std::function<void(QWidget*)>;

    MainWindow(HostServices& services, Recorder& recorder, AttachWindow attachWindow);
    ~MainWindow() override;

    QPushButton* const recButton;
    QPushButton* const webCameraButton;
    QComboBox* const captureModeComboBox;
    QComboBox* const framePresetComboBox;
    QWidget* const audioSourcesPanel;
    QComboBox* const microphoneComboBox;
    SidebarPanel* const sidebar;
    QuickActionsMenu* const quickActions;
    KT::UI::AbstractPresetButton* const capturePresetButton;
    KT::UI::AbstractPresetButton* const screenshotPresetButton;
    KT::ButtonWithPopUpList* const recentProjectsButton;
    QPushButton* const screenshotModeButton;
    QPushButton* const mediaLibraryButton;
    QPushButton* const settingsButton;
    GlobalHotkeyManager* const hotkeys;

    QMenu* recordingMenu = nullptr;
    QMenu* helpMenu = nullptr;
    QAction* actionStartRecord = nullptr;
    QAction* actionStopRecord = nullptr;
    QAction* actionPauseRecord = nullptr;
    QAction* actionResumeRecord = nullptr;
    QAction* actionTakeScreenshot = nullptr;
    QAction* actionSettings = nullptr;
    QAction* actionQuit = nullptr;
    QAction* actionAbout = nullptr;

    // Stands in for the tray icon's menu.
    std::unique_ptr<QMenu> const trayMenu;
    QAction* trayStartRecord = nullptr;
    QAction* trayStopRecord = nullptr;
    QAction* trayPauseRecord = nullptr;
    QAction* trayResumeRecord = nullptr;
    QAction* trayTakeScreenshot = nullptr;

    std::unique_ptr<CaptureControlPanel> const controlPanel;
    std::unique_ptr<ScreenshotPanel> const screenshotPanel;
    std::unique_ptr<WebCameraWindow> const webCameraWindow;

    SettingsDialog* OpenSettings();
    SaveVideoDialog* OpenSaveVideo();
    MediaLibraryWindow* OpenMediaLibrary();
    EmailDialog* OpenEmail();
    AboutBoxDialog* OpenAbout();

    SettingsDialog* Settings() const { return m_settings.get(); }
    SaveVideoDialog* SaveVideo() const { return m_saveVideo.get(); }
    MediaLibraryWindow* MediaLibrary() const { return m_mediaLibrary.get(); }
    EmailDialog* Email() const { return m_email.get(); }
    AboutBoxDialog* About() const { return m_about.get(); }

    // Closes every window; the application ends when its event loop runs next.
    void Quit();

private:
    void BuildMenus();
    void BuildTrayMenu();
    void ConnectRecorder();
    template <class Window>
    Window* Open(std::unique_ptr<Window>& window, void (MainWindow::*connect)(Window*));
    void ConnectSettings(SettingsDialog* dialog);
    void ConnectSaveVideo(SaveVideoDialog* dialog);
    void ConnectMediaLibrary(MediaLibraryWindow* window);
    void ConnectEmail(EmailDialog* dialog);
    void ConnectAbout(AboutBoxDialog* dialog);
    // Runs `command` on the recorder once the current event has been handled.
    void Later(std::function<void(Recorder&)> command);

    HostServices& m_services;
    Recorder& m_recorder;
    const AttachWindow m_attachWindow;
    std::unique_ptr<SettingsDialog> m_settings;
    std::unique_ptr<SaveVideoDialog> m_saveVideo;
    std::unique_ptr<MediaLibraryWindow> m_mediaLibrary;
    std::unique_ptr<EmailDialog> m_email;
    std::unique_ptr<AboutBoxDialog> m_about;
};

}  // namespace Velkor::Demo
