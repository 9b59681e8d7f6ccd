#pragma once

#include "Tracking/Gui/HighlightMarks.h"

#include <QColor>
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

    // Covers `geometry` (global) and draws `outlines` (global coordinates); hides when there
    // are none. Reshapes and repaints only what changed.
    void Show(const QRect& geometry, const std::vector<Outline>& outlines);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    // Solid outlines are two pixels wide, dashed ones one pixel, inside the rectangle.
    template <class Fill>
    void Draw(const Fill& fill) const;

    std::vector<Outline> m_outlines;  // in the overlay's coordinates
};

}  // namespace Velkor::KT::Tracking::Gui
