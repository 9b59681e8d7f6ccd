#pragma once

// Where the rules of a filter or aggregator document are written: the line of each element the
// stages count, found by the positions the stages report (IRuleTraceListener), so that a trace
// or a coverage report can name FILE:LINE.

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/Filter.h"
#include "Tracking/Rules/IRuleTraceListener.h"

#include <array>
#include <string>
#include <vector>

namespace Velkor::KT::KtTrack
{

constexpr std::size_t kMatcherKinds = 6;
constexpr std::size_t kActionKinds = 6;

// Lines of a filter document, 0 where unknown. Elements are counted as the application's reader
// counts them: each kind of child in document order, the children of an element read up to the
// first one the reader does not know (or a second setValue).
struct FilterLines
{
    struct Matcher
    {
        int line = 0;
        std::array<std::vector<int>, kActionKinds> actions;
    };
    struct Rule
    {
        int line = 0;
        std::array<std::vector<Matcher>, kMatcherKinds> matchers;
    };
    struct Block
    {
        int line = 0;
        std::vector<Rule> rules;
    };

    int BlockLine(int block) const;
    int RuleLine(int block, int rule) const;
    int MatcherLine(const Tracking::FilterMatcherRef& matcher) const;
    int ActionLine(const Tracking::FilterMatcherRef& matcher, Tracking::FilterActionKind kind,
                   int action) const;

    std::vector<Block> blocks;
};

// Lines of an aggregator document, 0 where unknown.
struct AggregatorLines
{
    struct Block
    {
        int line = 0;
        std::vector<int> affecting;
    };

    int BlockLine(int block) const;
    int AffectingLine(int block, int affecting) const;

    std::vector<Block> blocks;
};

// The lines of `text`, whose model is `model`. When the two do not count the same elements (which
// only a document the reader partly ignores can cause), no lines are known.
FilterLines MapFilterLines(const std::string& text, const Tracking::Config::Filter::Filter& model);
AggregatorLines MapAggregatorLines(const std::string& text,
                                   const Tracking::Config::Aggregator::Aggregator& model);

// "FILE:LINE", or "FILE" when the line is not known.
std::string At(const std::string& file, int line);

}  // namespace Velkor::KT::KtTrack
