#pragma once

#include "Tracking/Instances/ParseContext_p.h"

#include <string>
#include <vector>

namespace Velkor::KT::Tracking
{

namespace Config
{
class Instances;
}

// One section of the "instances" configuration: the readable type name of the host interface
// whose registrations attach it (empty for the sections reached only by an explicit attach), and
// the function that attaches its observers to every live object of the section's type that has
// none yet. A section that is absent or configures none of its callbacks attaches nothing.
struct InstancesSection
{
    std::string hostType;
    void (*attach)(const Config::Instances& config, const ParseContext& context);
};

// Every section, in the order of the configuration.
const std::vector<InstancesSection>& InstancesSections();

}  // namespace Velkor::KT::Tracking
