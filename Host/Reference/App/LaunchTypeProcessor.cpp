#include "App/LaunchTypeProcessor.h"

#include "App/IApplicationSettingsManager.h"

#include <stdexcept>

namespace Velkor::App
{

namespace
{

std::string MajorVersion(const std::string& version)
{
    return version.substr(0, version.find('.'));
}

int DecideAndRemember(IApplicationSettingsManager* settings, const std::string& runningVersion)
{
    if (!settings)
    {
        throw std::invalid_argument("LaunchTypeProcessor needs an application settings manager");
    }
    const std::string last = settings->GetValue(LaunchTypeProcessor::LAST_RUN_VERSION_KEY);
    settings->SetValue(LaunchTypeProcessor::LAST_RUN_VERSION_KEY, runningVersion);
    if (last.empty() || MajorVersion(last) != MajorVersion(runningVersion))
    {
        return ILaunchTypeProcessor::FirstStart;
    }
    return last == runningVersion ? ILaunchTypeProcessor::EveryStart
                                  : ILaunchTypeProcessor::FirstStartAfterMinorUpdate;
}

}  // namespace

LaunchTypeProcessor::LaunchTypeProcessor(
    const std::shared_ptr<IApplicationSettingsManager>& settings, const std::string& runningVersion)
    : m_launchType(DecideAndRemember(settings.get(), runningVersion))
{
}

int LaunchTypeProcessor::GetLaunchType() const
{
    return m_launchType;
}

}  // namespace Velkor::App
