#include "MainWindow.h"

#include "GlobalHotkeyManager.h"
#include "HostServices.h"
#include "HostWidgets.h"
#include "Named.h"
#include "Recorder.h"

#include "UI/AbstractPresetButton.h"
#include "UI/ButtonWithPopUpList.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace Velkor::Demo
{

namespace
{

QAction* NamedAction(const QString& name, const QString& text, QObject* parent)
{
    auto* action = new QAction(text, parent);
    action->setObjectName(name);
    return action;
}

}  // namespace

MainWindow::MainWindow(HostServices& services, Recorder& recorder, AttachWindow attachWindow)
    : recButton(Named(new QPushButton("Rec"), "recButton")),
      webCameraButton(Named(new QPushButton("Web camera"), "webCameraButton")),
      captureModeComboBox(Named(new QComboBox, "captureModeComboBox")),
      framePresetComboBox(Named(new QComboBox, "framePresetComboBox")),
      audioSourcesPanel(Named(new QWidget, "audioSourcesPanel")),
      microphoneComboBox(Named(new QComboBox(audioSourcesPanel), "microphoneComboBox")),
      sidebar(new SidebarPanel),
      quickActions(new QuickActionsMenu),
      capturePresetButton(Named(new KT::UI::AbstractPresetButton("Capture-FullscreenCapture"),
                                "capturePresetButton")),
      screenshotPresetButton(
          Named(new KT::UI::AbstractPresetButton("Screenshot-Region"), "screenshotPresetButton")),
      recentProjectsButton(Named(new KT::ButtonWithPopUpList, "recentProjectsButton")),
      screenshotModeButton(Named(new QPushButton("Screenshot mode"), "screenshotModeButton")),
      mediaLibraryButton(Named(new QPushButton("Media library"), "mediaLibraryButton")),
      settingsButton(Named(new QPushButton("Settings"), "settingsButton")),
      hotkeys(new GlobalHotkeyManager(services.hotkeys, this)),
      trayMenu(std::make_unique<QMenu>()),
      controlPanel(std::make_unique<CaptureControlPanel>()),
      screenshotPanel(std::make_unique<ScreenshotPanel>()),
      webCameraWindow(std::make_unique<WebCameraWindow>()),
      m_services(services),
      m_recorder(recorder),
      m_attachWindow(std::move(attachWindow))
{
    setObjectName("MainWindow");
    setWindowTitle("Screen Recorder");

    webCameraButton->setCheckable(true);
    captureModeComboBox->addItems({"Game", "Desktop"});
    captureModeComboBox->setCurrentIndex(1);
    framePresetComboBox->addItems({"Display: 1920x1080 (primary)", "1280x720", "640x480"});
    microphoneComboBox->addItems({"Default microphone", "USB microphone"});
    (new QVBoxLayout(audioSourcesPanel))->addWidget(microphoneComboBox);
    capturePresetButton->setText("Full screen");
    screenshotPresetButton->setText("Region screenshot");
    recentProjectsButton->SetItems({"Recording 1", "Tutorial", "Game night"});

    auto* central = new QWidget(this);
    auto* layout = new QGridLayout(central);
    layout->addWidget(recButton, 0, 0);
    layout->addWidget(webCameraButton, 0, 1);
    layout->addWidget(captureModeComboBox, 1, 0);
    layout->addWidget(framePresetComboBox, 1, 1);
    layout->addWidget(audioSourcesPanel, 2, 0, 1, 2);
    layout->addWidget(capturePresetButton, 3, 0);
    layout->addWidget(screenshotPresetButton, 3, 1);
    layout->addWidget(recentProjectsButton, 4, 0);
    layout->addWidget(screenshotModeButton, 4, 1);
    layout->addWidget(mediaLibraryButton, 5, 0);
    layout->addWidget(settingsButton, 5, 1);
    layout->addWidget(quickActions, 6, 0, 1, 2);
    layout->addWidget(sidebar, 7, 0, 1, 2);
    setCentralWidget(central);

    BuildMenus();
    BuildTrayMenu();
    ConnectRecorder();

    // Right of the viewer, which opens at the screen's top left corner.
    move(660, 20);
    controlPanel->move(660, 600);
    screenshotPanel->move(660, 680);
    webCameraWindow->move(960, 680);
}

MainWindow::~MainWindow() = default;

void MainWindow::BuildMenus()
{
    recordingMenu = menuBar()->addMenu("&Recording");
    actionStartRecord = NamedAction("ActionStartRecord", "Start recording", this);
    actionPauseRecord = NamedAction("ActionPauseRecord", "Pause", this);
    actionResumeRecord = NamedAction("ActionResumeRecord", "Resume", this);
    actionStopRecord = NamedAction("ActionStopRecord", "Stop recording", this);
    actionTakeScreenshot = NamedAction("ActionTakeScreenshot", "Take screenshot", this);
    actionSettings = NamedAction("ActionSettings", "Settings...", this);
    actionQuit = NamedAction("ActionQuit", "Quit", this);
    recordingMenu->addActions({actionStartRecord, actionPauseRecord, actionResumeRecord,
                               actionStopRecord, actionTakeScreenshot});
    recordingMenu->addSeparator();
    recordingMenu->addActions({actionSettings, actionQuit});

    helpMenu = menuBar()->addMenu("&Help");
    actionAbout = NamedAction("ActionAbout", "About", this);
    helpMenu->addAction(actionAbout);
}

void MainWindow::BuildTrayMenu()
{
    trayMenu->setObjectName("TrayMenu");
    QMenu* tray = trayMenu.get();
    trayStartRecord = NamedAction("TrayActionStartRecord", "Start recording", tray);
    trayPauseRecord = NamedAction("TrayActionPauseRecord", "Pause", tray);
    trayResumeRecord = NamedAction("TrayActionResumeRecord", "Resume", tray);
    trayStopRecord = NamedAction("TrayActionStopRecord", "Stop recording", tray);
    trayTakeScreenshot = NamedAction("TrayActionTakeScreenshot", "Take screenshot", tray);
    tray->addActions(
        {trayStartRecord, trayPauseRecord, trayResumeRecord, trayStopRecord, trayTakeScreenshot});
}

void MainWindow::Later(std::function<void(Recorder&)> command)
{
    QMetaObject::invokeMethod(
        &m_recorder, [this, command] { command(m_recorder); }, Qt::QueuedConnection);
}

void MainWindow::ConnectRecorder()
{
    const auto on = [this](QAction* action, void (Recorder::*command)())
    {
        connect(action, &QAction::triggered, this,
                [this, command] { Later([command](Recorder& r) { (r.*command)(); }); });
    };
    const auto onClick = [this](QPushButton* button, void (Recorder::*command)())
    {
        connect(button, &QPushButton::clicked, this,
                [this, command] { Later([command](Recorder& r) { (r.*command)(); }); });
    };

    onClick(recButton, &Recorder::StartRecording);
    on(actionStartRecord, &Recorder::StartRecording);
    on(actionPauseRecord, &Recorder::PauseRecording);
    on(actionResumeRecord, &Recorder::ResumeRecording);
    on(actionStopRecord, &Recorder::StopRecording);
    on(actionTakeScreenshot, &Recorder::TakeScreenshot);
    on(trayStartRecord, &Recorder::StartRecording);
    on(trayPauseRecord, &Recorder::PauseRecording);
    on(trayResumeRecord, &Recorder::ResumeRecording);
    on(trayStopRecord, &Recorder::StopRecording);
    on(trayTakeScreenshot, &Recorder::TakeScreenshot);
    connect(actionSettings, &QAction::triggered, this, [this] { OpenSettings(); });
    connect(actionAbout, &QAction::triggered, this, [this] { OpenAbout(); });
    // Queued like the recorder's commands: the quit action reports the state it interrupts.
    connect(actionQuit, &QAction::triggered, this,
            [this]
            {
                QMetaObject::invokeMethod(
                    this, [this] { Quit(); }, Qt::QueuedConnection);
            });

    onClick(controlPanel->stopButton, &Recorder::StopRecording);
    onClick(controlPanel->pauseButton, &Recorder::TogglePause);
    onClick(controlPanel->cancelButton, &Recorder::CancelRecording);
    onClick(controlPanel->takeScreenshotButton, &Recorder::TakeScreenshot);
    onClick(screenshotPanel->takeScreenshotButton, &Recorder::TakeScreenshot);
    onClick(webCameraWindow->configuringScreenshotButton, &Recorder::TakeScreenshot);
    onClick(webCameraWindow->capturingScreenshotButton, &Recorder::TakeScreenshot);
    connect(controlPanel->drawArrowButton, &QPushButton::clicked, this,
            [this]
            {
                if (controlPanel->brushSettingsButton->isChecked())
                {
                    Later([](Recorder& r) { r.DrawShape("ARROW"); });
                }
            });
    connect(controlPanel->microphoneButton, &QPushButton::toggled, this,
            [this](bool on) { Later([on](Recorder& r) { r.SetMicrophoneEnabled(on); }); });
    connect(controlPanel->systemAudioButton, &QPushButton::toggled, this,
            [this](bool on) { Later([on](Recorder& r) { r.SetSystemAudioEnabled(on); }); });
    connect(captureModeComboBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int mode) { Later([mode](Recorder& r) { r.SetCaptureMode(mode); }); });
    connect(webCameraButton, &QPushButton::toggled, this,
            [this](bool on)
            {
                webCameraWindow->setVisible(on);
                Later([on](Recorder& r) { r.SetWebCameraEnabled(on); });
            });
    connect(screenshotModeButton, &QPushButton::clicked, this, [this] { screenshotPanel->show(); });
    connect(mediaLibraryButton, &QPushButton::clicked, this, [this] { OpenMediaLibrary(); });
    connect(settingsButton, &QPushButton::clicked, this, [this] { OpenSettings(); });

    connect(hotkeys, &GlobalHotkeyManager::HotkeyTriggeredId, this,
            [this](const QString& id)
            {
                if (id == "captureStartStop")
                {
                    Later([](Recorder& r) { r.ToggleStartStop(); });
                }
                else if (id == "capturePauseResume")
                {
                    Later([](Recorder& r) { r.TogglePause(); });
                }
                else if (id == "takeScreenshot")
                {
                    Later([](Recorder& r) { r.TakeScreenshot(); });
                }
            });
    connect(quickActions, &QuickActionsMenu::ActionTriggered, this,
            [this](const QString& id)
            {
                if (id == "captureStartStop")
                {
                    Later([](Recorder& r) { r.ToggleStartStop(); });
                }
                else if (id == "takeScreenshot")
                {
                    Later([](Recorder& r) { r.TakeScreenshot(); });
                }
            });

    connect(&m_recorder, &Recorder::StateChanged, this,
            [this](Recorder::State state)
            {
                const bool capturing = state != Recorder::State::Idle;
                controlPanel->setVisible(capturing);
                controlPanel->pauseButton->setText(state == Recorder::State::Paused ? "Resume"
                                                                                    : "Pause");
                webCameraWindow->SetCapturing(capturing);
            });
    connect(&m_recorder, &Recorder::RecordingFinished, this, [this] { OpenSaveVideo(); });
}

template <class Window>
Window* MainWindow::Open(std::unique_ptr<Window>& window, void (MainWindow::*connect)(Window*))
{
    if (!window)
    {
        window = std::make_unique<Window>();
        (this->*connect)(window.get());
        m_attachWindow(window.get());
    }
    window->show();
    return window.get();
}

SettingsDialog* MainWindow::OpenSettings()
{
    actionQuit->setProperty("state", "Configuring");
    return Open(m_settings, &MainWindow::ConnectSettings);
}

SaveVideoDialog* MainWindow::OpenSaveVideo()
{
    return Open(m_saveVideo, &MainWindow::ConnectSaveVideo);
}

MediaLibraryWindow* MainWindow::OpenMediaLibrary()
{
    return Open(m_mediaLibrary, &MainWindow::ConnectMediaLibrary);
}

EmailDialog* MainWindow::OpenEmail()
{
    return Open(m_email, &MainWindow::ConnectEmail);
}

AboutBoxDialog* MainWindow::OpenAbout()
{
    return Open(m_about, &MainWindow::ConnectAbout);
}

void MainWindow::ConnectSettings(SettingsDialog* dialog)
{
    dialog->move(20, 540);
    HostServices& services = m_services;
    dialog->startStopHotkeyEdit->setText(services.hotkeys.Get("startStop").value(0).toString());
    connect(dialog->startStopHotkeyEdit, &QLineEdit::returnPressed, this,
            [dialog, &services]
            { services.hotkeys.Set("startStop", {dialog->startStopHotkeyEdit->text()}); });
    connect(dialog->codecComboBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [&services](int index) { services.video.Set("codec", {index}); });
    connect(dialog->highlightCursorCheckBox, &QCheckBox::toggled, this,
            [&services](bool on) { services.cursor.Set("cursorHighlightEnabled", {on}); });
    connect(dialog->clickSoundEdit, &QLineEdit::returnPressed, this,
            [dialog, &services]
            { services.cursor.Set("customClickDownSound", {dialog->clickSoundEdit->text()}); });
    connect(dialog->languageComboBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [dialog, &services](int index)
            {
                const std::string language =
                    dialog->languageComboBox->itemData(index).toString().toStdString();
                services.lookAndFeel->SetLanguage(language);
                services.productSettings->SetCurrentLocale(language);
            });
    connect(dialog->hyperPassCheckBox, &QCheckBox::toggled, this,
            [&services](bool on) { services.convertationSettings->SetHyperPassEnabled(on); });
    connect(dialog->closeButton, &QPushButton::clicked, dialog, &QWidget::close);
    connect(dialog, &QDialog::finished, this, [this] { actionQuit->setProperty("state", {}); });
}

void MainWindow::ConnectSaveVideo(SaveVideoDialog* dialog)
{
    dialog->move(20, 540);
    connect(dialog->player, &PlayerControl::IntervalCut, this,
            [this](int begin, int end)
            { Later([begin, end](Recorder& r) { r.RemoveInterval(begin, end); }); });
    connect(dialog->saveButton, &QPushButton::clicked, this,
            [this, dialog]
            {
                const QString preset = dialog->outputPresetComboBox->currentData().toString();
                dialog->close();
                Later([preset](Recorder& r) { r.Save(preset); });
            });
    connect(dialog->cancelButton, &QPushButton::clicked, dialog, &QWidget::close);
}

void MainWindow::ConnectMediaLibrary(MediaLibraryWindow* window)
{
    window->move(20, 540);
    connect(window->showInFolderButton, &QPushButton::clicked, this,
            [this] { Later([](Recorder& r) { r.ShowInFolder(); }); });
    connect(window->emailButton, &QPushButton::clicked, this, [this] { OpenEmail(); });
    connect(window->uploader, &YouTubeUploader::UploadStarted, this,
            [this] { Later([](Recorder& r) { r.Share(kShareOnYouTube); }); });
    connect(window->deleteButton, &QPushButton::clicked, this,
            [this] { Later([](Recorder& r) { r.MoveToTrash(); }); });
    connect(window->closeButton, &QPushButton::clicked, window, &QWidget::close);
}

void MainWindow::ConnectEmail(EmailDialog* dialog)
{
    dialog->move(340, 540);
    connect(dialog->sendButton, &QPushButton::clicked, this,
            [this, dialog]
            {
                dialog->close();
                Later([](Recorder& r) { r.Share(kShareByEmail); });
            });
}

void MainWindow::ConnectAbout(AboutBoxDialog* dialog)
{
    dialog->move(340, 540);
    connect(dialog->closeButton, &QPushButton::clicked, dialog, &QWidget::close);
}

void MainWindow::Quit()
{
    for (QWidget* window :
         std::initializer_list<QWidget*>{m_about.get(), m_email.get(), m_mediaLibrary.get(),
                                         m_saveVideo.get(), m_settings.get(), webCameraWindow.get(),
                                         screenshotPanel.get(), controlPanel.get(), this})
    {
        if (window && window->isVisible())
        {
            window->close();
        }
    }
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
}

}  // namespace Velkor::Demo
