#pragma once

#include "Analytics/UploadCounters.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Velkor::KT
{
class ProductSettings;
}

namespace Velkor::Analytics
{

// How an UploadingApplicationTracker reaches its store and paces itself. The defaults suit a
// desktop application that sends a few hundred events a session.
struct UploadOptions
{
    enum class Store
    {
        // ClickHouse's HTTP interface: "INSERT INTO <database>.<table> FORMAT JSONEachRow", one
        // row per event with the columns of Lib/Analytics/Store/schema.sql.
        ClickHouse,
        // A plain POST of the spool's lines, one JSON object per line (application/x-ndjson), as
        // the HTTP inputs of log shippers take it.
        Ndjson,
    };

    // http:// or https:// (https needs Qt's TLS backend). No credentials in it: they go into
    // `user` and `key`, or `headers`.
    std::string url;
    Store store = Store::ClickHouse;
    // ClickHouse: where the rows go, and who inserts them (X-ClickHouse-User, X-ClickHouse-Key).
    std::string database = "kt";
    std::string table = "events";
    std::string user;
    std::string key;
    // Further request headers, e.g. {"Authorization", "Bearer ..."} for a log shipper.
    std::vector<std::pair<std::string, std::string>> headers;
    // Compress request bodies with gzip (Content-Encoding: gzip), at this zlib level.
    bool gzip = true;
    int gzipLevel = 1;

    // Written into every event ("ver"): the application's version.
    std::string applicationVersion;
    // Written into every event ("inst"); empty: a random id made once and kept in the data
    // directory ("installation").
    std::string installationId;
    // The consent: while its "statisticsEnabled" is off nothing is spooled or sent, and switching
    // it off deletes the unsent spool. Null: the host gates every event itself.
    std::shared_ptr<KT::ProductSettings> productSettings;

    // A batch leaves when it holds this many events, this many bytes of spool lines, or when its
    // oldest event has waited this long. It never reaches past the end of a spool file, so with
    // maxBatchBytes equal to segmentBytes a backlog goes out one file a batch.
    std::size_t maxBatchEvents = 50000;
    std::size_t maxBatchBytes = 4 * 1024 * 1024;
    std::chrono::milliseconds maxBatchAge{5000};

    // The spool's files together stay within this many bytes; the oldest unsent events go first.
    std::uint64_t spoolCapBytes = 64 * 1024 * 1024;
    // Size of one spool file (at most an eighth of the cap).
    std::uint64_t segmentBytes = 4 * 1024 * 1024;
    // The dead-letter file "dead-letter.jsonl" and one older "dead-letter.1.jsonl", each at most
    // this size.
    std::uint64_t deadLetterBytes = 1024 * 1024;

    // After a connection error, a timeout, 5xx or 429 the batch is tried again after a delay
    // drawn between half and all of min(maxRetryDelay, minRetryDelay * 2^(failures - 1)), never
    // below minRetryDelay; a Retry-After of the reply lengthens it, up to maxRetryAfter.
    std::chrono::milliseconds minRetryDelay{1000};
    std::chrono::milliseconds maxRetryDelay{5 * 60 * 1000};
    std::chrono::milliseconds maxRetryAfter{60 * 60 * 1000};
    // After 401, 403, 404 (or another answer that needs a person) the upload pauses this long,
    // or until Resume().
    std::chrono::milliseconds pauseInterval{15 * 60 * 1000};
    // A request without its reply after this long is abandoned and retried.
    std::chrono::milliseconds requestTimeout{30 * 1000};
    // Stopping or destroying the tracker sends for at most this long.
    std::chrono::milliseconds shutdownTimeout{2000};

    // Called on the upload thread after every attempt and every change of the pause, with the
    // counters after it. It must return quickly and must not call Flush() or Stop().
    std::function<void(const UploadCounters&)> onAttempt;
};

}  // namespace Velkor::Analytics
