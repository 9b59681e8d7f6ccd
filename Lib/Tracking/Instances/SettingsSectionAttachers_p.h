#pragma once

#include "Tracking/Instances/ParseContext_p.h"

namespace Velkor::KT::Tracking
{

namespace Config
{
class Instances;
}

// The settings sections of the "instances" configuration. Each attaches a settings observer with
// the section's configured fields to every live settings object of its type that has none yet,
// unless the section is absent or configures none of its fields.
void AttachPaths(const Config::Instances& config, const ParseContext& context);
void AttachGeneral(const Config::Instances& config, const ParseContext& context);
void AttachKeyboard(const Config::Instances& config, const ParseContext& context);
void AttachWatermark(const Config::Instances& config, const ParseContext& context);
void AttachAudio(const Config::Instances& config, const ParseContext& context);
void AttachWebCamera(const Config::Instances& config, const ParseContext& context);
void AttachStreaming(const Config::Instances& config, const ParseContext& context);
void AttachHotkeys(const Config::Instances& config, const ParseContext& context);
void AttachOverlays(const Config::Instances& config, const ParseContext& context);
void AttachProduct(const Config::Instances& config, const ParseContext& context);
void AttachFinishAction(const Config::Instances& config, const ParseContext& context);
void AttachConvertation(const Config::Instances& config, const ParseContext& context);
void AttachUi(const Config::Instances& config, const ParseContext& context);
void AttachDurationLimit(const Config::Instances& config, const ParseContext& context);
void AttachSchedulerSettings(const Config::Instances& config, const ParseContext& context);
void AttachVideo(const Config::Instances& config, const ParseContext& context);
void AttachCursor(const Config::Instances& config, const ParseContext& context);

}  // namespace Velkor::KT::Tracking
