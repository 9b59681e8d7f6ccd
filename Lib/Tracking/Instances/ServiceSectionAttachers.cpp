#include "Tracking/Instances/ServiceSectionAttachers_p.h"

#include "Tracking/Instances/CaptureInfoObserver_p.h"
#include "Tracking/Instances/ConverterObserver_p.h"
#include "Tracking/Instances/ServiceObservers_p.h"
#include "Tracking/Instances/SharingObserver_p.h"

#include "Tracking/Config/KtmStat.hxx"

#include <memory>

namespace Velkor::KT::Tracking
{

namespace
{

using Sections = Config::Instances;

// Attaches the observers of a service section: `configured` tells whether it sets any callback;
// `make` builds the observer of one object.
template <class Host, class Section, class Configured, class Make>
void AttachService(const ::xsd::cxx::tree::optional<Section>& section, const ParseContext& context,
                   Configured configured, Make make)
{
    if (!section || !configured(*section))
    {
        return;
    }
    AttachToAll<Host>(context, [&](Host* host) { return make(host, *section); });
}

}  // namespace

void AttachScheduler(const Sections& config, const ParseContext& context)
{
    AttachService<KT::IScheduler>(
        config.IScheduler(), context,
        [](const Config::IScheduler& s) { return static_cast<bool>(s.start()); },
        [&](KT::IScheduler* host, const Config::IScheduler& section)
        { return std::make_unique<SchedulerObserver>(host, context.tracker, section); });
}

void AttachDurationLimiter(const Sections& config, const ParseContext& context)
{
    AttachService<KT::IDurationLimiter>(
        config.IDurationLimiter(), context,
        [](const Config::IDurationLimiter& s) {
            return s.beforeUserStop() || s.beforeScheduleStop() || s.userStop() || s.scheduleStop();
        },
        [&](KT::IDurationLimiter* host, const Config::IDurationLimiter& section)
        { return std::make_unique<DurationLimiterObserver>(host, context.tracker, section); });
}

// `cancel` alone does not count: a section with only `cancel` attaches nothing.
void AttachCaptureInfo(const Sections& config, const ParseContext& context)
{
    AttachService<KT::ICaptureInfo>(
        config.ICaptureInfo(), context,
        [](const Config::ICaptureInfo& s)
        { return s.start() || s.pause() || s.resume() || s.stop() || s.error(); },
        [&](KT::ICaptureInfo* host, const Config::ICaptureInfo& section)
        {
            return std::make_unique<CaptureInfoObserver>(
                host, context.tracker, section,
                context.accelerators ? *context.accelerators : AcceleratorProperties());
        });
}

void AttachCaptureMonitor(const Sections& config, const ParseContext& context)
{
    AttachService<KT::ICaptureMonitor>(
        config.ICaptureMonitor(), context,
        [](const Config::ICaptureMonitor& s) { return s.overflowDrive() || s.deviceDisconnect(); },
        [&](KT::ICaptureMonitor* host, const Config::ICaptureMonitor& section)
        { return std::make_unique<CaptureMonitorObserver>(host, context.tracker, section); });
}

void AttachConverter(const Sections& config, const ParseContext& context)
{
    AttachService<KT::IConverter>(
        config.IConverter(), context,
        [](const Config::IConverter& s)
        { return s.start() || s.pause() || s.resume() || s.stop() || s.error(); },
        [&](KT::IConverter* host, const Config::IConverter& section)
        { return std::make_unique<ConverterObserver>(host, context.tracker, section); });
}

void AttachScreenshots(const Sections& config, const ParseContext& context)
{
    AttachService<KT::AbstractScreenshotTakerWrapper>(
        config.AbstractScreenshotTakerWrapper(), context,
        [](const Config::AbstractScreenshotTakerWrapper& s)
        { return s.onSuccess() || s.onError() || s.onCanceled(); },
        [&](KT::AbstractScreenshotTakerWrapper* host,
            const Config::AbstractScreenshotTakerWrapper& section)
        { return std::make_unique<ScreenshotObserver>(host, context.tracker, section); });
}

void AttachFiles(const Sections& config, const ParseContext& context)
{
    AttachService<KT::IFileManager>(
        config.IFileManager(), context,
        [](const Config::IFileManager& s)
        {
            return s.onFileExplored() || s.onFileMovedToTrash() || s.onFileRemoved() ||
                   s.onCreateDirectories();
        },
        [&](KT::IFileManager* host, const Config::IFileManager& section)
        { return std::make_unique<FileManagerObserver>(host, context.tracker, section); });
}

void AttachSharing(const Sections& config, const ParseContext& context)
{
    using Manager = KT::Service::Sharing::AbstractSharingManager;
    AttachService<Manager>(
        config.AbstractSharing(), context,
        [](const Config::AbstractSharing& s) { return !!s.sharingFinish(); },
        [&](Manager* host, const Config::AbstractSharing& section)
        { return std::make_unique<SharingObserver>(host, context.tracker, section); });
}

void AttachPainting(const Sections& config, const ParseContext& context)
{
    using Controller = KT::Service::ScreenPainting::IPaintingController;
    AttachService<Controller>(
        config.IPaintingController(), context,
        [](const Config::IPaintingController& s) { return s.shapeAdded() || s.shapeRemoved(); },
        [&](Controller* host, const Config::IPaintingController& section)
        { return std::make_unique<PaintingObserver>(host, context.tracker, section); });
}

void AttachTutorial(const Sections& config, const ParseContext& context)
{
    using Manager = KT::Service::Tutorial::ITutorialManager;
    AttachService<Manager>(
        config.ITutorialManager(), context,
        [](const Config::ITutorialManager& s) { return s.slideShow() || s.slideClick(); },
        [&](Manager* host, const Config::ITutorialManager& section)
        { return std::make_unique<TutorialObserver>(host, context.tracker, section); });
}

void AttachVECommunication(const Sections& config, const ParseContext& context)
{
    AttachService<VECommunicationPublisher>(
        config.VECommunicationEventPublisher(), context,
        [](const Config::VECommunicationEventPublisher& s) { return !!s.veExportRequested(); },
        [&](VECommunicationPublisher* host, const Config::VECommunicationEventPublisher& section)
        { return std::make_unique<VECommunicationObserver>(host, context.tracker, section); });
}

void AttachSelector(const Sections& config, const ParseContext& context)
{
    using Selector = KT::Service::AreaSelector::ISelector;
    AttachService<Selector>(
        config.ISelector(), context, [](const Config::ISelector& s) { return !!s.areaSelected(); },
        [&](Selector* host, const Config::ISelector& section)
        { return std::make_unique<SelectorObserver>(host, context.tracker, section); });
}

}  // namespace Velkor::KT::Tracking
