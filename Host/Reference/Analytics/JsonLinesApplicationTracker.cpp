#include "Analytics/JsonLinesApplicationTracker.h"

#include "Analytics/EventLineFormat.h"
#include "Analytics/RotatingAppendFile.h"

#include <filesystem>
#include <mutex>
#include <system_error>

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
    std::string identity;
    Properties defaults;
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
    return d->files.Append(FormatEventLine(d->identity, d->defaults, name, properties));
}

bool JsonLinesApplicationTracker::Track(const std::string& name, const std::string& key,
                                        const std::string& value)
{
    return Track(name, Properties{{key, value}});
}

void JsonLinesApplicationTracker::AddDefaultProperties(const Properties& properties)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->defaults.insert(properties.begin(), properties.end());
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
    std::error_code error;
    std::filesystem::create_directories(dataDirectory, error);
    if (error && !std::filesystem::is_directory(dataDirectory))
    {
        return false;
    }
    if (!d->files.Open(dataDirectory))
    {
        return false;
    }
    d->identity = identity;
    d->defaults.insert(defaultProperties.begin(), defaultProperties.end());
    d->initialized = true;
    return true;
}

std::string JsonLinesApplicationTracker::CurrentFilePath() const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->initialized ? d->files.CurrentPath() : std::string();
}

}  // namespace Velkor::Analytics
