#pragma once

#include "HostExport.h"

#include <QtGlobal>

#include <functional>
#include <memory>

namespace Velkor::Util
{

// Runs functions on the thread that constructed the forwarder.
//
// Forward() may be called from any thread; it queues the function and returns at once. The
// functions run later, one at a time, inside the event loop of the owning thread, in the order
// in which Forward() was called (calls from different threads are ordered by when they queued).
// Functions still queued when the forwarder is destroyed are discarded without being run.
// The forwarder itself must be destroyed on its owning thread.
class KT_HOST_EXPORT FunctionForwarder
{
public:
    FunctionForwarder();
    ~FunctionForwarder();

    void Forward(std::function<void()> function);

    // Runs every function queued so far, on the calling thread, which must be the owning one.
    // Returns how many ran. Useful where a caller cannot wait for the event loop.
    std::size_t Flush();

    // Queued functions must not throw: the event loop cannot carry an exception.

private:
    Q_DISABLE_COPY(FunctionForwarder)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::Util
