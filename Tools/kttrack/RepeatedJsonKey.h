#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Velkor::KT::KtTrack
{

// The first key that an object of the JSON text `json` holds twice, decoded, or nothing. Looks
// only at the text's structure: whether the text is valid JSON is left to its parser, which for a
// text with a repeated key keeps the last value. A scan that meets a string it cannot read stops
// and finds nothing.
std::optional<QString> RepeatedJsonKey(const QByteArray& json);

}  // namespace Velkor::KT::KtTrack
