#pragma once

class QComboBox;

namespace Velkor::KT::Tracking
{

namespace Gui
{
struct ParseContext;
}

namespace Config
{
class ComboBox;
}

// `current-index-changed-event`: the facts of the new current item (index, text, mapped value,
// item data), inserted in that order under the keys the entry names, so that a `param` of the
// same key, or an earlier fact, keeps its value.
void ApplyComboBox(const Gui::ParseContext& context, QComboBox* comboBox,
                   const Config::ComboBox& entry);

}  // namespace Velkor::KT::Tracking
