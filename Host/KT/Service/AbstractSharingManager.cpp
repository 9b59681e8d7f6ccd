#include "KT/Service/AbstractSharingManager.h"

namespace Velkor::KT::Service::Sharing
{

AbstractSharingManager::AbstractSharingManager(QObject* parent) : QObject(parent) {}

AbstractSharingManager::~AbstractSharingManager() = default;

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
