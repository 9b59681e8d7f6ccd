#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Velkor::KT::KtTrack
{

// kttrack match DOC.xml TREE.json
// Matches the gui section of the main document DOC.xml against an object tree dumped from a
// running application (Tracking/ObjectTree.h), with the library's own search, as attaching all
// of the tree's windows would, and prints the report: per entry the objects it hooks, what
// matches nothing and what is hooked twice and why ("DOC.xml:LINE: ..."). Returns 0 when every
// entry matches, 1 when some match nothing, 2 for unreadable input or bad arguments.
int RunMatch(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace Velkor::KT::KtTrack
