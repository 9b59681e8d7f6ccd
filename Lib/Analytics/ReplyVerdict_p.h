#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <chrono>
#include <optional>
#include <string>

namespace Velkor::Analytics
{

// What came back for one batch.
struct ReplyFacts
{
    int status = 0;            // the HTTP status; 0 when no reply came
    QString networkError;      // Qt's description when no reply came
    bool tlsError = false;     // the TLS handshake or the certificate failed
    bool timedOut = false;     // abandoned after the request timeout
    QByteArray body;           // the reply's body: the store's message
    QByteArray retryAfter;     // the Retry-After header
    bool refusesData = false;  // the sink reads the reply as a refusal of the data
};

// What the uploader does about it.
struct ReplyVerdict
{
    enum class Action
    {
        Done,   // 2xx: the batch is in the store
        Retry,  // the same batch after a backoff
        Pause,  // wait for a person (or pauseInterval)
        Split,  // the store refuses something in the batch
    };

    Action action = Action::Done;
    std::optional<std::chrono::milliseconds> retryAfter;
    // "HTTP 503 from <where>: <first line of the store's message>", or the connection error.
    std::string error;
    // What the log tells apart: "HTTP 503", "HTTP 401", "connection" ...; empty for Done.
    std::string kind;
};

ReplyVerdict JudgeReply(const ReplyFacts& facts, const QDateTime& now, const std::string& where);

}  // namespace Velkor::Analytics
