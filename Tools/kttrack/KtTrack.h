#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Velkor::KT::KtTrack
{

// The text of "kttrack --help".
const char* HelpText();

// Runs the command line `args` (without the program name) and returns the exit code.
int RunKtTrack(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
               std::ostream& err);

}  // namespace Velkor::KT::KtTrack
