#pragma once

#include "Tracking/Events/IKtTracker.h"

#include <QString>
#include <QtGlobal>

#include <memory>

namespace Velkor::KT::Tracking
{

// A chain stage that writes every event it sees to a file and passes it on unchanged. Each
// event becomes one line of JSON (EventJson()), the form `kttrack replay` reads, so a stage at
// the head of the chain, before the filter, records the raw session for the rule authors'
// tools. It may stand anywhere in the chain, and several may.
//
// Each line is written to the file as soon as its event arrives, with one write; nothing waits in
// a buffer, so a session is complete whenever the application stops. Track() may be called from
// any thread: a mutex keeps lines whole and in the order of their writes, and the successor is
// called after it has been released. A file that cannot be opened or written is logged once;
// events then only pass.
class KT_TRACKING_EXPORT RecordingKtTracker : public IKtTracker
{
public:
    enum class OpenMode
    {
        // The file is emptied first: it holds this session only.
        Truncate,
        // Lines are added after what the file holds.
        Append,
    };

    // Opens (creates) the file at `path`. Throws std::logic_error when `next` is empty.
    RecordingKtTracker(const std::shared_ptr<IKtTracker>& next, const QString& path,
                       OpenMode mode = OpenMode::Truncate);
    // Closes the file.
    ~RecordingKtTracker() override;

    // Whether events are being written (the file is open and no write has failed).
    bool IsRecording() const;

    void Track(const Event& event) override;

private:
    Q_DISABLE_COPY(RecordingKtTracker)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
