#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Velkor::KT::KtTrack
{

// kttrack coverage [--require-all] DOC.xml... SESSION.jsonl
// Runs the session through the filter and aggregator documents given (the shipped document for a
// stage not given, which is then not reported) and writes, for every block, param rule and
// matcher of the filter and every main and affecting event of the aggregator, how often it fired;
// then those that never fired, and the event names of the session that no rule names. Returns
// the exit code: 0 done, 1 with --require-all when something never fired, 2 unusable input.
int RunCoverage(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
                std::ostream& err);

}  // namespace Velkor::KT::KtTrack
