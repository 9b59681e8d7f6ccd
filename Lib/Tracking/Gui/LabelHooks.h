#pragma once

class QLabel;

namespace Velkor::KT::Tracking
{

struct HookContext;

namespace Config
{
class Label;
}

// `link-activated-event`: the activated link assigned under `value`.
void ApplyLabel(const HookContext& context, QLabel* label, const Config::Label& entry);

}  // namespace Velkor::KT::Tracking
