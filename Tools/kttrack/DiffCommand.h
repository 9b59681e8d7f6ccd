#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Velkor::KT::KtTrack
{

// kttrack diff [--changed-only] --old F1 [A1] --new F2 [A2] SESSION.jsonl
// Runs the session through the old and the new rule documents (told apart by their roots; a
// kind missing from --old is the shipped document, a kind missing from --new is the old one) and
// writes what each delivers side by side, event by event of the session, with the properties
// that differ, and a summary: events gained, lost and renamed, properties changed by key.
// Returns the exit code: 0 the same, 1 different, 2 unusable input.
int RunDiff(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
            std::ostream& err);

}  // namespace Velkor::KT::KtTrack
