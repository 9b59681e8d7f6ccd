#include "Tracking/Instances/SharingObserver_p.h"

#include "Tracking/Events/IKtTracker.h"
#include "Tracking/Instances/ValueCallback_p.h"
#include "Tracking/Instances/ValueTexts_p.h"

#include <QFileInfo>

namespace Velkor::KT::Tracking
{

SharingObserver::SharingObserver(KT::Service::Sharing::AbstractSharingManager* manager,
                                 IKtTracker* tracker, const Config::AbstractSharing& section)
    : m_manager(manager),
      m_tracker(tracker),
      m_configured(section.sharingFinish().present()),
      m_element(section.sharingFinish() ? *section.sharingFinish()
                                        : Config::SharingFinishEvent(std::string())),
      m_event(m_configured ? PrebuiltEvent(m_element) : Event{})
{
}

SharingObserver::~SharingObserver() = default;

void SharingObserver::Attach()
{
    m_receiver = std::make_unique<QObject>();
    QObject::connect(
        m_manager, &KT::Service::Sharing::AbstractSharingManager::SharingFinished, m_receiver.get(),
        [this](const App::ioPath& file, bool success) { OnSharingFinished(file, success); });
}

void SharingObserver::Detach()
{
    m_receiver.reset();
}

void SharingObserver::OnSharingFinished(const App::ioPath& file, bool success)
{
    if (!m_configured || m_event.name.empty())
    {
        return;
    }
    Event event = m_event;
    if (m_element.method())
    {
        event.params[*m_element.method()] = SharingTargetText(m_manager->GetSharingTarget());
    }
    if (m_element.result())
    {
        event.params[*m_element.result()] = success ? "SUCCESS" : "FAILURE";
    }
    if (m_element.type())
    {
        const QString suffix = QFileInfo(file.ToQString()).suffix().toLower();
        event.params[*m_element.type()] =
            suffix.isEmpty() ? std::string() : "." + suffix.toStdString();
    }
    m_tracker->Track(event);
}

}  // namespace Velkor::KT::Tracking
