#pragma once

#include "Tracking/Instances/ParseContext_p.h"

namespace Velkor::KT::Tracking
{

namespace Config
{
class Instances;
}

// The service sections of the "instances" configuration. Each attaches the observer of its
// service to every live object of the service's type that has none yet, unless the section is
// absent or configures none of the notifications that count for it.
void AttachScheduler(const Config::Instances& config, const ParseContext& context);
void AttachDurationLimiter(const Config::Instances& config, const ParseContext& context);
void AttachCaptureInfo(const Config::Instances& config, const ParseContext& context);
void AttachCaptureMonitor(const Config::Instances& config, const ParseContext& context);
void AttachConverter(const Config::Instances& config, const ParseContext& context);
void AttachScreenshots(const Config::Instances& config, const ParseContext& context);
void AttachFiles(const Config::Instances& config, const ParseContext& context);
void AttachSharing(const Config::Instances& config, const ParseContext& context);
void AttachPainting(const Config::Instances& config, const ParseContext& context);
void AttachTutorial(const Config::Instances& config, const ParseContext& context);
void AttachVECommunication(const Config::Instances& config, const ParseContext& context);
void AttachSelector(const Config::Instances& config, const ParseContext& context);

}  // namespace Velkor::KT::Tracking
