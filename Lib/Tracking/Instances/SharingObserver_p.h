#pragma once

#include "KT/Service/AbstractSharingManager.h"
#include "Tracking/Instances/IObserver_p.h"
#include "Tracking/Instances/ParseContext_p.h"

#include "Tracking/Config/KtmStat.hxx"

#include <QObject>

#include <memory>

namespace Velkor::KT::Tracking
{

// Observer of a sharing manager, through its SharingFinished signal. Text forms chosen here:
// `result` "SUCCESS" or "FAILURE" by the signal's flag; `type` the shared file's extension with
// its dot, in lower case (".mp4"), or empty for a file without one. The file's name and folder
// are never reported; the filter's rules classify the extension.
class SharingObserver : public BadMemoryManagment::IObserver
{
public:
    SharingObserver(KT::Service::Sharing::AbstractSharingManager* manager, IKtTracker* tracker,
                    const Config::AbstractSharing& section);
    ~SharingObserver() override;

    void Attach();
    void Detach() override;

    void OnSharingFinished(const App::ioPath& file, bool success);

private:
    KT::Service::Sharing::AbstractSharingManager* const m_manager;
    IKtTracker* const m_tracker;
    const bool m_configured;
    Config::SharingFinishEvent m_element;
    const Event m_event;
    // Receiver of the connection: destroying it ends the connection even if the manager lives on.
    std::unique_ptr<QObject> m_receiver;
};

}  // namespace Velkor::KT::Tracking
