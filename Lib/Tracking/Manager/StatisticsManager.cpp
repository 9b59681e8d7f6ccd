#include "Tracking/Manager/StatisticsManager.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Config/XercesSession_p.h"
#include "Tracking/Fillers/FillerFactory_p.h"
#include "Tracking/Gui/GuiHandler.h"
#include "Tracking/Instances/InstancesHandler.h"
#include "Tracking/Manager/CommonEventsTracker_p.h"

#include "Analytics/AcceleratorsPropertiesFiller.h"

#include <glog/logging.h>

#include <QWidget>

#include <algorithm>
#include <ios>
#include <sstream>
#include <utility>

namespace Velkor::KT::Tracking
{

namespace
{

// Capture start events carry the machine's acceleration facts when the host asked for them.
InstancesHandler::AcceleratorProperties AcceleratorFacts(const std::vector<FillerTypes>& fillers)
{
    if (std::find(fillers.begin(), fillers.end(), FillerTypes::Accelerators) == fillers.end())
    {
        return {};
    }
    auto filler = std::make_shared<Analytics::AcceleratorsPropertiesFiller>();
    return [filler](Event::Params& params) { filler->Fill(params); };
}

}  // namespace

class StatisticsManager::Private
{
public:
    Private(const std::shared_ptr<IKtTracker>& tracker,
            const std::shared_ptr<App::IProductSettingsManager>& productSettings,
            const std::shared_ptr<App::IApplicationSettingsManager>& applicationSettings,
            const std::vector<FillerTypes>& fillers)
        : productSettings(productSettings),
          applicationSettings(applicationSettings),
          gui(tracker),
          instances(tracker, AcceleratorFacts(fillers))
    {
    }

    // Kept for the lifetime of the manager: the host may rely on them.
    const std::shared_ptr<App::IProductSettingsManager> productSettings;
    const std::shared_ptr<App::IApplicationSettingsManager> applicationSettings;
    // The documents given over the manager's life share one initialisation of Xerces.
    Config::Detail::XercesSession xerces;
    // Members are destroyed in reverse: the exit event goes out while both handlers still exist.
    std::unique_ptr<Config::KtmStat> config;
    GuiHandler gui;
    InstancesHandler instances;
    std::unique_ptr<CommonEventsTracker> common;
};

StatisticsManager::StatisticsManager(
    const std::shared_ptr<IKtTracker>& tracker,
    const std::shared_ptr<App::ILookAndFeelManager>& lookAndFeel,
    const std::shared_ptr<App::IProductSettingsManager>& productSettings,
    const std::shared_ptr<App::IApplicationSettingsManager>& applicationSettings,
    const std::shared_ptr<App::ILaunchTypeProcessor>& launchType,
    const std::shared_ptr<App::ICrashTracker>& crashTracker,
    const std::shared_ptr<ConvertationSettings>& convertationSettings,
    const std::vector<FillerTypes>& fillers)
    : d(std::make_unique<Private>(tracker, productSettings, applicationSettings, fillers))
{
    d->common = std::make_unique<CommonEventsTracker>(
        tracker, launchType, crashTracker,
        Fillers::CreateAvailableFillers(lookAndFeel, convertationSettings, fillers));
}

StatisticsManager::~StatisticsManager() = default;

void StatisticsManager::SetConfig(const std::string& xml)
{
    SetConfig(xml, std::string());
}

void StatisticsManager::SetConfig(const std::string& xml, const std::string& documentName)
{
    try
    {
        std::stringstream stream(xml, std::ios::in | std::ios::out);
        Config::GuiLines guiLines;
        d->config = Config::ktmstat(stream, guiLines, ::xml_schema::flags::dont_validate);
        d->gui.SetConfig(d->config->gui() ? *d->config->gui() : Config::Gui(), guiLines,
                         QString::fromStdString(documentName));
        d->instances.SetConfig(d->config->instances() ? *d->config->instances()
                                                      : Config::Instances());
    }
    catch (const ::xml_schema::exception& error)
    {
        std::ostringstream description;
        description << error;
        LOG(ERROR) << "Can't read configuration: " << description.str();
    }
}

void StatisticsManager::SetAttachReportSink(AttachReportSink sink)
{
    d->gui.SetAttachReportSink(std::move(sink));
}

void StatisticsManager::AttachAllTopLevelWindows()
{
    // Each window through the virtual AttachQObject(), so that a subclass sees every one.
    d->gui.AttachAllTopLevelWindows([this](QWidget* window) { AttachQObject(window); });
}

void StatisticsManager::AttachQObject(QObject* root, QObject* target)
{
    d->gui.Attach(root, target);
}

void StatisticsManager::AttachQObject(QObject* root)
{
    d->gui.Attach(root);
}

void StatisticsManager::AttachInstances()
{
    d->instances.AttachInstances();
}

}  // namespace Velkor::KT::Tracking
