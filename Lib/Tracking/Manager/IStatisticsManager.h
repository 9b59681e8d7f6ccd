#pragma once

#include "Tracking/TrackingExport.h"

class QObject;

namespace Velkor::KT::Tracking
{

// What a host may ask of the statistics facade once it exists: attaching GUI tracking to its
// windows and objects, and service tracking to its registered service objects.
class KT_TRACKING_EXPORT IStatisticsManager
{
public:
    virtual ~IStatisticsManager();

    // Attaches every top-level widget of the application, then every action of those widgets
    // (an action shared by several windows once).
    virtual void AttachAllTopLevelWindows() = 0;
    // `root` is where the search for configured objects starts; only `target` gets hooks of its
    // own and is marked as attached.
    virtual void AttachQObject(QObject* root, QObject* target) = 0;
    virtual void AttachQObject(QObject* root) = 0;
    // Attaches observers to the service and settings objects in the instance registry.
    virtual void AttachInstances() = 0;
};

}  // namespace Velkor::KT::Tracking
