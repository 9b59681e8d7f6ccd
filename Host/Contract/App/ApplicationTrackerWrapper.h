#pragma once

#include "Analytics/IApplicationTracker.h"
#include "HostExport.h"

#include <memory>

namespace Velkor::App
{

class IProductSettingsManager;

// The application core's own tracking layer. It stands in front of another application tracker
// (its successor), adds the application core's properties to every event and passes the event
// on, once, to the successor:
// - "PRODUCT_NAME" and "PRODUCT_VERSION" from the product settings manager, when not empty;
// - unless ExcludeOwnFillers is given, facts of its own fillers: "OS_NAME",
//   "CPU_ARCHITECTURE" and, when the user chose one, "APP_LOCALE".
// Its properties are assigned, so they replace event properties with the same key. Without a
// successor an event goes nowhere and Track() answers false. Default properties and
// initialisation are passed to the successor.
class KT_HOST_EXPORT ApplicationTrackerWrapper : public Analytics::IApplicationTracker
{
public:
    enum Option
    {
        NoOptions = 0,
        ExcludeOwnFillers = 1,
    };

    static Analytics::RefPtr<ApplicationTrackerWrapper> Create(
        std::shared_ptr<IProductSettingsManager> settings, int options = NoOptions);

    void SetSuccessor(const Analytics::RefPtr<Analytics::IApplicationTracker>& successor);

    bool Track(const std::string& name, const Analytics::Properties& properties) override;
    bool Track(const std::string& name, const std::string& key, const std::string& value) override;
    void AddDefaultProperties(const Analytics::Properties& properties) override;
    bool Initialize(const Analytics::Properties& defaultProperties, const std::string& identity,
                    const std::string& dataDirectory) override;

protected:
    ApplicationTrackerWrapper(std::shared_ptr<IProductSettingsManager> settings, int options);
    ~ApplicationTrackerWrapper() override;

private:
    ApplicationTrackerWrapper(const ApplicationTrackerWrapper&) = delete;
    ApplicationTrackerWrapper& operator=(const ApplicationTrackerWrapper&) = delete;

    Analytics::RefPtr<Analytics::IApplicationTracker> Successor() const;

    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::App
