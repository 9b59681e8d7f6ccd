#include "Analytics/ReplyVerdict_p.h"

#include "Analytics/RetryAfter_p.h"

namespace Velkor::Analytics
{

namespace
{

// The store's message on one line, at most 300 bytes of it.
std::string Message(const QByteArray& body)
{
    QByteArray text = body.simplified();
    if (text.size() > 300)
    {
        text = text.left(300) + "...";
    }
    return text.toStdString();
}

}  // namespace

ReplyVerdict JudgeReply(const ReplyFacts& facts, const QDateTime& now, const std::string& where)
{
    ReplyVerdict verdict;
    const int status = facts.status;
    if (status >= 200 && status < 300)
    {
        return verdict;
    }
    if (status == 0)
    {
        verdict.kind = facts.tlsError ? "TLS" : facts.timedOut ? "timeout" : "connection";
        verdict.action = facts.tlsError ? ReplyVerdict::Action::Pause : ReplyVerdict::Action::Retry;
        verdict.error = (facts.timedOut ? std::string("no reply") : "no connection") + " from " +
                        where + ": " + facts.networkError.toStdString();
        return verdict;
    }
    verdict.kind = "HTTP " + std::to_string(status);
    verdict.error = verdict.kind + " from " + where;
    const std::string message = Message(facts.body);
    if (!message.empty())
    {
        verdict.error += ": " + message;
    }
    if (status == 400 || status == 413 || facts.refusesData)
    {
        verdict.action = ReplyVerdict::Action::Split;
    }
    else if (status >= 500 || status == 408 || status == 429)
    {
        verdict.action = ReplyVerdict::Action::Retry;
        verdict.retryAfter = ParseRetryAfter(facts.retryAfter, now);
    }
    else
    {
        verdict.action = ReplyVerdict::Action::Pause;
    }
    return verdict;
}

}  // namespace Velkor::Analytics
