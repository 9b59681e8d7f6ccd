#pragma once

#include <QObject>
#include <QVariant>

namespace Velkor::KT::Tracking
{

// An attached object carries this dynamic property and is never attached again.
inline constexpr const char* AttachedMarker = "GuiElementAutoAttacher_isAttached";

inline bool IsAttached(const QObject* object)
{
    return object->property(AttachedMarker).isValid();
}

inline void MarkAttached(QObject* object)
{
    object->setProperty(AttachedMarker, true);
}

}  // namespace Velkor::KT::Tracking
