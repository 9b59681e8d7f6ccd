#include "Analytics/JsonLinesApplicationTracker.h"

#include "Analytics/EventLineFormat_p.h"
#include "Analytics/RotatingAppendFile_p.h"

#include <mutex>

namespace Velkor::Analytics
{

class JsonLinesApplicationTracker::Private
{
public:
    explicit Private(const Options& options)
        : files(options.baseName, options.maxFileBytes, options.maxFiles)
    {
    }

    mutable std::mutex mutex;
    RotatingAppendFile files;
    bool initialized = false;
    EventLineContext context;
    std::string line;
};

RefPtr<JsonLinesApplicationTracker> JsonLinesApplicationTracker::Create()
{
    return Create(Options());
}

RefPtr<JsonLinesApplicationTracker> JsonLinesApplicationTracker::Create(const Options& options)
{
    class Counted final : public RefCounted<JsonLinesApplicationTracker>
    {
    public:
        explicit Counted(const Options& options) : RefCounted(options) {}
    };
    return RefPtr<JsonLinesApplicationTracker>(new Counted(options));
}

JsonLinesApplicationTracker::JsonLinesApplicationTracker(const Options& options)
    : d(std::make_unique<Private>(options))
{
}

JsonLinesApplicationTracker::~JsonLinesApplicationTracker() = default;

bool JsonLinesApplicationTracker::Track(const std::string& name, const Properties& properties)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    if (!d->initialized)
    {
        return false;
    }
    d->line.clear();
    AppendEventLine(d->line, d->context, name, properties);
    return d->files.Append(d->line);
}

bool JsonLinesApplicationTracker::Track(const std::string& name, const std::string& key,
                                        const std::string& value)
{
    return Track(name, Properties{{key, value}});
}

void JsonLinesApplicationTracker::AddDefaultProperties(const Properties& properties)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->context.defaults.insert(properties.begin(), properties.end());
}

bool JsonLinesApplicationTracker::Initialize(const Properties& defaultProperties,
                                             const std::string& identity,
                                             const std::string& dataDirectory)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    if (d->initialized || dataDirectory.empty())
    {
        return false;
    }
    if (!d->files.Open(dataDirectory))
    {
        return false;
    }
    d->context.identity = identity;
    d->context.defaults.insert(defaultProperties.begin(), defaultProperties.end());
    d->initialized = true;
    return true;
}

std::string JsonLinesApplicationTracker::CurrentFilePath() const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->initialized ? d->files.CurrentPath() : std::string();
}

}  // namespace Velkor::Analytics
