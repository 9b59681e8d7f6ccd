#include "Tracking/Gui/HighlightOverlay_p.h"

#include "Tracking/Gui/AttachedMarker_p.h"

#include <QBitmap>
#include <QPainter>
#include <QWindow>

#include <utility>

namespace Velkor::KT::Tracking::Gui
{

namespace
{

constexpr int kSolidWidth = 2;
constexpr int kDash = 4;
constexpr int kGap = 3;

bool IsSolid(OutlineStyle style)
{
    return style == OutlineStyle::Hooked || style == OutlineStyle::HookedTwice;
}

}  // namespace

QColor OutlineColor(OutlineStyle style)
{
    switch (style)
    {
        case OutlineStyle::Unhooked:
            return QColor(128, 128, 128);
        case OutlineStyle::Found:
            return QColor(0, 150, 255);
        case OutlineStyle::Hooked:
            return QColor(255, 0, 200);
        case OutlineStyle::HookedTwice:
            return QColor(255, 140, 0);
    }
    return QColor();
}

void PrepareOverlayWindow(QWidget* window)
{
    window->setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                           Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint);
    window->setAttribute(Qt::WA_ShowWithoutActivating);
    window->setAttribute(Qt::WA_TransparentForMouseEvents);
    window->setAttribute(Qt::WA_QuitOnClose, false);
    MarkLibraryWindow(window);
}

template <class Fill>
void HighlightOverlay::Draw(const Fill& fill) const
{
    for (const Outline& outline : m_outlines)
    {
        const QRect& r = outline.rect;
        if (IsSolid(outline.style))
        {
            const int w = qMin(kSolidWidth, qMin(r.width(), r.height()));
            fill(QRect(r.left(), r.top(), r.width(), w), outline.style);
            fill(QRect(r.left(), r.bottom() - w + 1, r.width(), w), outline.style);
            fill(QRect(r.left(), r.top(), w, r.height()), outline.style);
            fill(QRect(r.right() - w + 1, r.top(), w, r.height()), outline.style);
            continue;
        }
        for (int x = r.left(); x <= r.right(); x += kDash + kGap)
        {
            const int length = qMin(kDash, r.right() - x + 1);
            fill(QRect(x, r.top(), length, 1), outline.style);
            fill(QRect(x, r.bottom(), length, 1), outline.style);
        }
        for (int y = r.top(); y <= r.bottom(); y += kDash + kGap)
        {
            const int length = qMin(kDash, r.bottom() - y + 1);
            fill(QRect(r.left(), y, 1, length), outline.style);
            fill(QRect(r.right(), y, 1, length), outline.style);
        }
    }
}

void ShowOverlayWindow(QWidget* window)
{
    if (window->isVisible())
    {
        return;
    }
    window->show();
    // An X11 window of Qt's can come out of showing with input shaped like its output, taking
    // the pointer from the host window below; setting the flag again on the shown window holds.
    QWindow* const handle = window->windowHandle();
    const Qt::WindowFlags flags = handle->flags();
    handle->setFlags(flags & ~Qt::WindowTransparentForInput);
    handle->setFlags(flags);
}

HighlightOverlay::HighlightOverlay()
{
    PrepareOverlayWindow(this);
}

void HighlightOverlay::Show(const QRect& geometry, const std::vector<Outline>& outlines,
                            const QRegion& covered)
{
    std::vector<Outline> local;
    local.reserve(outlines.size());
    for (const Outline& outline : outlines)
    {
        local.push_back({outline.rect.translated(-geometry.topLeft()), outline.style, QString()});
    }
    const QRegion visible =
        QRegion(QRect(QPoint(0, 0), geometry.size())) - covered.translated(-geometry.topLeft());
    if (local != m_outlines || visible != m_visible)
    {
        m_outlines = std::move(local);
        m_visible = visible;
        QBitmap shape(geometry.size());
        shape.fill(Qt::color0);
        QPainter painter(&shape);
        painter.setClipRegion(m_visible);
        Draw([&](const QRect& rect, OutlineStyle) { painter.fillRect(rect, Qt::color1); });
        painter.end();
        m_shape = QRegion(shape);
        // An empty mask would be no mask at all: the whole window would show.
        if (!m_shape.isEmpty())
        {
            setMask(m_shape);
        }
        update();
    }
    if (m_shape.isEmpty())
    {
        hide();
        return;
    }
    if (geometry != this->geometry())
    {
        setGeometry(geometry);
    }
    ShowOverlayWindow(this);
}

void HighlightOverlay::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setClipRegion(m_visible);
    Draw([&](const QRect& rect, OutlineStyle style)
         { painter.fillRect(rect, OutlineColor(style)); });
}

}  // namespace Velkor::KT::Tracking::Gui
