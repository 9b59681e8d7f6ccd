#pragma once

#include "Analytics/IApplicationTracker.h"
#include "HostExport.h"

#include <functional>

namespace Velkor::Analytics
{

// Where a component obtains the application's analytics tracker. The host decides which
// implementation that is by installing a creator; without one, the factory answers "none"
// (a null pointer) and callers are expected to carry on without analytics.
class KT_HOST_EXPORT ApplicationTrackerFactory
{
public:
    using Creator = std::function<RefPtr<IApplicationTracker>()>;

    // A new tracker from the installed creator, or null when none is installed or the creator
    // gives none. Safe to call from any thread.
    static RefPtr<IApplicationTracker> CreateApplicationTracker();

    // Installs a creator (an empty one removes it) and answers the one it replaces.
    static Creator SetCreator(Creator creator);

    ApplicationTrackerFactory() = delete;
};

// Installs a creator for the lifetime of a scope and puts the previous one back afterwards.
class KT_HOST_EXPORT ScopedApplicationTrackerCreator
{
public:
    explicit ScopedApplicationTrackerCreator(ApplicationTrackerFactory::Creator creator);
    ~ScopedApplicationTrackerCreator();

    ScopedApplicationTrackerCreator(const ScopedApplicationTrackerCreator&) = delete;
    ScopedApplicationTrackerCreator& operator=(const ScopedApplicationTrackerCreator&) = delete;

private:
    ApplicationTrackerFactory::Creator m_previous;
};

}  // namespace Velkor::Analytics
