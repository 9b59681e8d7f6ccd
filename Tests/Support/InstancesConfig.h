#pragma once

// Shared by the instances tests: a tracker that keeps what it is given, and configurations read
// from text or from the shipped main document.

#include "Support/EventPrinting.h"
#include "Support/RecordingTracker.h"
#include "Tracking/Config/ConfigLoader.h"
#include "Tracking/Config/KtmStat.h"

#include <memory>
#include <sstream>
#include <string>

namespace InstancesTest
{

using KtTest::RecordingTracker;
using Velkor::KT::Tracking::Event;

inline Velkor::KT::Tracking::Config::Instances InstancesFromText(const std::string& instances)
{
    std::istringstream input("<ktmstat><instances>" + instances + "</instances></ktmstat>");
    const auto document =
        Velkor::KT::Tracking::Config::ktmstat(input, ::xml_schema::flags::dont_validate);
    return *document->instances();
}

inline Velkor::KT::Tracking::Config::Instances ShippedInstances()
{
    std::istringstream input(Velkor::KT::Tracking::LoadConfigFromQrc("/KT/Tracking/Config.xml"));
    const auto document =
        Velkor::KT::Tracking::Config::ktmstat(input, ::xml_schema::flags::dont_validate);
    return *document->instances();
}

}  // namespace InstancesTest
