#pragma once

#include "Analytics/IDataFiller.h"
#include "Tracking/Fillers/FillerTypes.h"

#include <map>
#include <memory>
#include <vector>

namespace Velkor::App
{
class ILookAndFeelManager;
}

namespace Velkor::KT
{
class ConvertationSettings;
}

namespace Velkor::KT::Tracking::Fillers
{

// The fillers that exist, each owned alone, ordered by their type.
using FillerMap = std::map<FillerTypes, std::unique_ptr<Velkor::Tracking::IDataFiller>>;

// Creates one filler for every type that occurs in requested, however often; values that name
// no type are ignored. The language filler asks lookAndFeel for the language on every Fill (and
// writes nothing when lookAndFeel is null). The HyperPass filler reads convertation; requesting
// it with null settings throws std::logic_error("NotNull can not initialized by null").
FillerMap CreateAvailableFillers(const std::shared_ptr<App::ILookAndFeelManager>& lookAndFeel,
                                 const std::shared_ptr<ConvertationSettings>& convertation,
                                 const std::vector<FillerTypes>& requested);

// Runs the fillers of the given types that exist, in the given order, into params.
void RunFillers(const FillerMap& fillers, const std::vector<FillerTypes>& order,
                std::map<std::string, std::string>& params);

}  // namespace Velkor::KT::Tracking::Fillers
