#pragma once

#include "Tracking/Events/IKtTracker.h"
#include "Tracking/Rules/IRuleTraceListener.h"

#include <QtGlobal>

#include <memory>
#include <string>

namespace Velkor::KT::Tracking
{

// A chain stage that rewrites events by the rules of a filter document: renames them, sets,
// adds, changes and removes properties, buckets numeric values and drops events, always or only
// when they repeat. Events no rule concerns pass unchanged; an event whose name ends up empty is
// never passed on.
//
// Track() may be called from any thread: one mutex serialises the rewrite and the memory of
// repeats, and the successor is called after it has been released.
class KT_TRACKING_EXPORT FilterKtTracker : public IKtTracker
{
public:
    // Throws std::logic_error when `next` is empty.
    explicit FilterKtTracker(const std::shared_ptr<IKtTracker>& next);
    ~FilterKtTracker() override;

    // Replaces the rule document. A document that cannot be parsed is logged
    // ("Can't parse configuration: ...") and the previous one stays in force.
    void SetConfig(const std::string& config);

    // Reports every step of the rewrite to `listener` from now on (see IRuleTraceListener); null
    // stops the reports. Once this returns, the previous listener is no longer called. Without a
    // listener each step costs one null check.
    void SetTraceListener(const std::shared_ptr<IRuleTraceListener>& listener);

    void Track(const Event& event) override;

private:
    Q_DISABLE_COPY(FilterKtTracker)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
