#include "Tracking/Manager/CommonEventsTracker_p.h"

#include "Tracking/Events/Event.h"
#include "Tracking/Events/IKtTracker.h"
#include "Tracking/Events/NotNull_p.h"

#include "Analytics/AnalyticsConstants.h"
#include "App/ICrashTracker.h"
#include "App/ILaunchTypeProcessor.h"

#include <glog/logging.h>

#include <exception>
#include <string>

namespace Velkor::KT::Tracking
{

namespace
{

using Fillers::FillerMap;
using Fillers::RunFillers;

// The property set most events start from.
const std::vector<FillerTypes> kDefaultSet = {
    FillerTypes::AppLanguage,    FillerTypes::Accelerators,   FillerTypes::CountryName,
    FillerTypes::AppConfig,      FillerTypes::HardwareConfig, FillerTypes::OSConfig,
    FillerTypes::MonitorsConfig,
};

// An ordinary start leaves the country out.
const std::vector<FillerTypes> kEveryStartSet = {
    FillerTypes::AppLanguage,    FillerTypes::Accelerators, FillerTypes::AppConfig,
    FillerTypes::HardwareConfig, FillerTypes::OSConfig,     FillerTypes::MonitorsConfig,
};

}  // namespace

class CommonEventsTracker::Private
{
public:
    Private(const std::shared_ptr<IKtTracker>& tracker,
            const std::shared_ptr<App::ILaunchTypeProcessor>& launchType,
            const std::shared_ptr<App::ICrashTracker>& crashTracker, FillerMap fillers)
        : tracker(tracker),
          crashTracker(crashTracker),
          launchType(launchType),
          fillers(std::move(fillers))
    {
    }

    Event::Params Properties(const std::vector<FillerTypes>& order) const
    {
        Event::Params params;
        RunFillers(fillers, order, params);
        return params;
    }

    void ReportFailures()
    {
        for (const std::string& session : crashTracker->TakeUnreportedFailedSessions())
        {
            Event event{Analytics::APP_FAILED, Properties(kDefaultSet)};
            event.params.emplace(Analytics::SID, session);
            // Only the session identifies the failure; the details stay with the crash report.
            event.params.emplace("EXCEPTION_TYPE", std::string());
            event.params.emplace("EXCEPTION_MESSAGE", std::string());
            event.params.emplace("EXCEPTION_STACKTRACE", std::string());
            RunFillers(fillers, {FillerTypes::HyperPass}, event.params);
            tracker->Track(event);
        }
    }

    void ReportStart()
    {
        switch (launchType->GetLaunchType())
        {
            case App::ILaunchTypeProcessor::FirstStart:
                tracker->Track(Event{Analytics::APP_FIRST_START, Properties(kDefaultSet)});
                break;
            case App::ILaunchTypeProcessor::FirstStartAfterMinorUpdate:
                tracker->Track(
                    Event{Analytics::APP_FIRST_START_AFTER_MINOR_UPDATE, Properties(kDefaultSet)});
                break;
            default:
                tracker->Track(Event{Analytics::APP_EVERY_START, Properties(kEveryStartSet)});
                break;
        }
    }

    void ReportExit()
    {
        tracker->Track(Event{Analytics::APP_EXIT, Properties({FillerTypes::AppLanguage})});
    }

    const NotNull<IKtTracker> tracker;
    const NotNull<App::ICrashTracker> crashTracker;
    const NotNull<App::ILaunchTypeProcessor> launchType;
    const FillerMap fillers;
};

CommonEventsTracker::CommonEventsTracker(
    const std::shared_ptr<IKtTracker>& tracker,
    const std::shared_ptr<App::ILaunchTypeProcessor>& launchType,
    const std::shared_ptr<App::ICrashTracker>& crashTracker, FillerMap fillers)
    : d(std::make_unique<Private>(tracker, launchType, crashTracker, std::move(fillers)))
{
    d->ReportFailures();
    d->ReportStart();
}

CommonEventsTracker::~CommonEventsTracker()
{
    try
    {
        d->ReportExit();
    }
    catch (const std::exception& error)
    {
        LOG(ERROR) << "Can't send the exit event: " << error.what();
    }
}

}  // namespace Velkor::KT::Tracking
