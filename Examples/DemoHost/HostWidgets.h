#pragma once

// Small widgets of the recorder's windows that report what the user does with them by signals
// of their own.

#include <QComboBox>
#include <QPushButton>
#include <QWidget>

namespace Velkor::Demo
{

// The side bar of the main window: features the user pins and unpins.
class SidebarPanel : public QWidget
{
    Q_OBJECT

public:
    explicit SidebarPanel(QWidget* parent = nullptr);

    QPushButton* const webCameraFeature;
    QPushButton* const schedulerFeature;
    QPushButton* const removeSchedulerFeature;

signals:
    void FeatureChanged(const QString& id);
    void FeatureRemoved(const QString& id);
};

// One-click commands of the main window, reported by the command's id.
class QuickActionsMenu : public QWidget
{
    Q_OBJECT

public:
    explicit QuickActionsMenu(QWidget* parent = nullptr);

    QPushButton* const startStop;
    QPushButton* const screenshot;

signals:
    void ActionTriggered(const QString& id);
};

// The preview player of a finished recording: play it, cut an interval out of it.
class PlayerControl : public QWidget
{
    Q_OBJECT

public:
    explicit PlayerControl(QWidget* parent = nullptr);

    QPushButton* const play;
    QPushButton* const cut;

signals:
    void PlayButtonClicked();
    // The length of the removed interval, in seconds.
    void IntervalRemoved(int seconds);
    void IntervalCut(int beginSeconds, int endSeconds);
};

// Upload of a recording to the video site.
class YouTubeUploader : public QWidget
{
    Q_OBJECT

public:
    explicit YouTubeUploader(QWidget* parent = nullptr);

    QComboBox* const category;
    QComboBox* const resolution;
    QPushButton* const upload;

signals:
    void UploadCategoryChosen(int category);
    void UploadStarted(const QString& resolution);
};

}  // namespace Velkor::Demo
