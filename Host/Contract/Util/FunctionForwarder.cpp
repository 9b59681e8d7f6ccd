#include "Util/FunctionForwarder.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <deque>
#include <mutex>

namespace Velkor::Util
{

namespace
{

const QEvent::Type kWakeUpEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

}  // namespace

// The queue is guarded by a standard mutex rather than relying on the order of posted Qt events:
// one wake-up event is posted per batch, and the owning thread drains the whole queue when it
// arrives. Order follows the order of taking the lock.
class FunctionForwarder::Private : public QObject
{
public:
    bool event(QEvent* e) override
    {
        // The wake-up event was built under the mutex by the queueing thread; taking the mutex
        // before touching it makes that hand-over visible to tools that do not see inside Qt.
        {
            std::lock_guard<std::mutex> lock(mutex);
        }
        if (e->type() != kWakeUpEvent)
        {
            return QObject::event(e);
        }
        Drain();
        return true;
    }

    void Enqueue(std::function<void()> function)
    {
        QEvent* wakeUp = nullptr;
        {
            std::lock_guard<std::mutex> lock(mutex);
            queue.push_back(std::move(function));
            if (!wakeUpPending)
            {
                wakeUpPending = true;
                wakeUp = new QEvent(kWakeUpEvent);
            }
        }
        if (wakeUp)
        {
            QCoreApplication::postEvent(this, wakeUp);
        }
    }

    std::size_t Drain()
    {
        std::size_t ran = 0;
        for (;;)
        {
            std::deque<std::function<void()>> batch;
            {
                std::lock_guard<std::mutex> lock(mutex);
                if (queue.empty())
                {
                    wakeUpPending = false;
                    return ran;
                }
                batch.swap(queue);
            }
            // A function may queue further functions; they are taken in the next round, after
            // everything that was queued before them.
            for (auto& function : batch)
            {
                function();
                ++ran;
            }
        }
    }

    std::mutex mutex;
    std::deque<std::function<void()>> queue;
    bool wakeUpPending = false;
};

FunctionForwarder::FunctionForwarder() : d(std::make_unique<Private>()) {}

FunctionForwarder::~FunctionForwarder() = default;

void FunctionForwarder::Forward(std::function<void()> function)
{
    if (function)
    {
        d->Enqueue(std::move(function));
    }
}

std::size_t FunctionForwarder::Flush()
{
    return d->Drain();
}

}  // namespace Velkor::Util
