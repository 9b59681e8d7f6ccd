#pragma once

// The recorder's secondary windows and dialogs. They only build their widgets, under the object
// names the statistics configuration looks for; MainWindow connects them to the recorder.

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>

namespace Velkor::Demo
{

class PlayerControl;
class YouTubeUploader;

// Floating panel shown while a recording runs.
class CaptureControlPanel : public QWidget
{
public:
    CaptureControlPanel();

    QPushButton* const stopButton;
    QPushButton* const pauseButton;
    QPushButton* const cancelButton;
    QPushButton* const takeScreenshotButton;
    QPushButton* const brushSettingsButton;
    QPushButton* const drawArrowButton;
    QPushButton* const microphoneButton;
    QPushButton* const systemAudioButton;
};

// Floating panel of the screenshot mode.
class ScreenshotPanel : public QWidget
{
public:
    ScreenshotPanel();

    QPushButton* const takeScreenshotButton;
};

// Preview of the web camera, with one tool bar while configuring and one while capturing.
class WebCameraWindow : public QWidget
{
public:
    WebCameraWindow();

    QWidget* const configuringToolBar;
    QPushButton* const configuringScreenshotButton;
    QWidget* const capturingToolBar;
    QPushButton* const capturingScreenshotButton;

    void SetCapturing(bool capturing);
};

class SettingsDialog : public QDialog
{
public:
    SettingsDialog();

    QLineEdit* const startStopHotkeyEdit;
    QComboBox* const codecComboBox;
    QCheckBox* const highlightCursorCheckBox;
    QLineEdit* const clickSoundEdit;
    QComboBox* const languageComboBox;
    QCheckBox* const hyperPassCheckBox;
    QPushButton* const closeButton;
};

// Shown when a recording has finished: preview, output preset, save.
class SaveVideoDialog : public QDialog
{
public:
    SaveVideoDialog();

    PlayerControl* const player;
    QComboBox* const outputPresetComboBox;
    QPushButton* const saveButton;
    QPushButton* const cancelButton;
};

class MediaLibraryWindow : public QWidget
{
public:
    MediaLibraryWindow();

    QPushButton* const showInFolderButton;
    QPushButton* const emailButton;
    YouTubeUploader* const uploader;
    QPushButton* const deleteButton;
    QPushButton* const closeButton;
};

class EmailDialog : public QDialog
{
public:
    EmailDialog();

    QLineEdit* const recipientEdit;
    QPushButton* const sendButton;
};

class AboutBoxDialog : public QDialog
{
public:
    AboutBoxDialog();

    QLabel* const homePageLabel;
    QPushButton* const closeButton;
};

}  // namespace Velkor::Demo
