#include "Analytics/ApplicationTrackerFactory.h"

#include <mutex>
#include <utility>

namespace Velkor::Analytics
{

namespace
{

std::mutex& CreatorMutex()
{
    static std::mutex mutex;
    return mutex;
}

ApplicationTrackerFactory::Creator& InstalledCreator()
{
    static ApplicationTrackerFactory::Creator creator;
    return creator;
}

}  // namespace

RefPtr<IApplicationTracker> ApplicationTrackerFactory::CreateApplicationTracker()
{
    Creator creator;
    {
        std::lock_guard<std::mutex> lock(CreatorMutex());
        creator = InstalledCreator();
    }
    // Called outside the lock: a creator may itself consult the factory.
    return creator ? creator() : RefPtr<IApplicationTracker>();
}

ApplicationTrackerFactory::Creator ApplicationTrackerFactory::SetCreator(Creator creator)
{
    std::lock_guard<std::mutex> lock(CreatorMutex());
    return std::exchange(InstalledCreator(), std::move(creator));
}

ScopedApplicationTrackerCreator::ScopedApplicationTrackerCreator(
    ApplicationTrackerFactory::Creator creator)
    : m_previous(ApplicationTrackerFactory::SetCreator(std::move(creator)))
{
}

ScopedApplicationTrackerCreator::~ScopedApplicationTrackerCreator()
{
    ApplicationTrackerFactory::SetCreator(std::move(m_previous));
}

}  // namespace Velkor::Analytics
