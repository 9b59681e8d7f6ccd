#include "KT/Service/AbstractSharingManager.h"

namespace Velkor::KT::Service::Sharing
{

AbstractSharingManager::AbstractSharingManager(QObject* parent) : QObject(parent) {}

AbstractSharingManager::~AbstractSharingManager() = default;

}  // namespace Velkor::KT::Service::Sharing
