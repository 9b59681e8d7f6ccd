#pragma once

#include "Core/EventPublisher.h"

namespace Velkor::Module::Editing
{

// Messages from the video editor to the recorder.
class IVECommunicationObserver
{
public:
    virtual ~IVECommunicationObserver() = default;

    // The editor asks the recorder to export the edited project.
    virtual void OnExportRequested() = 0;
};

// The editor's publisher, registered for its whole life.
using VECommunicationEventPublisher =
    Core::EventHandlerRegistrator<Core::EventPublisher<IVECommunicationObserver>>;

}  // namespace Velkor::Module::Editing
