#include "Tracking/Rules/IRuleTraceListener.h"

namespace Velkor::KT::Tracking
{

IRuleTraceListener::~IRuleTraceListener() = default;

void IRuleTraceListener::FilterStarted(const Event&) {}

void IRuleTraceListener::FilterBlockEntered(int, const Event&) {}

void IRuleTraceListener::FilterMatcherFired(const FilterMatcherRef&, const std::string&,
                                            const std::string&)
{
}

void IRuleTraceListener::FilterActionRun(const FilterActionTrace&) {}

void IRuleTraceListener::FilterFinished(const Event&) {}

void IRuleTraceListener::AggregatorStarted(const Event&) {}

void IRuleTraceListener::AggregatorMainEvent(int, bool) {}

void IRuleTraceListener::AggregatorMerged(int, const std::string&, const std::string*,
                                          const std::string&)
{
}

void IRuleTraceListener::AggregatorHeld(int, int, const Event::Params&, const Event::Params&) {}

void IRuleTraceListener::AggregatorFinished(const Event&) {}

}  // namespace Velkor::KT::Tracking
