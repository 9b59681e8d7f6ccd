#include "Tracking/Manager/IStatisticsManager.h"

namespace Velkor::KT::Tracking
{

IStatisticsManager::~IStatisticsManager() = default;

}  // namespace Velkor::KT::Tracking
