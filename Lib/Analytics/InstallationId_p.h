#pragma once

#include <string>

namespace Velkor::Analytics
{

// The id of this installation: the first line of "<directory>/installation", made (random, in the
// form of a UUID) and written there the first time. Every event of the installation carries it,
// and the store's shards are chosen by it.
std::string LoadOrCreateInstallationId(const std::string& directory);

}  // namespace Velkor::Analytics
