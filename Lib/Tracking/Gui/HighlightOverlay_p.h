#pragma once

#include "Tracking/Gui/HighlightMarks_p.h"

#include <QColor>
#include <QRegion>
#include <QWidget>

#include <vector>

namespace Velkor::KT::Tracking::Gui
{

// The colour of each outline style: magenta, orange, blue and grey, none of them a colour that
// widget styles paint with.
QColor OutlineColor(OutlineStyle style);

// Keeps a window of the library's own out of the host's way: a frameless tool-tip window (no
// task bar entry, no window manager decoration, above the host's windows) that takes no focus
// and no input, does not keep the application running when the host's windows are closed, and
// carries the attached marker, so that the GUI handler never attaches it as a host window.
// Call before the window is shown.
void PrepareOverlayWindow(QWidget* window);
// Shows a prepared window, if hidden, so that it lets the pointer through to the host's windows.
void ShowOverlayWindow(QWidget* window);

// The outlines over one window of the host: a window of the same geometry, shaped to the
// outlines themselves, so that everything between them stays the host's.
class HighlightOverlay : public QWidget
{
public:
    HighlightOverlay();

    // Covers `geometry` and draws `outlines` but where `covered` (all in global coordinates);
    // hides when nothing is left to draw. Reshapes and repaints only when something changed.
    void Show(const QRect& geometry, const std::vector<Outline>& outlines, const QRegion& covered);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    // Solid outlines are two pixels wide, dashed ones one pixel, inside the rectangle.
    template <class Fill>
    void Draw(const Fill& fill) const;

    // In the overlay's coordinates.
    std::vector<Outline> m_outlines;
    QRegion m_visible;
    // Where the outlines are drawn: the window's shape.
    QRegion m_shape;
};

}  // namespace Velkor::KT::Tracking::Gui
