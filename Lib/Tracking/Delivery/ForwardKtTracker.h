#pragma once

#include "Tracking/Events/IKtTracker.h"
#include "Tracking/Events/IKtTrackingEndpoint.h"

#include <QtGlobal>

#include <memory>
#include <vector>

namespace Velkor::App
{
class ICustomizationManager;
class ISessionId;
class ioPath;
}  // namespace Velkor::App

namespace Velkor::KT
{
class ProductSettings;
}

namespace Velkor::KT::Tracking
{

// The delivery stage at the end of the chain. Every event goes to the host's endpoints, in
// their order, and last to the application's analytics service, which receives it only while
// the product settings allow sending statistics (asked anew for every event). The analytics
// tracker comes from the analytics library's factory; when it gives none, events reach only
// the host's endpoints.
//
// Events are neither changed nor dropped. An endpoint that throws stops the delivery of that
// event and the exception reaches the caller of Track(). Track() holds no lock; concurrent
// calls are safe as far as the endpoints are.
class KT_TRACKING_EXPORT ForwardKtTracker : public IKtTracker
{
public:
    // Throws std::logic_error("NotNull can not initialized by null") when productSettings is
    // null. dataDirectory is where the analytics service keeps its data. The endpoints must not
    // be null.
    ForwardKtTracker(const std::shared_ptr<App::ICustomizationManager>& customization,
                     const std::shared_ptr<KT::ProductSettings>& productSettings,
                     const std::shared_ptr<App::ISessionId>& session,
                     const App::ioPath& dataDirectory,
                     const std::vector<std::shared_ptr<IKtTrackingEndpoint>>& endpoints);
    ~ForwardKtTracker() override;

    void Track(const Event& event) override;

private:
    Q_DISABLE_COPY(ForwardKtTracker)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
