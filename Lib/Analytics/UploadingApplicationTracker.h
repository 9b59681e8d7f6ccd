#pragma once

#include "Analytics/AnalyticsExport.h"
#include "Analytics/IApplicationTracker.h"
#include "Analytics/UploadCounters.h"
#include "Analytics/UploadOptions.h"

#include <chrono>
#include <memory>
#include <string>

namespace Velkor::Analytics
{

// The application's analytics service: it keeps every event in a spool on disk and sends the
// spool to a store over HTTP(S) from a thread of its own. A host installs it with
// ApplicationTrackerFactory::SetCreator().
//
// Track() formats the event as one line (see AppendEventLine: an id of 128 random bits, the UTC
// time in milliseconds, the session, the installation, the identity, the version, the name and
// the properties) and appends it to the spool with one write(2) on the caller's thread; nothing
// else happens there. The spool lives in the data directory given to Initialize().
//
// The upload thread sends the spool in order, one batch at a time (UploadOptions for the sizes),
// gzip-compressed, and moves its durable cursor past a batch only after a 2xx reply, so a crash
// anywhere sends at most the one batch in flight again. The store counts it once: every line has
// its id, and the store's table keeps one row per id.
//
// Replies:
// - 2xx: the batch is done.
// - connection error, timeout, 5xx, 408, 429: the same batch again after a backoff with jitter,
//   honouring Retry-After (UploadOptions).
// - 401, 403, 404, any other 3xx or 4xx, a TLS error: the upload pauses for pauseInterval or
//   until Resume(); nothing is dropped.
// - 400, 413 (and a ClickHouse 500 that refuses the data): the batch is split in halves until the
//   refused event is alone; it goes to the dead-letter file with the store's message, the rest
//   goes on. Should eight events in a row be refused alone, the store refuses everything: the
//   upload pauses instead.
// A failure or a pause is logged once when it starts and once when the upload works again, a
// drop once until the spool empties; never once per event.
//
// Consent: while the product settings' "statisticsEnabled" is off, Track() stores nothing; when
// it switches off, the request in flight is abandoned and the unsent spool deleted.
//
// Stop() or the destructor sends what it can within shutdownTimeout and stops at the first
// failure; whatever is left stays in the spool for the next start.
//
// One tracker per data directory (the spool is locked). Every operation may be called from any
// thread; Qt's application object must exist from Initialize() to the destructor.
class KT_ANALYTICS_EXPORT UploadingApplicationTracker : public IApplicationTracker
{
public:
    // Throws std::invalid_argument, with a message that says why, for a URL that is not http(s),
    // has no host or holds credentials, for https without a TLS backend, and for a database or
    // table name that is not a plain identifier.
    static RefPtr<UploadingApplicationTracker> Create(const UploadOptions& options);

    // Answers false before a successful Initialize(), without consent, and when the line could
    // not be stored (a full disk, or a spool at its cap that cannot make room).
    bool Track(const std::string& name, const Properties& properties) override;
    bool Track(const std::string& name, const std::string& key, const std::string& value) override;
    void AddDefaultProperties(const Properties& properties) override;
    // Creates the directory if needed, opens the spool in it and starts the upload thread. Fails
    // when already initialised, when the directory is empty or cannot be created, or when another
    // tracker holds it.
    bool Initialize(const Properties& defaultProperties, const std::string& identity,
                    const std::string& dataDirectory) override;

    UploadCounters Counters() const;
    // Sends everything spooled so far without waiting for a batch to fill, and waits until the
    // backlog is empty (true), the upload pauses or `timeout` passes (false).
    bool Flush(std::chrono::milliseconds timeout);
    // Ends a pause at once.
    void Resume();
    // Sends for at most shutdownTimeout and stops the upload thread; later events are only
    // spooled. Also done by the destructor.
    void Stop();

protected:
    explicit UploadingApplicationTracker(const UploadOptions& options);
    ~UploadingApplicationTracker() override;

private:
    UploadingApplicationTracker(const UploadingApplicationTracker&) = delete;
    UploadingApplicationTracker& operator=(const UploadingApplicationTracker&) = delete;

    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::Analytics
