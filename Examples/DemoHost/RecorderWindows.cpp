#include "RecorderWindows.h"

#include "HostWidgets.h"
#include "Named.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QTabWidget>
#include <QVBoxLayout>

namespace Velkor::Demo
{

namespace
{

QPushButton* Button(const QString& name, const QString& text, QWidget* parent,
                    bool checkable = false)
{
    auto* button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setCheckable(checkable);
    // Enter in a dialog's text field confirms the field, never presses a button.
    button->setAutoDefault(false);
    return button;
}

}  // namespace

CaptureControlPanel::CaptureControlPanel()
    : QWidget(nullptr, Qt::Tool),
      stopButton(Button("stopButton", "Stop", this)),
      pauseButton(Button("pauseButton", "Pause", this)),
      cancelButton(Button("cancelButton", "Cancel", this)),
      takeScreenshotButton(Button("takeScreenshotButton", "Screenshot", this)),
      brushSettingsButton(Button("brushSettingsButton", "Draw", this, true)),
      drawArrowButton(Button("drawArrowButton", "Arrow", this)),
      microphoneButton(Button("microphoneButton", "Mic", this, true)),
      systemAudioButton(Button("systemAudioButton", "System audio", this, true))
{
    setObjectName("CaptureControlPanel");
    setWindowTitle("Recording");
    microphoneButton->setChecked(true);
    auto* layout = new QHBoxLayout(this);
    for (QWidget* widget :
         {stopButton, pauseButton, cancelButton, takeScreenshotButton, brushSettingsButton,
          drawArrowButton, microphoneButton, systemAudioButton})
    {
        layout->addWidget(widget);
    }
}

ScreenshotPanel::ScreenshotPanel()
    : QWidget(nullptr, Qt::Tool),
      takeScreenshotButton(Button("takeScreenshotButton", "Take screenshot", this))
{
    setObjectName("ScreenshotPanel");
    setWindowTitle("Screenshot");
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(takeScreenshotButton);
}

WebCameraWindow::WebCameraWindow()
    : QWidget(nullptr, Qt::Tool),
      configuringToolBar(Named(new QWidget(this), "configuringToolBar")),
      configuringScreenshotButton(Button("takeScreenshotButton", "Snapshot", configuringToolBar)),
      capturingToolBar(Named(new QWidget(this), "capturingToolBar")),
      capturingScreenshotButton(Button("takeScreenshotButton", "Snapshot", capturingToolBar))
{
    setObjectName("WebCameraWindow");
    setWindowTitle("Web camera");
    (new QHBoxLayout(configuringToolBar))->addWidget(configuringScreenshotButton);
    (new QHBoxLayout(capturingToolBar))->addWidget(capturingScreenshotButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel("Camera preview", this));
    layout->addWidget(configuringToolBar);
    layout->addWidget(capturingToolBar);
    SetCapturing(false);
}

void WebCameraWindow::SetCapturing(bool capturing)
{
    configuringToolBar->setVisible(!capturing);
    capturingToolBar->setVisible(capturing);
}

SettingsDialog::SettingsDialog()
    : startStopHotkeyEdit(Named(new QLineEdit(this), "startStopHotkeyEdit")),
      codecComboBox(Named(new QComboBox(this), "codecComboBox")),
      highlightCursorCheckBox(
          Named(new QCheckBox("Highlight the cursor", this), "highlightCursorCheckBox")),
      clickSoundEdit(Named(new QLineEdit(this), "clickSoundEdit")),
      languageComboBox(Named(new QComboBox(this), "languageComboBox")),
      hyperPassCheckBox(Named(new QCheckBox("HyperPass conversion", this), "hyperPassCheckBox")),
      closeButton(Button("closeButton", "Close", this))
{
    setObjectName("SettingsDialog");
    setWindowTitle("Settings");
    codecComboBox->addItems({"H.264", "Motion JPEG", "VP8"});
    languageComboBox->addItem("English", "en");
    languageComboBox->addItem("Deutsch", "de");

    auto* tabs = new QTabWidget(this);
    auto* hotkeys = new QWidget(tabs);
    (new QFormLayout(hotkeys))->addRow("Start/stop recording", startStopHotkeyEdit);
    tabs->addTab(hotkeys, "Hot keys");
    auto* video = new QWidget(tabs);
    (new QFormLayout(video))->addRow("Codec", codecComboBox);
    tabs->addTab(video, "Video");
    auto* cursor = new QWidget(tabs);
    auto* cursorLayout = new QFormLayout(cursor);
    cursorLayout->addRow(highlightCursorCheckBox);
    cursorLayout->addRow("Click sound file", clickSoundEdit);
    tabs->addTab(cursor, "Cursor");
    auto* general = new QWidget(tabs);
    auto* generalLayout = new QFormLayout(general);
    generalLayout->addRow("Language", languageComboBox);
    generalLayout->addRow(hyperPassCheckBox);
    tabs->addTab(general, "General");

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    layout->addWidget(closeButton);
}

SaveVideoDialog::SaveVideoDialog()
    : player(new PlayerControl(this)),
      outputPresetComboBox(Named(new QComboBox(this), "outputPresetComboBox")),
      saveButton(Button("saveButton", "Save", this)),
      cancelButton(Button("cancelButton", "Cancel", this))
{
    setObjectName("SaveVideoDialog");
    setWindowTitle("Save video");
    outputPresetComboBox->addItem("MP4 1920x1080", "mp4_1080p");
    outputPresetComboBox->addItem("MP4 1280x720", "user_mp4_720p");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(player);
    layout->addWidget(outputPresetComboBox);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(saveButton);
    buttons->addWidget(cancelButton);
    layout->addLayout(buttons);
}

MediaLibraryWindow::MediaLibraryWindow()
    : showInFolderButton(Button("showInFolderButton", "Show in folder", this)),
      emailButton(Button("emailButton", "Send by e-mail", this)),
      uploader(new YouTubeUploader(this)),
      deleteButton(Button("deleteButton", "Move to trash", this)),
      closeButton(Button("closeButton", "Close", this))
{
    setObjectName("MediaLibraryWindow");
    setWindowTitle("Media library");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel("Recording 1.mp4", this));
    layout->addWidget(showInFolderButton);
    layout->addWidget(emailButton);
    layout->addWidget(uploader);
    layout->addWidget(deleteButton);
    layout->addWidget(closeButton);
}

EmailDialog::EmailDialog()
    : recipientEdit(Named(new QLineEdit(this), "recipientEdit")),
      sendButton(Button("sendButton", "Send", this))
{
    setObjectName("EmailDialog");
    setWindowTitle("Send by e-mail");
    auto* layout = new QFormLayout(this);
    layout->addRow("To", recipientEdit);
    layout->addRow(sendButton);
}

AboutBoxDialog::AboutBoxDialog()
    : homePageLabel(Named(new QLabel(this), "homePageLabel")),
      closeButton(Button("closeButton", "Close", this))
{
    setObjectName("AboutBoxDialog");
    setWindowTitle("About");
    homePageLabel->setTextFormat(Qt::RichText);
    homePageLabel->setText("<a href=\"https://recorder.example/\">Home page of the recorder</a>");
    homePageLabel->setTextInteractionFlags(Qt::LinksAccessibleByMouse);
    homePageLabel->setContentsMargins(0, 0, 0, 0);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel("Screen Recorder 3.1.0", this));
    layout->addWidget(homePageLabel);
    layout->addWidget(closeButton);
}

}  // namespace Velkor::Demo
