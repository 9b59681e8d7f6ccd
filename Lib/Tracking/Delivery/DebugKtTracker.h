#pragma once

#include "Tracking/Events/IKtTrackingEndpoint.h"

#include <QtGlobal>

#include <memory>

namespace Velkor::KT::Tracking
{

// Shows every event that reaches it in a plain list window and writes it to the log as an
// information-level "Stat:" line. Meant for developers and testers watching the effect of the
// rule documents live; it sends nothing anywhere.
//
// Construct it on the GUI thread, which must run an event loop. Track() may be called from any
// thread: it copies the event and queues the display work to the constructing thread, where
// events appear in the order Track() was called. No window exists until the first event is
// shown; closing the window only hides it, and the next event shows it again. The window does
// not keep the application running: when the host's own last window closes, Qt's
// quit-on-last-window-closed ends the event loop as if the viewer were not there.
class KT_TRACKING_EXPORT DebugKtTracker : public IKtTrackingEndpoint
{
public:
    DebugKtTracker();
    ~DebugKtTracker() override;

    void Track(const Event& event) override;

private:
    Q_DISABLE_COPY(DebugKtTracker)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
