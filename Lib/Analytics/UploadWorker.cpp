#include "Analytics/UploadWorker_p.h"

#include "Analytics/Gzip_p.h"
#include "Analytics/JsonText.h"
#include "Analytics/RotatingAppendFile_p.h"
#include "Analytics/SegmentReader_p.h"
#include "Analytics/UploadUrl_p.h"

#include <glog/logging.h>

#include <QDateTime>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QThread>
#include <QTimer>

#include <algorithm>

namespace Velkor::Analytics
{

namespace
{

// Events refused alone one after the other before the upload takes the store for refusing
// everything (a wrong table, say) and pauses instead of emptying the spool into dead letters.
constexpr int kRefusedInRowBeforePause = 8;

bool Before(const SpoolPosition& a, const SpoolPosition& b)
{
    return a.segment < b.segment || (a.segment == b.segment && a.offset < b.offset);
}

std::int64_t NowMilliseconds()
{
    return QDateTime::currentMSecsSinceEpoch();
}

std::string Seconds(std::chrono::milliseconds delay)
{
    return std::to_string((delay.count() + 999) / 1000) + " s";
}

}  // namespace

UploadWorker::UploadWorker(Spool& spool, RotatingAppendFile& deadLetters,
                           std::unique_ptr<Sink> sink, const UploadOptions& options,
                           const QUrl& url, UploadState& state, const std::atomic<bool>& consent)
    : m_spool(spool),
      m_deadLetters(deadLetters),
      m_sink(std::move(sink)),
      m_options(options),
      m_where(UrlForMessages(url)),
      m_state(state),
      m_consent(consent),
      m_backoff(options.minRetryDelay, options.maxRetryDelay, options.maxRetryAfter)
{
}

UploadWorker::~UploadWorker() = default;

UploadCounters UploadWorker::Counters(const UploadState& state, const Spool& spool)
{
    UploadCounters counters = state.Get();
    const Spool::Counts counts = spool.GetCounts();
    counters.spooled = counts.spooled;
    counters.dropped = counts.dropped;
    counters.backlog = counts.backlog;
    return counters;
}

void UploadWorker::Start()
{
    m_network = new QNetworkAccessManager(this);
    m_network->setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    m_timer->setTimerType(Qt::PreciseTimer);
    connect(m_timer, &QTimer::timeout, this, &UploadWorker::OnTimer);
    m_requestTimer = new QTimer(this);
    m_requestTimer->setSingleShot(true);
    connect(m_requestTimer, &QTimer::timeout, this,
            [this]
            {
                if (m_reply)
                {
                    m_timedOut = true;
                    m_reply->abort();
                }
            });
    Plan();
}

void UploadWorker::Wake()
{
    if (m_phase == Phase::Idle || m_phase == Phase::Waiting)
    {
        Plan();
    }
}

void UploadWorker::Resume()
{
    if (m_phase == Phase::Paused)
    {
        m_timer->stop();
        m_phase = Phase::Idle;
        m_state.Update([](UploadCounters& counters) { counters.paused = false; });
        Plan();
    }
}

void UploadWorker::Cancel()
{
    if (m_phase == Phase::Stopped)
    {
        return;
    }
    AbandonRequest();
    m_next.reset();
    m_timer->stop();
    m_phase = Phase::Idle;
    m_splitLimit = 0;
    m_backoff.Reset();
    m_state.Update(
        [](UploadCounters& counters)
        {
            counters.paused = false;
            counters.retryDelay = std::chrono::milliseconds(0);
        });
}

void UploadWorker::Shutdown()
{
    if (m_reply)
    {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply = nullptr;  // deleted with the network manager
        m_spool.Unpin();
    }
    if (m_timer)
    {
        m_timer->stop();
        m_requestTimer->stop();
    }
    delete m_network;
    m_network = nullptr;
    m_phase = Phase::Stopped;
    m_state.Notify();
    QThread::currentThread()->quit();
}

void UploadWorker::AbandonRequest()
{
    m_requestTimer->stop();
    if (m_reply)
    {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
        m_reply = nullptr;
        m_spool.Unpin();
    }
}

void UploadWorker::Plan()
{
    while (m_phase == Phase::Idle || m_phase == Phase::Waiting)
    {
        m_timer->stop();
        m_phase = Phase::Idle;
        if (!m_consent.load())
        {
            return;
        }
        const std::optional<Spool::Unsent> unsent = m_spool.NextUnsent();
        if (!unsent)
        {
            m_next.reset();
            m_state.Notify();
            return;
        }
        if (m_next && m_next->start == unsent->from && m_next->generation == unsent->generation)
        {
            m_current = std::move(m_next);
        }
        else
        {
            m_next.reset();
            if (!IsDue(*unsent))
            {
                m_spool.Unpin();
                return;
            }
            const std::size_t maxEvents = m_splitLimit
                                              ? std::min(m_splitLimit, m_options.maxBatchEvents)
                                              : m_options.maxBatchEvents;
            m_current = std::make_unique<Prepared>();
            if (!Prepare(*unsent, maxEvents, *m_current))
            {
                m_spool.Unpin();
                Retry({ReplyVerdict::Action::Retry, std::nullopt,
                       "cannot read the spool file " + unsent->path, "spool"});
                return;
            }
        }
        if (m_current->batch.events.empty())
        {
            // Nothing but damaged lines: passed over at once.
            m_spool.Commit(m_current->end, m_current->batch.consumedLines, m_current->generation);
            const auto damaged = m_current->batch.damagedLines;
            m_state.Update([damaged](UploadCounters& counters) { counters.skipped += damaged; });
            Reported();
            continue;
        }
        Post();
        return;
    }
}

bool UploadWorker::Prepare(const Spool::Unsent& unsent, std::size_t maxEvents,
                           Prepared& prepared) const
{
    const std::size_t maxBytes = m_learntMaxBytes
                                     ? std::min(m_learntMaxBytes, m_options.maxBatchBytes)
                                     : m_options.maxBatchBytes;
    if (!SegmentReader::Read(unsent.path, unsent.from.offset, unsent.end, maxBytes, prepared.data))
    {
        return false;
    }
    BuildBatch(prepared.data, std::max<std::size_t>(maxEvents, 1), *m_sink, prepared.batch);
    prepared.start = unsent.from;
    prepared.end = {unsent.from.segment, unsent.from.offset + prepared.batch.consumedBytes};
    prepared.generation = unsent.generation;
    prepared.gzipped = m_options.gzip && !prepared.batch.events.empty() &&
                       Gzip(prepared.batch.body, m_options.gzipLevel, prepared.body);
    if (!prepared.gzipped)
    {
        prepared.body =
            QByteArray(prepared.batch.body.data(), static_cast<int>(prepared.batch.body.size()));
    }
    std::string().swap(prepared.batch.body);  // the rows live on in `body`
    return true;
}

// While a batch is on its way (the network thread of Qt sends it), the next one is made, if it
// is due already: full, or the rest of a sealed segment, or asked for by Flush(). It is posted
// only if the spool's cursor reaches its start, after the reply.
void UploadWorker::PrepareNext()
{
    if (m_splitLimit > 0 || !m_current)
    {
        return;
    }
    const std::optional<Spool::Unsent> after = m_spool.UnsentAfter(m_current->end);
    if (!after || after->generation != m_current->generation)
    {
        return;
    }
    const std::uint64_t left =
        after->backlog - std::min(after->backlog, m_current->batch.consumedLines);
    if (!(m_state.flushers.load() > 0 || after->sealed || left >= m_options.maxBatchEvents ||
          after->end - after->from.offset >= m_options.maxBatchBytes))
    {
        return;
    }
    auto next = std::make_unique<Prepared>();
    if (Prepare(*after, m_options.maxBatchEvents, *next) && !next->batch.events.empty())
    {
        m_next = std::move(next);
    }
}

bool UploadWorker::IsDue(const Spool::Unsent& unsent)
{
    if (m_state.flushers.load() > 0 || unsent.sealed || m_splitLimit > 0 ||
        unsent.backlog >= m_options.maxBatchEvents ||
        unsent.end - unsent.from.offset >= m_options.maxBatchBytes)
    {
        return true;
    }
    std::string first;
    EventLineFields fields;
    if (!SegmentReader::ReadFirstLine(unsent.path, unsent.from.offset, unsent.end, first) ||
        !ReadEventLine(first, fields))
    {
        return true;
    }
    const auto maxAge = m_options.maxBatchAge.count();
    const std::int64_t age = NowMilliseconds() - fields.unixMilliseconds;
    if (age >= maxAge)
    {
        return true;
    }
    // Until the batch is old enough, only a full one wakes the worker.
    if (m_spool.WakeWhen(m_options.maxBatchEvents, m_options.maxBatchBytes))
    {
        return true;
    }
    m_phase = Phase::Waiting;
    m_timer->start(static_cast<int>(std::clamp<std::int64_t>(maxAge - age, 1, maxAge)));
    return false;
}

void UploadWorker::Post()
{
    QNetworkRequest request = m_sink->Request();
    if (m_current->gzipped)
    {
        request.setRawHeader("Content-Encoding", "gzip");
    }
    if (!m_consent.load())
    {
        m_spool.Unpin();  // withdrawn while the batch was made
        return;
    }
    m_timedOut = false;
    m_phase = Phase::Sending;
    QNetworkReply* const reply = m_network->post(request, m_current->body);
    m_reply = reply;
    connect(reply, &QNetworkReply::finished, this, [this, reply] { OnReplyFinished(reply); });
    m_requestTimer->start(static_cast<int>(m_options.requestTimeout.count()));
    PrepareNext();
}

void UploadWorker::OnReplyFinished(QNetworkReply* reply)
{
    reply->deleteLater();
    if (reply != m_reply)
    {
        return;
    }
    m_reply = nullptr;
    m_requestTimer->stop();
    m_phase = Phase::Idle;

    ReplyFacts facts;
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    facts.status = status.isValid() ? status.toInt() : 0;
    if (facts.status == 0)
    {
        facts.timedOut = m_timedOut;
        facts.tlsError = reply->error() == QNetworkReply::SslHandshakeFailedError;
        facts.networkError =
            m_timedOut ? QString("nothing within %1 ms").arg(m_options.requestTimeout.count())
                       : reply->errorString();
    }
    facts.body = reply->readAll();
    facts.retryAfter = reply->rawHeader("Retry-After");
    facts.refusesData = m_sink->RefusesData(facts.status, facts.body);
    const ReplyVerdict verdict = JudgeReply(facts, QDateTime::currentDateTimeUtc(), m_where);
    switch (verdict.action)
    {
        case ReplyVerdict::Action::Done:
            Succeed();
            break;
        case ReplyVerdict::Action::Retry:
            Retry(verdict);
            break;
        case ReplyVerdict::Action::Pause:
            Pause(verdict.kind, verdict.error);
            break;
        case ReplyVerdict::Action::Split:
            Refuse(verdict, facts.status);
            break;
    }
}

void UploadWorker::OnTimer()
{
    if (m_phase == Phase::Paused)
    {
        m_state.Update([](UploadCounters& counters) { counters.paused = false; });
    }
    else if (m_phase == Phase::BackingOff)
    {
        m_state.Update([](UploadCounters& counters)
                       { counters.retryDelay = std::chrono::milliseconds(0); });
    }
    if (m_phase != Phase::Sending && m_phase != Phase::Stopped)
    {
        m_phase = Phase::Idle;
        Plan();
    }
}

void UploadWorker::Succeed()
{
    if (!m_condition.empty())
    {
        LOG(INFO) << "Statistics upload to " << m_where << " works again";
        m_condition.clear();
    }
    if (!m_spool.Commit(m_current->end, m_current->batch.consumedLines, m_current->generation) &&
        !m_cursorSaveReported)
    {
        m_cursorSaveReported = true;
        LOG(WARNING) << "Statistics upload: the spool's cursor cannot be saved; after a crash "
                        "more than one batch would be sent again";
    }
    m_backoff.Reset();
    m_refusedInRow = 0;
    if (m_splitLimit > 0 && !Before(m_current->end, m_splitUntil))
    {
        m_splitLimit = 0;
    }
    const auto sent = m_current->batch.events.size();
    const auto damaged = m_current->batch.damagedLines;
    m_state.Update(
        [&](UploadCounters& counters)
        {
            counters.sent += sent;
            counters.skipped += damaged;
            counters.paused = false;
            counters.retryDelay = std::chrono::milliseconds(0);
        });
    Reported();
    Plan();
}

void UploadWorker::Retry(const ReplyVerdict& verdict)
{
    // The batch is made again from the spool for the next attempt: no memory held meanwhile.
    m_spool.Unpin();
    m_current.reset();
    m_next.reset();
    const std::chrono::milliseconds delay = m_backoff.Next(verdict.retryAfter);
    m_state.Update(
        [&](UploadCounters& counters)
        {
            ++counters.retried;
            counters.retryDelay = delay;
            counters.lastError = verdict.error;
        });
    ChangeCondition(
        verdict.kind,
        verdict.error + "; trying again with backoff (first wait " + Seconds(delay) + ")", false);
    m_phase = Phase::BackingOff;
    m_timer->start(static_cast<int>(delay.count()));
    Reported();
}

void UploadWorker::Pause(const std::string& kind, const std::string& error)
{
    m_spool.Unpin();
    m_current.reset();
    m_next.reset();
    m_state.Update(
        [&](UploadCounters& counters)
        {
            counters.paused = true;
            counters.retryDelay = std::chrono::milliseconds(0);
            counters.lastError = error;
        });
    ChangeCondition("pause " + kind,
                    error + "; upload paused, nothing is dropped (next attempt in " +
                        Seconds(m_options.pauseInterval) + " or on Resume())",
                    true);
    m_phase = Phase::Paused;
    m_timer->start(static_cast<int>(m_options.pauseInterval.count()));
    Reported();
}

void UploadWorker::Refuse(const ReplyVerdict& verdict, int status)
{
    m_next.reset();
    const Batch& batch = m_current->batch;
    if (batch.events.size() > 1)
    {
        m_spool.Unpin();
        if (m_splitLimit == 0 || Before(m_splitUntil, m_current->end))
        {
            m_splitUntil = m_current->end;
        }
        m_splitLimit = std::max<std::size_t>(1, batch.events.size() / 2);
        if (status == 413)
        {
            m_learntMaxBytes = std::max<std::size_t>(1, batch.consumedBytes / 2);
        }
        ChangeCondition("refused " + verdict.kind,
                        verdict.error + "; splitting the batch to find what is refused", false);
        Reported();
        Plan();
        return;
    }
    if (++m_refusedInRow >= kRefusedInRowBeforePause)
    {
        Pause(verdict.kind, "the store refused " + std::to_string(m_refusedInRow) +
                                " events in a row, the last with " + verdict.error);
        return;
    }
    DeadLetter(batch.events.front(), status, verdict.error);
    m_spool.Commit(m_current->end, batch.consumedLines, m_current->generation);
    m_splitLimit = 0;
    const auto damaged = batch.damagedLines;
    m_state.Update(
        [&](UploadCounters& counters)
        {
            ++counters.deadLettered;
            counters.skipped += damaged;
            counters.lastError = verdict.error;
        });
    ChangeCondition("refused " + verdict.kind,
                    verdict.error + "; the refused events go to " + m_deadLetters.CurrentPath(),
                    false);
    Reported();
    Plan();
}

void UploadWorker::DeadLetter(std::string_view event, int status, const std::string& error)
{
    std::string line = "{\"refused\":" + std::to_string(NowMilliseconds()) +
                       ",\"status\":" + std::to_string(status) + ",\"error\":";
    AppendJsonString(line, error);
    line += ",\"event\":";
    line += event;
    line += "}\n";
    if (!m_deadLetters.Append(line))
    {
        LOG(ERROR) << "Statistics upload: cannot write the dead-letter file "
                   << m_deadLetters.CurrentPath();
    }
}

void UploadWorker::ChangeCondition(const std::string& kind, const std::string& message, bool error)
{
    if (kind == m_condition)
    {
        return;
    }
    m_condition = kind;
    if (error)
    {
        LOG(ERROR) << "Statistics upload: " << message;
    }
    else
    {
        LOG(WARNING) << "Statistics upload: " << message;
    }
}

void UploadWorker::Reported()
{
    if (m_options.onAttempt)
    {
        m_options.onAttempt(Counters(m_state, m_spool));
    }
    m_state.Notify();
}

}  // namespace Velkor::Analytics
