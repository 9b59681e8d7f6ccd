#include "KT/ObservableSettings.h"

#include "KT/ObserverList.h"

#include <map>
#include <mutex>
#include <stdexcept>

namespace Velkor::KT
{

class ObservableSettings::Private
{
public:
    explicit Private(std::vector<std::string> names) : fields(std::move(names))
    {
        for (const auto& field : fields)
        {
            values[field];
        }
    }

    QVariantList& ValueOf(const std::string& field)
    {
        const auto found = values.find(field);
        if (found == values.end())
        {
            throw std::invalid_argument("Unknown settings field: " + field);
        }
        return found->second;
    }

    const std::vector<std::string> fields;
    mutable std::mutex mutex;
    std::map<std::string, QVariantList> values;
    ObserverList<ISettingsObserver> observers;
};

ObservableSettings::ObservableSettings(std::vector<std::string> fields)
    : d(std::make_unique<Private>(std::move(fields)))
{
}

ObservableSettings::~ObservableSettings() = default;

const std::vector<std::string>& ObservableSettings::Fields() const
{
    return d->fields;
}

void ObservableSettings::Set(const std::string& field, const QVariantList& value)
{
    Initialize(field, value);
    d->observers.ForEach([&](ISettingsObserver* observer)
                         { observer->OnSettingChanged(field, value); });
}

QVariantList ObservableSettings::Get(const std::string& field) const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->ValueOf(field);
}

void ObservableSettings::Initialize(const std::string& field, const QVariantList& value)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->ValueOf(field) = value;
}

void ObservableSettings::AddObserver(ISettingsObserver* observer)
{
    d->observers.Add(observer);
}

void ObservableSettings::RemoveObserver(ISettingsObserver* observer)
{
    d->observers.Remove(observer);
}

std::size_t ObservableSettings::ObserverCount() const
{
    return d->observers.Count();
}

}  // namespace Velkor::KT
