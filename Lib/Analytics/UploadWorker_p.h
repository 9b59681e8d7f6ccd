#pragma once

#include "Analytics/Backoff_p.h"
#include "Analytics/BatchBuilder_p.h"
#include "Analytics/ReplyVerdict_p.h"
#include "Analytics/Sink_p.h"
#include "Analytics/Spool_p.h"
#include "Analytics/UploadOptions.h"
#include "Analytics/UploadState_p.h"

#include <QObject>
#include <QUrl>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

class QNetworkAccessManager;
class QNetworkReply;
class QTimer;

namespace Velkor::Analytics
{

class RotatingAppendFile;

// The upload thread's work: takes the next batch from the spool when it is due, posts it, and
// acts on the reply (UploadingApplicationTracker describes the rules). Lives on that thread:
// every public operation but Counters() must be called there (queued).
class UploadWorker : public QObject
{
    Q_OBJECT

public:
    UploadWorker(Spool& spool, RotatingAppendFile& deadLetters, std::unique_ptr<Sink> sink,
                 const UploadOptions& options, const QUrl& url, UploadState& state,
                 const std::atomic<bool>& consent);
    ~UploadWorker() override;

    // The counters of the spool and of the upload together.
    static UploadCounters Counters(const UploadState& state, const Spool& spool);

    void Start();
    // Something was spooled, or a Flush() waits: look whether a batch is due.
    void Wake();
    void Resume();
    // Consent was withdrawn: abandon the request in flight.
    void Cancel();
    // Abandons the request in flight, releases the network objects and ends the thread's loop.
    void Shutdown();

private:
    enum class Phase
    {
        Idle,
        Waiting,  // for the first unsent event to be old enough
        Sending,
        BackingOff,  // after a failure
        Paused,
        Stopped,
    };

    // A batch made from the spool, ready to post.
    struct Prepared
    {
        std::string data;  // the spool lines read
        Batch batch;       // views into `data`
        QByteArray body;   // compressed when `gzipped`
        bool gzipped = false;
        SpoolPosition start;
        SpoolPosition end;
        std::uint64_t generation = 0;
    };

    void Plan();
    bool IsDue(const Spool::Unsent& unsent);
    bool Prepare(const Spool::Unsent& unsent, std::size_t maxEvents, Prepared& prepared) const;
    void PrepareNext();
    void Post();
    void OnReplyFinished(QNetworkReply* reply);
    void OnTimer();
    void Succeed();
    void Retry(const ReplyVerdict& verdict);
    void Pause(const std::string& kind, const std::string& error);
    void Refuse(const ReplyVerdict& verdict, int status);
    void DeadLetter(std::string_view event, int status, const std::string& error);
    void ChangeCondition(const std::string& kind, const std::string& message, bool error);
    void AbandonRequest();
    void Reported();

    Spool& m_spool;
    RotatingAppendFile& m_deadLetters;
    const std::unique_ptr<Sink> m_sink;
    const UploadOptions m_options;
    const std::string m_where;
    UploadState& m_state;
    const std::atomic<bool>& m_consent;

    QNetworkAccessManager* m_network = nullptr;
    QNetworkReply* m_reply = nullptr;
    QTimer* m_timer = nullptr;
    QTimer* m_requestTimer = nullptr;
    Phase m_phase = Phase::Idle;
    bool m_timedOut = false;
    Backoff m_backoff;

    // The batch in flight, and the one after it, made while the first is on its way.
    std::unique_ptr<Prepared> m_current;
    std::unique_ptr<Prepared> m_next;

    // While a refused batch is being split: at most this many events a batch, until the cursor
    // passes the end of the refused batch.
    std::size_t m_splitLimit = 0;
    SpoolPosition m_splitUntil;
    // A byte limit learnt from 413, for the rest of the tracker's life.
    std::size_t m_learntMaxBytes = 0;
    int m_refusedInRow = 0;
    // What the log last said was wrong ("" while all is well).
    std::string m_condition;
    bool m_cursorSaveReported = false;
};

}  // namespace Velkor::Analytics
