#include "App/ApplicationTrackerWrapper.h"

#include "App/IProductSettingsManager.h"
#include "KT/ProductSettings.h"

#include <QString>
#include <QSysInfo>

#include <mutex>
#include <stdexcept>
#include <utility>

namespace Velkor::App
{

using Analytics::IApplicationTracker;
using Analytics::Properties;
using Analytics::RefPtr;

class ApplicationTrackerWrapper::Private
{
public:
    Private(std::shared_ptr<IProductSettingsManager> settings, int options)
        : settings(std::move(settings)), options(options)
    {
    }

    void AddProperties(Properties& properties) const
    {
        auto assignNonEmpty = [&properties](const char* key, const std::string& value)
        {
            if (!value.empty())
            {
                properties[key] = value;
            }
        };
        assignNonEmpty("PRODUCT_NAME", settings->GetProductName());
        assignNonEmpty("PRODUCT_VERSION", settings->GetProductVersion());
        if (options & ExcludeOwnFillers)
        {
            return;
        }
        assignNonEmpty("OS_NAME", QSysInfo::prettyProductName().toStdString());
        assignNonEmpty("CPU_ARCHITECTURE", QSysInfo::currentCpuArchitecture().toStdString());
        if (const auto productSettings = settings->GetProductSettings())
        {
            assignNonEmpty("APP_LOCALE", productSettings->GetCurrentLocale());
        }
    }

    const std::shared_ptr<IProductSettingsManager> settings;
    const int options;

    mutable std::mutex successorMutex;
    RefPtr<IApplicationTracker> successor;
};

RefPtr<ApplicationTrackerWrapper> ApplicationTrackerWrapper::Create(
    std::shared_ptr<IProductSettingsManager> settings, int options)
{
    class Counted final : public Analytics::RefCounted<ApplicationTrackerWrapper>
    {
    public:
        Counted(std::shared_ptr<IProductSettingsManager> settings, int options)
            : RefCounted(std::move(settings), options)
        {
        }
    };
    return RefPtr<ApplicationTrackerWrapper>(new Counted(std::move(settings), options));
}

ApplicationTrackerWrapper::ApplicationTrackerWrapper(
    std::shared_ptr<IProductSettingsManager> settings, int options)
    : d(std::make_unique<Private>(std::move(settings), options))
{
    if (!d->settings)
    {
        throw std::invalid_argument("ApplicationTrackerWrapper needs a product settings manager");
    }
}

ApplicationTrackerWrapper::~ApplicationTrackerWrapper() = default;

void ApplicationTrackerWrapper::SetSuccessor(const RefPtr<IApplicationTracker>& successor)
{
    std::lock_guard<std::mutex> lock(d->successorMutex);
    d->successor = successor;
}

RefPtr<IApplicationTracker> ApplicationTrackerWrapper::Successor() const
{
    std::lock_guard<std::mutex> lock(d->successorMutex);
    return d->successor;
}

bool ApplicationTrackerWrapper::Track(const std::string& name, const Properties& properties)
{
    const auto successor = Successor();
    if (!successor)
    {
        return false;
    }
    Properties enriched = properties;
    d->AddProperties(enriched);
    return successor->Track(name, enriched);
}

bool ApplicationTrackerWrapper::Track(const std::string& name, const std::string& key,
                                      const std::string& value)
{
    return Track(name, Properties{{key, value}});
}

void ApplicationTrackerWrapper::AddDefaultProperties(const Properties& properties)
{
    if (const auto successor = Successor())
    {
        successor->AddDefaultProperties(properties);
    }
}

bool ApplicationTrackerWrapper::Initialize(const Properties& defaultProperties,
                                           const std::string& identity,
                                           const std::string& dataDirectory)
{
    const auto successor = Successor();
    return successor && successor->Initialize(defaultProperties, identity, dataDirectory);
}

}  // namespace Velkor::App
