#pragma once

// Events as JSON Lines: one {"name": "...", "params": {"KEY": "VALUE", ...}} object per line, as
// Tracking::EventJson() writes them.

#include "Tracking/Events/Event.h"

#include <QByteArray>

#include <istream>
#include <string>
#include <vector>

namespace Velkor::KT::KtTrack
{

// An event and the line of the file it was read from (1-based).
struct NumberedEvent
{
    Tracking::Event event;
    int line;
};

// Reads all of `path`, or of `in` when `path` is "-". Throws ToolError when the file cannot be
// read.
QByteArray ReadInput(const std::string& path, std::istream& in);

// Parses JSON Lines. Blank lines are skipped; "params" may be left out; every other line must be
// an object with a string "name" and string values in "params", nothing else, and no key twice in
// one object. Throws ToolError "NAME:LINE: what is wrong" for the first line that is not, `name`
// being the file name to show.
std::vector<NumberedEvent> ParseEvents(const QByteArray& data, const std::string& name);

}  // namespace Velkor::KT::KtTrack
