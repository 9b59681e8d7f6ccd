#include "KT/Service/SharingManager.h"

namespace Velkor::KT::Service::Sharing
{

SharingManager::SharingManager(int target, QObject* parent)
    : AbstractSharingManager(parent), m_target(target)
{
}

int SharingManager::GetSharingTarget() const
{
    return m_target;
}

void SharingManager::Finish(const App::ioPath& file, bool success)
{
    emit SharingFinished(file, success);
}

}  // namespace Velkor::KT::Service::Sharing
