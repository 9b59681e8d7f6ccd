#include "Analytics/UploadingApplicationTracker.h"

#include "Analytics/ClickHouseSink_p.h"
#include "Analytics/ConsentObserver_p.h"
#include "Analytics/EventLineFormat_p.h"
#include "Analytics/InstallationId_p.h"
#include "Analytics/NdjsonSink_p.h"
#include "Analytics/RotatingAppendFile_p.h"
#include "Analytics/Spool_p.h"
#include "Analytics/UploadState_p.h"
#include "Analytics/UploadUrl_p.h"
#include "Analytics/UploadWorker_p.h"

#include "KT/ProductSettings.h"

#include <QThread>

#include <algorithm>
#include <atomic>
#include <mutex>

namespace Velkor::Analytics
{

namespace
{

Spool::Limits LimitsOf(const UploadOptions& options)
{
    Spool::Limits limits;
    limits.capBytes = std::max<std::uint64_t>(options.spoolCapBytes, 1);
    limits.segmentBytes = std::clamp<std::uint64_t>(
        options.segmentBytes, 1, std::max<std::uint64_t>(limits.capBytes / 8, 1));
    return limits;
}

}  // namespace

class UploadingApplicationTracker::Private
{
public:
    explicit Private(const UploadOptions& options)
        : options(options), url(CheckedUploadUrl(options.url))
    {
        if (options.store == UploadOptions::Store::ClickHouse)
        {
            sink = std::make_unique<ClickHouseSink>(url, options);
        }
        else
        {
            sink = std::make_unique<NdjsonSink>(url, options);
        }
    }

    void WakeWorker()
    {
        std::lock_guard<std::mutex> lock(workerMutex);
        if (worker)
        {
            QMetaObject::invokeMethod(
                worker, [w = worker] { w->Wake(); }, Qt::QueuedConnection);
        }
    }

    template <class Function>
    void OnWorker(Function function)
    {
        std::lock_guard<std::mutex> lock(workerMutex);
        if (worker)
        {
            QMetaObject::invokeMethod(
                worker, [w = worker, function] { function(*w); }, Qt::QueuedConnection);
        }
    }

    void ConsentChanged(bool allowed)
    {
        consent.store(allowed);
        if (allowed)
        {
            spool->SetAccepting(true);
            WakeWorker();
            return;
        }
        spool->SetAccepting(false);
        spool->Discard();
        OnWorker([](UploadWorker& worker) { worker.Cancel(); });
        state.Notify();
    }

    // Waits for the backlog to empty, the upload to pause, the deadline, or with `toFailure`
    // the next failed attempt. Answers whether the backlog is empty.
    bool FlushFor(std::chrono::milliseconds timeout, bool toFailure)
    {
        if (!started.load() || stopped.load())
        {
            return spool && spool->GetCounts().backlog == 0;
        }
        const std::uint64_t retriedBefore = state.Get().retried;
        ++state.flushers;
        WakeWorker();
        state.WaitUntil(
            [&](const UploadCounters& counters)
            {
                return counters.paused || (toFailure && counters.retried > retriedBefore) ||
                       spool->GetCounts().backlog == 0;
            },
            std::chrono::steady_clock::now() + timeout);
        --state.flushers;
        return spool->GetCounts().backlog == 0;
    }

    void Stop()
    {
        if (!started.load() || stopped.exchange(true))
        {
            return;
        }
        FlushFor(options.shutdownTimeout, true);
        UploadWorker* stopping = nullptr;
        {
            std::lock_guard<std::mutex> lock(workerMutex);
            stopping = std::exchange(worker, nullptr);
        }
        QMetaObject::invokeMethod(
            stopping, [stopping] { stopping->Shutdown(); }, Qt::QueuedConnection);
        thread->wait();
        delete stopping;
        thread.reset();
    }

    const UploadOptions options;
    const QUrl url;
    std::unique_ptr<Sink> sink;

    std::mutex mutex;  // the line context and the line being made
    EventLineContext context;
    std::string line;
    bool initialized = false;

    std::unique_ptr<Spool> spool;
    std::unique_ptr<RotatingAppendFile> deadLetters;
    UploadState state;
    std::atomic<bool> consent{true};
    std::unique_ptr<ConsentObserver> consentObserver;

    std::mutex workerMutex;
    UploadWorker* worker = nullptr;
    std::unique_ptr<QThread> thread;
    std::atomic<bool> started{false};
    std::atomic<bool> stopped{false};
};

RefPtr<UploadingApplicationTracker> UploadingApplicationTracker::Create(
    const UploadOptions& options)
{
    class Counted final : public RefCounted<UploadingApplicationTracker>
    {
    public:
        explicit Counted(const UploadOptions& options) : RefCounted(options) {}
    };
    return RefPtr<UploadingApplicationTracker>(new Counted(options));
}

UploadingApplicationTracker::UploadingApplicationTracker(const UploadOptions& options)
    : d(std::make_unique<Private>(options))
{
}

UploadingApplicationTracker::~UploadingApplicationTracker()
{
    d->Stop();
    d->consentObserver.reset();
}

bool UploadingApplicationTracker::Track(const std::string& name, const Properties& properties)
{
    if (!d->started.load(std::memory_order_acquire))
    {
        return false;
    }
    Spool::Appended appended;
    {
        std::lock_guard<std::mutex> lock(d->mutex);
        d->line.clear();
        AppendEventLine(d->line, d->context, name, properties);
        appended = d->spool->Append(d->line);
    }
    if (appended.wake)
    {
        d->WakeWorker();
    }
    return appended.stored;
}

bool UploadingApplicationTracker::Track(const std::string& name, const std::string& key,
                                        const std::string& value)
{
    return Track(name, Properties{{key, value}});
}

void UploadingApplicationTracker::AddDefaultProperties(const Properties& properties)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->context.defaults.insert(properties.begin(), properties.end());
}

bool UploadingApplicationTracker::Initialize(const Properties& defaultProperties,
                                             const std::string& identity,
                                             const std::string& dataDirectory)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    if (d->initialized || dataDirectory.empty())
    {
        return false;
    }
    auto spool = std::make_unique<Spool>(LimitsOf(d->options));
    auto deadLetters =
        std::make_unique<RotatingAppendFile>("dead-letter", d->options.deadLetterBytes, 2);
    if (!spool->Open(dataDirectory) || !deadLetters->Open(dataDirectory))
    {
        return false;
    }
    d->spool = std::move(spool);
    d->deadLetters = std::move(deadLetters);
    d->context.identity = identity;
    d->context.installation = d->options.installationId.empty()
                                  ? LoadOrCreateInstallationId(dataDirectory)
                                  : d->options.installationId;
    d->context.version = d->options.applicationVersion;
    d->context.defaults.insert(defaultProperties.begin(), defaultProperties.end());

    if (d->options.productSettings)
    {
        // Off before the start as well: what an earlier run left unsent goes.
        if (!d->options.productSettings->IsAllowSendStatistics())
        {
            d->consent.store(false);
            d->spool->SetAccepting(false);
            d->spool->Discard();
        }
        d->consentObserver = std::make_unique<ConsentObserver>(
            d->options.productSettings, [this](bool allowed) { d->ConsentChanged(allowed); });
    }

    d->thread = std::make_unique<QThread>();
    d->thread->setObjectName("KtAnalyticsUpload");
    auto* worker = new UploadWorker(*d->spool, *d->deadLetters, std::move(d->sink), d->options,
                                    d->url, d->state, d->consent);
    worker->moveToThread(d->thread.get());
    {
        std::lock_guard<std::mutex> workerLock(d->workerMutex);
        d->worker = worker;
    }
    d->thread->start();
    QMetaObject::invokeMethod(
        worker, [worker] { worker->Start(); }, Qt::QueuedConnection);
    d->initialized = true;
    d->started.store(true, std::memory_order_release);
    return true;
}

UploadCounters UploadingApplicationTracker::Counters() const
{
    if (!d->started.load(std::memory_order_acquire))
    {
        return d->state.Get();
    }
    return UploadWorker::Counters(d->state, *d->spool);
}

bool UploadingApplicationTracker::Flush(std::chrono::milliseconds timeout)
{
    return d->FlushFor(timeout, false);
}

void UploadingApplicationTracker::Resume()
{
    // At once, so that a Flush() right after it waits for the upload instead of the pause.
    d->state.Update([](UploadCounters& counters) { counters.paused = false; });
    d->OnWorker([](UploadWorker& worker) { worker.Resume(); });
}

void UploadingApplicationTracker::Stop()
{
    d->Stop();
}

}  // namespace Velkor::Analytics
