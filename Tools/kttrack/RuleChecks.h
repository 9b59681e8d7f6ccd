#pragma once

// Checks of rule documents beyond their schemas: mistakes that parse and validate but make rules
// that can never fire, or fire on values the author did not mean.

#include <string>

namespace Velkor::KT::KtTrack
{

class Report;
struct RuleDocument;

// Numeric ranges of each filter rule (the inRange matchers of one param, both bounds inclusive,
// the first that matches wins): warns of a range without bounds, of ranges that earlier ones
// cover completely, of two ranges that share one value (it goes to the earlier one) and of gaps
// between ranges (values no range matches).
void CheckFilterRanges(const RuleDocument& filter, Report& report);

// Warns of names that are both a main event and an affecting event: such an event is never
// delivered.
void CheckAggregatorRoles(const RuleDocument& aggregator, Report& report);

// Checks the rules against what the main document emits (ProducedBy). Filter blocks apply in
// document order, so a block applies to the emitted names and to the names earlier applying
// blocks rename events to; a block for any other name never applies. Within a block that applies,
// a rule on a key that neither the senders of its event nor earlier rules set never matches
// (warned at the rule's line), and its renames never happen. The aggregator sees what the filter
// lets through: the emitted names and the renames. Its main and affecting events outside that set
// are never seen, and an affecting event that never carries "METHOD" does not tell its main event
// its cause (warned at the affecting event's line). `filter` and `aggregator` may be null.
void CrossCheck(const RuleDocument& main, const RuleDocument* filter,
                const RuleDocument* aggregator, Report& report);

}  // namespace Velkor::KT::KtTrack
