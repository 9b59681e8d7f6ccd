#pragma once

#include "App/ioPath.h"
#include "HostReferenceExport.h"
#include "KT/Service/AbstractSharingManager.h"

namespace Velkor::KT::Service::Sharing
{

// Reference sharing manager for one target.
class KT_HOST_REFERENCE_EXPORT SharingManager : public AbstractSharingManager
{
    Q_OBJECT

public:
    explicit SharingManager(int target, QObject* parent = nullptr);

    int GetSharingTarget() const override;
    void Finish(const App::ioPath& file, bool success);

private:
    const int m_target;
};

}  // namespace Velkor::KT::Service::Sharing
