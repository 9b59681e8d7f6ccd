#pragma once

#include "App/ILaunchTypeProcessor.h"
#include "HostReferenceExport.h"

#include <memory>
#include <string>

namespace Velkor::App
{

class IApplicationSettingsManager;

// Decides the launch type once, at construction, by comparing the running version with the one
// stored under "LastRunVersion" by the previous session, and then stores the running version.
// Versions are dotted ("3.1.0"); the part before the first dot is the major version.
class KT_HOST_REFERENCE_EXPORT LaunchTypeProcessor : public ILaunchTypeProcessor
{
public:
    // Throws std::invalid_argument without a settings manager.
    LaunchTypeProcessor(const std::shared_ptr<IApplicationSettingsManager>& settings,
                        const std::string& runningVersion);

    int GetLaunchType() const override;

    static constexpr const char LAST_RUN_VERSION_KEY[] = "LastRunVersion";

private:
    const int m_launchType;
};

}  // namespace Velkor::App
