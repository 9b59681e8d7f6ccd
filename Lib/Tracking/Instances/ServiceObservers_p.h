#pragma once

// The observers of the services whose notifications become their prebuilt events with at most
// one converted value: each keeps one callback per notification, in the order of its section.

#include "Core/EventPublisher.h"
#include "KT/AbstractScreenshotTakerWrapper.h"
#include "KT/ICaptureMonitor.h"
#include "KT/IDurationLimiter.h"
#include "KT/IFileManager.h"
#include "KT/IScheduler.h"
#include "KT/Service/IPaintingController.h"
#include "KT/Service/ISelector.h"
#include "KT/Service/ITutorialManager.h"
#include "Module/Editing/IVECommunicationObserver.h"
#include "Tracking/Instances/AttachedObserver_p.h"
#include "Tracking/Instances/ValueCallback_p.h"
#include "Tracking/Instances/ValueTexts_p.h"

#include <QRect>

namespace Velkor::KT::Tracking
{

class SchedulerObserver : public AttachedObserver<KT::IScheduler, KT::ISchedulerObserver>
{
public:
    SchedulerObserver(KT::IScheduler* service, IKtTracker* tracker, const Config::IScheduler& c)
        : AttachedObserver(service, tracker), m_start(IfPresent(c.start(), PlainCallback))
    {
    }

    void OnScheduledCaptureStart() override { m_start.Fire(*m_tracker, {}); }

private:
    const ValueCallback m_start;
};

class DurationLimiterObserver
    : public AttachedObserver<KT::IDurationLimiter, KT::IDurationLimiterObserver>
{
public:
    DurationLimiterObserver(KT::IDurationLimiter* service, IKtTracker* tracker,
                            const Config::IDurationLimiter& c)
        : AttachedObserver(service, tracker),
          m_beforeUserStop(IfPresent(c.beforeUserStop(), PlainCallback)),
          m_beforeScheduleStop(IfPresent(c.beforeScheduleStop(), PlainCallback)),
          m_userStop(IfPresent(c.userStop(), PlainCallback)),
          m_scheduleStop(IfPresent(c.scheduleStop(), PlainCallback))
    {
    }

    void OnBeforeUserStop() override { m_beforeUserStop.Fire(*m_tracker, {}); }
    void OnBeforeScheduleStop() override { m_beforeScheduleStop.Fire(*m_tracker, {}); }
    void OnUserStop() override { m_userStop.Fire(*m_tracker, {}); }
    void OnScheduleStop() override { m_scheduleStop.Fire(*m_tracker, {}); }

private:
    const ValueCallback m_beforeUserStop;
    const ValueCallback m_beforeScheduleStop;
    const ValueCallback m_userStop;
    const ValueCallback m_scheduleStop;
};

class CaptureMonitorObserver
    : public AttachedObserver<KT::ICaptureMonitor, KT::ICaptureMonitorObserver>
{
public:
    CaptureMonitorObserver(KT::ICaptureMonitor* service, IKtTracker* tracker,
                           const Config::ICaptureMonitor& c)
        : AttachedObserver(service, tracker),
          m_overflowDrive(IfPresent(c.overflowDrive(), PlainCallback)),
          m_deviceDisconnect(IfPresent(c.deviceDisconnect(), PlainCallback))
    {
    }

    void OnOverflowDrive() override { m_overflowDrive.Fire(*m_tracker, {}); }
    void OnDeviceDisconnect() override { m_deviceDisconnect.Fire(*m_tracker, {}); }

private:
    const ValueCallback m_overflowDrive;
    const ValueCallback m_deviceDisconnect;
};

inline auto Destination()
{
    return OneValueWith(Convert::Enum(ScreenshotDestinationText));
}

class ScreenshotObserver
    : public AttachedObserver<KT::AbstractScreenshotTakerWrapper, KT::IScreenshotTakerObserver>
{
public:
    ScreenshotObserver(KT::AbstractScreenshotTakerWrapper* service, IKtTracker* tracker,
                       const Config::AbstractScreenshotTakerWrapper& c)
        : AttachedObserver(service, tracker),
          m_onSuccess(IfPresent(c.onSuccess(), Destination())),
          m_onError(IfPresent(c.onError(), Destination())),
          m_onCanceled(IfPresent(c.onCanceled(), Destination()))
    {
    }

    void OnSuccess(int destination) override { m_onSuccess.Fire(*m_tracker, {destination}); }
    void OnError(int destination) override { m_onError.Fire(*m_tracker, {destination}); }
    void OnCanceled(int destination) override { m_onCanceled.Fire(*m_tracker, {destination}); }

private:
    const ValueCallback m_onSuccess;
    const ValueCallback m_onError;
    const ValueCallback m_onCanceled;
};

// Paths are reported as UTF-8 text with '/' separators.
class FileManagerObserver : public AttachedObserver<KT::IFileManager, KT::IFileManagerObserver>
{
public:
    FileManagerObserver(KT::IFileManager* service, IKtTracker* tracker,
                        const Config::IFileManager& c)
        : AttachedObserver(service, tracker),
          m_onFileExplored(IfPresent(c.onFileExplored(), OneValueWith(Convert::Text))),
          m_onFileMovedToTrash(IfPresent(c.onFileMovedToTrash(), OneValueWith(Convert::Text))),
          m_onFileRemoved(IfPresent(c.onFileRemoved(), OneValueWith(Convert::Text))),
          m_onCreateDirectories(IfPresent(c.onCreateDirectories(), OneValueWith(Convert::Text)))
    {
    }

    void OnFileExplored(const App::ioPath& path) override { Fire(m_onFileExplored, path); }
    void OnFileMovedToTrash(const App::ioPath& path) override { Fire(m_onFileMovedToTrash, path); }
    void OnFileRemoved(const App::ioPath& path) override { Fire(m_onFileRemoved, path); }
    void OnCreateDirectories(const App::ioPath& path) override
    {
        Fire(m_onCreateDirectories, path);
    }

private:
    void Fire(const ValueCallback& callback, const App::ioPath& path)
    {
        callback.Fire(*m_tracker, {path.ToQString()});
    }

    const ValueCallback m_onFileExplored;
    const ValueCallback m_onFileMovedToTrash;
    const ValueCallback m_onFileRemoved;
    const ValueCallback m_onCreateDirectories;
};

class PaintingObserver : public AttachedObserver<KT::Service::ScreenPainting::IPaintingController,
                                                 KT::Service::ScreenPainting::IPaintingObserver>
{
public:
    PaintingObserver(KT::Service::ScreenPainting::IPaintingController* service, IKtTracker* tracker,
                     const Config::IPaintingController& c)
        : AttachedObserver(service, tracker),
          m_shapeAdded(IfPresent(c.shapeAdded(), OneValueWith(Convert::Text))),
          m_shapeRemoved(IfPresent(c.shapeRemoved(), OneValueWith(Convert::Text)))
    {
    }

    void OnShapeAdded(const std::string& shape) override
    {
        m_shapeAdded.Fire(*m_tracker, {QString::fromStdString(shape)});
    }
    void OnShapeRemoved(const std::string& shape) override
    {
        m_shapeRemoved.Fire(*m_tracker, {QString::fromStdString(shape)});
    }

private:
    const ValueCallback m_shapeAdded;
    const ValueCallback m_shapeRemoved;
};

class TutorialObserver : public AttachedObserver<KT::Service::Tutorial::ITutorialManager,
                                                 KT::Service::Tutorial::ITutorialObserver>
{
public:
    TutorialObserver(KT::Service::Tutorial::ITutorialManager* service, IKtTracker* tracker,
                     const Config::ITutorialManager& c)
        : AttachedObserver(service, tracker),
          m_slideShow(IfPresent(c.slideShow(), OneValueWith(Convert::Text))),
          m_slideClick(IfPresent(c.slideClick(), OneValueWith(Convert::Enum(SlideActionText))))
    {
    }

    void OnSlideShow(const std::string& slide) override
    {
        m_slideShow.Fire(*m_tracker, {QString::fromStdString(slide)});
    }
    void OnSlideClick(int action) override { m_slideClick.Fire(*m_tracker, {action}); }

private:
    const ValueCallback m_slideShow;
    const ValueCallback m_slideClick;
};

// The selected area is reported as a rectangle ("100,50:1280x720").
class SelectorObserver : public AttachedObserver<KT::Service::AreaSelector::ISelector,
                                                 KT::Service::AreaSelector::ISelectorObserver>
{
public:
    SelectorObserver(KT::Service::AreaSelector::ISelector* service, IKtTracker* tracker,
                     const Config::ISelector& c)
        : AttachedObserver(service, tracker),
          m_areaSelected(IfPresent(c.areaSelected(), OneValueWith(Convert::Rect)))
    {
    }

    void OnAreaSelected(const QRect& area) override { m_areaSelected.Fire(*m_tracker, {area}); }

private:
    const ValueCallback m_areaSelected;
};

using VECommunicationPublisher = Velkor::Module::Editing::VECommunicationEventPublisher;

class VECommunicationObserver
    : public AttachedObserver<VECommunicationPublisher,
                              Velkor::Module::Editing::IVECommunicationObserver>
{
public:
    VECommunicationObserver(VECommunicationPublisher* service, IKtTracker* tracker,
                            const Config::VECommunicationEventPublisher& c)
        : AttachedObserver(service, tracker),
          m_veExportRequested(IfPresent(c.veExportRequested(), PlainCallback))
    {
    }

    void OnExportRequested() override { m_veExportRequested.Fire(*m_tracker, {}); }

private:
    const ValueCallback m_veExportRequested;
};

}  // namespace Velkor::KT::Tracking
