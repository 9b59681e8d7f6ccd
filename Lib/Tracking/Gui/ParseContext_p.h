#pragma once

class QObject;

namespace Velkor::KT::Tracking
{

class IKtTracker;
class QtEventHandler;

namespace Gui
{

// What the hooks of one attach work with; none of it is owned. The event handler owns the slot
// objects and event registrations, so that they live until it is destroyed. With a `target`,
// only the target gets hooks of its own.
struct ParseContext
{
    IKtTracker* tracker;
    QtEventHandler* eventHandler;
    QObject* target;

    bool GetsOwnHooks(const QObject* match) const { return !target || target == match; }
};

}  // namespace Gui

}  // namespace Velkor::KT::Tracking
