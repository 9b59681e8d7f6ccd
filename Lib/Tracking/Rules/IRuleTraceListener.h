#pragma once

#include "Tracking/Events/Event.h"
#include "Tracking/TrackingExport.h"

#include <string>

namespace Velkor::KT::Tracking
{

// The matcher kinds of a filter rule, in the order the filter tries them.
enum class FilterMatcherKind
{
    Equal,
    StartsWith,
    EndsWith,
    Contains,
    InRange,
    Any,
};

// The action kinds of a filter matcher, in the order they run.
enum class FilterActionKind
{
    SetValue,
    AddParam,
    ModParam,
    ModEvent,
    SkipEvent,
    DelParam,
};

// What a skipEvent decided.
enum class FilterSkipVerdict
{
    // Not a skipEvent.
    None,
    // A plain skipEvent: the event is dropped.
    Dropped,
    // skipFullRepeats: the same name and properties as the last event remembered for this name,
    // so the event is dropped.
    FullRepeat,
    // skipFullRepeats: not a repeat; the event's properties are remembered and it passes.
    Remembered,
};

// A matcher of the filter document in force, by position. Every index counts elements in
// document order from 0: `block` among the root's `event` elements, `rule` among the block's
// `param` elements, `matcher` among the rule's matchers of `kind` (the reader keeps each kind as
// a list of its own).
struct FilterMatcherRef
{
    int block = 0;
    int rule = 0;
    FilterMatcherKind kind = FilterMatcherKind::Equal;
    int matcher = 0;
};

// One action the filter ran and what it changed. The pointers are valid during the call only.
struct FilterActionTrace
{
    FilterMatcherRef matcher;
    FilterActionKind kind = FilterActionKind::SetValue;
    // Among the matcher's actions of `kind`, in document order.
    int action = 0;
    // setValue, addParam, modParam, delParam: the property written and its value before and
    // after the action, null where the property is absent (an addParam of a present property
    // leaves it as it was). modEvent and skipEvent: `key` is null and `before` and `after` are
    // the event's name (an empty name after the action drops the event).
    const std::string* key = nullptr;
    const std::string* before = nullptr;
    const std::string* after = nullptr;
    FilterSkipVerdict skip = FilterSkipVerdict::None;
};

// Listens to the rule stages' own evaluation, step by step, to explain what they did to each
// event (kttrack replay --explain) and to count how often each rule fires (kttrack coverage).
// Attach it with FilterKtTracker::SetTraceListener or AggregatorKtTracker::SetTraceListener.
//
// A stage reports only while it has a document, and only through its own evaluation: what is
// reported is what happened. Every call is made inside the stage's lock, in the order of the
// steps, for one event at a time per stage; the event of a call is the stage's working copy as
// it stands then. A listener must not call back into the stage that calls it (its lock is not
// recursive). One listener attached to several stages may be called by them at once from
// different threads and then guards its own state. Every operation does nothing by default.
class KT_TRACKING_EXPORT IRuleTraceListener
{
public:
    virtual ~IRuleTraceListener();

    // ---- FilterKtTracker
    // The rewrite of `event` begins.
    virtual void FilterStarted(const Event& event);
    // The `event` element at `block` names the event (as it is named now), so its rules apply.
    virtual void FilterBlockEntered(int block, const Event& event);
    // The matcher won its rule on the value of the property `key`; its actions follow.
    virtual void FilterMatcherFired(const FilterMatcherRef& matcher, const std::string& key,
                                    const std::string& value);
    virtual void FilterActionRun(const FilterActionTrace& action);
    // The rewrite is done; `result` leaves the stage unless its name is empty (dropped).
    virtual void FilterFinished(const Event& result);

    // ---- AggregatorKtTracker
    // The merge of `event` begins.
    virtual void AggregatorStarted(const Event& event);
    // The event is the main event of the `event` element at `block`; `merging` tells whether the
    // properties of a held cause are merged into it (each reported by AggregatorMerged).
    virtual void AggregatorMainEvent(int block, bool merging);
    // A held property is set on the main event: `before` is its own value (null: absent).
    virtual void AggregatorMerged(int block, const std::string& key, const std::string* before,
                                  const std::string& after);
    // The event is the `affecting`-th affecting event of the `event` element at `block`: its
    // properties `held` are kept for that main event, replacing `discarded`, the properties of an
    // earlier cause that no main event took (empty when there was none).
    virtual void AggregatorHeld(int block, int affecting, const Event::Params& held,
                                const Event::Params& discarded);
    // The merge is done; `result` leaves the stage unless its name is empty (held back).
    virtual void AggregatorFinished(const Event& result);
};

}  // namespace Velkor::KT::Tracking
