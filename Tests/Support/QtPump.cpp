#include "Support/QtPump.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

namespace KtTest
{

void Pump()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

bool PumpUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout)
{
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!done())
    {
        if (std::chrono::steady_clock::now() > deadline)
        {
            return false;
        }
        Pump();
        if (!done())
        {
            QThread::msleep(1);
        }
    }
    return true;
}

void RunDeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace KtTest
