#pragma once

#include "Tracking/Events/IKtTracker.h"
#include "Tracking/Rules/IRuleTraceListener.h"

#include <QtGlobal>

#include <memory>
#include <string>

namespace Velkor::KT::Tracking
{

// A chain stage that merges each affecting event into the main event that follows it, as an
// aggregator document names them. An affecting event is held back: its properties are kept
// under its main event (the last cause wins) and added to the next occurrence of that main
// event, over the main event's own values. Everything else passes unchanged; an event whose
// name is empty is never passed on. What is held back survives a new document.
//
// Track() may be called from any thread: one mutex serialises the merge and the held
// properties, and the successor is called after it has been released.
class KT_TRACKING_EXPORT AggregatorKtTracker : public IKtTracker
{
public:
    // Throws std::logic_error when `next` is empty.
    explicit AggregatorKtTracker(const std::shared_ptr<IKtTracker>& next);
    ~AggregatorKtTracker() override;

    // Replaces the aggregation document. A document that cannot be parsed is logged
    // ("Can't parse configuration: ...") and the previous one stays in force.
    void SetConfig(const std::string& config);

    // Reports every hold, merge and pass to `listener` from now on (see IRuleTraceListener);
    // null stops the reports. Once this returns, the previous listener is no longer called.
    void SetTraceListener(const std::shared_ptr<IRuleTraceListener>& listener);

    void Track(const Event& event) override;

private:
    Q_DISABLE_COPY(AggregatorKtTracker)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
