#pragma once

#include "Tracking/Events/IKtTracker.h"

#include "Analytics/IApplicationTracker.h"

#include <memory>
#include <mutex>

namespace Velkor::KT::Tracking
{

// Turns the analytics library's tracking calls back into events for a tracker of the chain.
//
// Each event gets the adapter's default properties by assignment (a default replaces an event
// property with the same key); defaults are kept first-come (adding a key again is ignored).
// The reference count is left to the concrete class (ApplicationTrackerAdapter).
class AbstractApplicationTrackerAdapter : public Analytics::IApplicationTracker, private IKtTracker
{
public:
    // A null next tracker makes every tracking call answer false.
    explicit AbstractApplicationTrackerAdapter(std::shared_ptr<IKtTracker> next);

    bool Track(const std::string& name, const Analytics::Properties& properties) override;
    bool Track(const std::string& name, const std::string& key, const std::string& value) override;
    void AddDefaultProperties(const Analytics::Properties& properties) override;
    // Adds the default properties; the identity and the directory mean nothing to a chain.
    bool Initialize(const Analytics::Properties& defaultProperties, const std::string& identity,
                    const std::string& dataDirectory) override;

protected:
    ~AbstractApplicationTrackerAdapter() override;

private:
    AbstractApplicationTrackerAdapter(const AbstractApplicationTrackerAdapter&) = delete;
    AbstractApplicationTrackerAdapter& operator=(const AbstractApplicationTrackerAdapter&) = delete;

    // The IKtTracker face: hands the finished event to the next tracker.
    void Track(const Event& event) override;

    const std::shared_ptr<IKtTracker> m_next;
    mutable std::mutex m_mutex;
    Analytics::Properties m_defaults;
};

}  // namespace Velkor::KT::Tracking
