#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Velkor::KT::KtTrack
{

// kttrack check [--werror] DOC... [+ DOC...]...
// Reads each document as the application does, validates it against the schema of its kind and
// checks its rules; then checks each set of documents (sets are separated by "+"; without "+"
// all documents form one set) that holds one main document against the filter and aggregator
// documents of the same set. Findings go to `err`, a summary to `out`. Returns the exit code:
// 0 clean (or warnings only, without --werror), 1 warnings with --werror, 2 errors.
int RunCheck(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace Velkor::KT::KtTrack
