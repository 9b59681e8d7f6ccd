#include "Tracking/Delivery/RecordingKtTracker.h"

#include "Tracking/Events/EventJson.h"
#include "Tracking/Events/NotNull_p.h"

#include <glog/logging.h>

#include <QFile>

#include <mutex>
#include <string>

namespace Velkor::KT::Tracking
{

class RecordingKtTracker::Private
{
public:
    Private(const std::shared_ptr<IKtTracker>& next, const QString& path) : next(next), file(path)
    {
    }

    void Write(const std::string& line)
    {
        std::lock_guard<std::mutex> lock(mutex);
        if (!file.isOpen())
        {
            return;
        }
        if (file.write(line.data(), qint64(line.size())) != qint64(line.size()))
        {
            LOG(ERROR) << "Can't record events to " << file.fileName().toStdString() << ": "
                       << file.errorString().toStdString();
            file.close();
        }
    }

    NotNull<IKtTracker> next;
    mutable std::mutex mutex;
    QFile file;
};

RecordingKtTracker::RecordingKtTracker(const std::shared_ptr<IKtTracker>& next, const QString& path,
                                       OpenMode mode)
    : d(std::make_unique<Private>(next, path))
{
    // Unbuffered: every line goes to the file with the write of its event.
    const QIODevice::OpenMode flags =
        QIODevice::WriteOnly | QIODevice::Unbuffered |
        (mode == OpenMode::Append ? QIODevice::Append : QIODevice::Truncate);
    if (!d->file.open(flags))
    {
        LOG(ERROR) << "Can't record events to " << path.toStdString() << ": "
                   << d->file.errorString().toStdString();
    }
}

RecordingKtTracker::~RecordingKtTracker() = default;

bool RecordingKtTracker::IsRecording() const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->file.isOpen();
}

void RecordingKtTracker::Track(const Event& event)
{
    d->Write(EventJson(event) + '\n');
    d->next->Track(event);
}

}  // namespace Velkor::KT::Tracking
