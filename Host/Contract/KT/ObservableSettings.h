#pragma once

#include "HostExport.h"

#include <QVariantList>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Velkor::KT
{

// Told of every change of a settings field, with the field's name and its new value. A value is
// always handed over as a list: one element for a plain value or a flag, several for a compound
// value (e.g. a preset and its hotkey, or the three codec settings).
class ISettingsObserver
{
public:
    virtual ~ISettingsObserver() = default;

    virtual void OnSettingChanged(const std::string& field, const QVariantList& value) = 0;
};

// A settings object with a fixed set of named fields. Every Set() notifies the observers, on the
// calling thread, even when the value does not change. Safe to use from several threads.
class KT_HOST_EXPORT ObservableSettings
{
public:
    virtual ~ObservableSettings();

    const std::vector<std::string>& Fields() const;

    // Throws std::invalid_argument for a field this object does not have.
    void Set(const std::string& field, const QVariantList& value);
    // The field's last value; empty until it is first set.
    QVariantList Get(const std::string& field) const;

    void AddObserver(ISettingsObserver* observer);
    void RemoveObserver(ISettingsObserver* observer);
    std::size_t ObserverCount() const;

protected:
    explicit ObservableSettings(std::vector<std::string> fields);

    // Sets a field's value without telling anybody, for initial values.
    void Initialize(const std::string& field, const QVariantList& value);

private:
    Q_DISABLE_COPY(ObservableSettings)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT
