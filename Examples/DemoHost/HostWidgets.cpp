#include "HostWidgets.h"

#include <QHBoxLayout>

namespace Velkor::Demo
{

SidebarPanel::SidebarPanel(QWidget* parent)
    : QWidget(parent),
      webCameraFeature(new QPushButton("Web camera", this)),
      schedulerFeature(new QPushButton("Scheduler", this)),
      removeSchedulerFeature(new QPushButton("Unpin scheduler", this))
{
    setObjectName("SidebarPanel");
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(webCameraFeature);
    layout->addWidget(schedulerFeature);
    layout->addWidget(removeSchedulerFeature);
    connect(webCameraFeature, &QPushButton::clicked, this,
            [this] { emit FeatureChanged("webcamCapturing"); });
    connect(schedulerFeature, &QPushButton::clicked, this,
            [this] { emit FeatureChanged("scheduler"); });
    connect(removeSchedulerFeature, &QPushButton::clicked, this,
            [this] { emit FeatureRemoved("scheduler"); });
}

QuickActionsMenu::QuickActionsMenu(QWidget* parent)
    : QWidget(parent),
      startStop(new QPushButton("Start/stop", this)),
      screenshot(new QPushButton("Screenshot", this))
{
    setObjectName("QuickActionsMenu");
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(startStop);
    layout->addWidget(screenshot);
    connect(startStop, &QPushButton::clicked, this,
            [this] { emit ActionTriggered("captureStartStop"); });
    connect(screenshot, &QPushButton::clicked, this,
            [this] { emit ActionTriggered("takeScreenshot"); });
}

PlayerControl::PlayerControl(QWidget* parent)
    : QWidget(parent),
      play(new QPushButton("Play", this)),
      cut(new QPushButton("Cut 10-20 s", this))
{
    setObjectName("playerControl");
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(play);
    layout->addWidget(cut);
    connect(play, &QPushButton::clicked, this, [this] { emit PlayButtonClicked(); });
    connect(cut, &QPushButton::clicked, this,
            [this]
            {
                emit IntervalCut(10, 20);
                emit IntervalRemoved(10);
            });
}

YouTubeUploader::YouTubeUploader(QWidget* parent)
    : QWidget(parent),
      category(new QComboBox(this)),
      resolution(new QComboBox(this)),
      upload(new QPushButton("Upload", this))
{
    setObjectName("YouTubeUploader");
    category->addItem("Gaming", 20);
    category->addItem("Education", 27);
    resolution->addItem("1080p", "youtube___hd_1080p_sharing");
    resolution->addItem("720p", "youtube___hd_720p_sharing");
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(category);
    layout->addWidget(resolution);
    layout->addWidget(upload);
    connect(upload, &QPushButton::clicked, this,
            [this]
            {
                emit UploadCategoryChosen(category->currentData().toInt());
                emit UploadStarted(resolution->currentData().toString());
            });
}

}  // namespace Velkor::Demo
