#pragma once

// Internal: the bounds on the regular expressions a document may ask the GUI handler to compile
// (ids with idIsRegExp). Qt's QRegExp parses an expression recursively, one level per group, and
// spells out every bounded repetition ("a{1000}" becomes 1000 states, "(a{1000}){1000}" a
// million), so an unbounded expression can exhaust the stack or the memory of the host.

#include <optional>
#include <string>

namespace Velkor::KT::Tracking::Config::Detail
{

// Far more than any object name needs.
constexpr int kMaxExpressionDepth = 32;
constexpr long kMaxExpressionAtoms = 10000;

// Why `expression`, in QRegExp's default syntax, is beyond the bounds: groups ("(", "(?:",
// "(?=", "(?!") nested deeper than kMaxExpressionDepth, or more than kMaxExpressionAtoms
// characters, classes and anchors once each bounded repetition is spelt out. Nothing when it is
// within them, whether or not it is a valid expression.
std::optional<std::string> ExpressionBeyondBounds(const std::string& expression);

}  // namespace Velkor::KT::Tracking::Config::Detail
