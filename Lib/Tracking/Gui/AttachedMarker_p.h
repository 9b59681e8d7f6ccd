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

// The library's own windows (the viewer, the highlight's overlays) carry this property as well
// as the attached marker: they are never attached, and tree dumps leave them out.
inline constexpr const char* LibraryWindowMarker = "KtTracking_libraryWindow";

inline void MarkLibraryWindow(QObject* window)
{
    MarkAttached(window);
    window->setProperty(LibraryWindowMarker, true);
}

inline bool IsLibraryWindow(const QObject* object)
{
    return object->property(LibraryWindowMarker).isValid();
}

}  // namespace Velkor::KT::Tracking
