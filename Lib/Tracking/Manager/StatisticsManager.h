#pragma once

#include "Tracking/Fillers/FillerTypes.h"
#include "Tracking/Gui/AttachReport.h"
#include "Tracking/Manager/IStatisticsManager.h"
#include "Tracking/TrackingExport.h"

#include <QtGlobal>

#include <memory>
#include <string>
#include <vector>

namespace Velkor::App
{
class IApplicationSettingsManager;
class ICrashTracker;
class ILaunchTypeProcessor;
class ILookAndFeelManager;
class IProductSettingsManager;
}  // namespace Velkor::App

namespace Velkor::KT
{
class ConvertationSettings;
}

namespace Velkor::KT::Tracking
{

class IKtTracker;

// The facade a host creates once, after building its tracker chain. It owns the library's three
// event sources: the GUI handler, the instances handler and the common events (the application's
// start, the failures its crash handler recorded, its exit). Every event of every source goes to
// `tracker`, the head of the chain.
//
// Construction reports the pending failures, oldest first, and then sends one start event, so
// the chain must be ready. Destruction sends the exit event first, while the other sources still
// exist, then detaches them. GUI thread only.
class KT_TRACKING_EXPORT StatisticsManager : public IStatisticsManager
{
public:
    // `fillers` selects which property fillers exist; a type not listed never runs. Throws
    // std::logic_error("NotNull can not initialized by null") for a missing tracker, launch-type
    // processor or crash tracker, and for missing conversion settings when FillerTypes::HyperPass
    // is requested; the other services may be null (a null look and feel leaves
    // "APP_LANGUAGE" out). Whatever the crash tracker, the fillers or the tracker throw while the
    // failure and start events are sent reaches the caller.
    StatisticsManager(const std::shared_ptr<IKtTracker>& tracker,
                      const std::shared_ptr<App::ILookAndFeelManager>& lookAndFeel,
                      const std::shared_ptr<App::IProductSettingsManager>& productSettings,
                      const std::shared_ptr<App::IApplicationSettingsManager>& applicationSettings,
                      const std::shared_ptr<App::ILaunchTypeProcessor>& launchType,
                      const std::shared_ptr<App::ICrashTracker>& crashTracker,
                      const std::shared_ptr<ConvertationSettings>& convertationSettings,
                      const std::vector<FillerTypes>& fillers);
    ~StatisticsManager() override;

    // Reads a main document ("ktmstat") and hands its "gui" and "instances" sections (empty ones
    // for those it lacks) to the two handlers. A document that cannot be read is logged as
    // "Can't read configuration: " with the reader's description, and what was in force stays.
    void SetConfig(const std::string& xml);
    // The same, naming the document in the attach reports' log lines ("Config.xml",
    // ":/KT/Tracking/Config.xml"); without a name they say "main document".
    void SetConfig(const std::string& xml, const std::string& documentName);

    // Receives a report after each attach (see GuiHandler::SetAttachReportSink());
    // AttachAllTopLevelWindows() gives one report for all its windows and actions together. An
    // empty sink (the default) switches the reports off.
    void SetAttachReportSink(AttachReportSink sink);

    // Attaches every top-level window, then every action they list (GuiHandler's
    // AttachAllTopLevelWindows()).
    void AttachAllTopLevelWindows() override;
    void AttachQObject(QObject* root, QObject* target) override;
    void AttachQObject(QObject* root) override;
    void AttachInstances() override;

private:
    Q_DISABLE_COPY(StatisticsManager)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
