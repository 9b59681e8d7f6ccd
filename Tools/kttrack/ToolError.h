#pragma once

#include <stdexcept>

namespace Velkor::KT::KtTrack
{

// A failure whose message is written for the user as it stands ("FILE:LINE: what is wrong").
class ToolError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

}  // namespace Velkor::KT::KtTrack
