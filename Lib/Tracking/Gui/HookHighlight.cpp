#include "Tracking/Gui/HookHighlight.h"

#include "Tracking/Gui/HighlightMarks_p.h"
#include "Tracking/Gui/HighlightOverlay_p.h"

#include <QApplication>
#include <QCursor>
#include <QLabel>
#include <QPointer>
#include <QRegion>
#include <QScreen>
#include <QTimer>
#include <QToolTip>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace Velkor::KT::Tracking
{

namespace
{

constexpr int kRefreshMilliseconds = 200;

qint64 Area(const QRect& rect)
{
    return qint64(rect.width()) * rect.height();
}

}  // namespace

class HookHighlight::Private
{
public:
    using Layout = std::map<QWidget*, std::vector<Gui::Outline>>;

    Private()
    {
        timer.setInterval(kRefreshMilliseconds);
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] { Refresh(); });
    }

    void Refresh()
    {
        const Layout layout = marks->OutlinesByWindow(unhooked);
        // A window the user brought up may have been stacked over the outlines.
        QWidget* const active = QApplication::activeWindow();
        const bool raise = active != activeWindow;
        activeWindow = active;
        covered = Covered(layout, active);

        // Overlays of windows that no longer show outlines go.
        std::vector<Over> kept;
        for (const auto& [window, outlines] : layout)
        {
            const auto old =
                std::find_if(overlays.begin(), overlays.end(),
                             [window = window](const Over& over) { return over.window == window; });
            kept.push_back(old != overlays.end()
                               ? std::move(*old)
                               : Over{window, std::make_unique<Gui::HighlightOverlay>()});
            Gui::HighlightOverlay& overlay = *kept.back().overlay;
            const bool wasVisible = overlay.isVisible();
            overlay.Show(window->geometry(), outlines, covered[window]);
            if (raise && wasVisible)
            {
                overlay.raise();
            }
        }
        overlays = std::move(kept);
        Hover(layout);
    }

    // What covers each window, as far as the toolkit tells: the open pop-ups cover every other
    // window, and the active window all but the pop-ups. The outlines stay off those parts, so
    // that a window in the background does not draw over the one in front.
    static std::map<QWidget*, QRegion> Covered(const Layout& layout, QWidget* active)
    {
        QRegion popups;
        for (QWidget* window : QApplication::topLevelWidgets())
        {
            if (window->windowType() == Qt::Popup && window->isVisible())
            {
                popups += window->geometry();
            }
        }
        std::map<QWidget*, QRegion> covered;
        for (const auto& [window, outlines] : layout)
        {
            if (window->windowType() == Qt::Popup)
            {
                continue;
            }
            covered[window] = popups;
            if (active && window != active)
            {
                covered[window] += active->frameGeometry();
            }
        }
        return covered;
    }

    // The entries behind the smallest outline under the mouse pointer, next to it.
    void Hover(const Layout& layout)
    {
        const QPoint position = QCursor::pos();
        const Gui::Outline* under = nullptr;
        for (const auto& [window, outlines] : layout)
        {
            if (covered[window].contains(position))
            {
                continue;
            }
            for (const Gui::Outline& outline : outlines)
            {
                if (outline.rect.contains(position) &&
                    (!under || Area(outline.rect) < Area(under->rect)))
                {
                    under = &outline;
                }
            }
        }
        if (!under)
        {
            if (info)
            {
                info->hide();
            }
            return;
        }
        if (!info)
        {
            info = std::make_unique<QLabel>();
            Gui::PrepareOverlayWindow(info.get());
            info->setTextFormat(Qt::PlainText);
            info->setPalette(QToolTip::palette());
            info->setAutoFillBackground(true);
            info->setFrameStyle(QFrame::Box | QFrame::Plain);
            info->setMargin(4);
        }
        if (info->text() != under->text)
        {
            info->setText(under->text);
            info->adjustSize();
        }
        QRect place(position + QPoint(16, 16), info->size());
        if (const QScreen* screen = QGuiApplication::screenAt(position))
        {
            const QRect screenRect = screen->availableGeometry();
            place.moveRight(qMin(place.right(), screenRect.right()));
            place.moveBottom(qMin(place.bottom(), screenRect.bottom()));
        }
        info->move(place.topLeft());
        Gui::ShowOverlayWindow(info.get());
    }

    void Hide()
    {
        timer.stop();
        overlays.clear();
        info.reset();
    }

    struct Over
    {
        QPointer<QWidget> window;
        std::unique_ptr<Gui::HighlightOverlay> overlay;
    };

    const std::shared_ptr<Gui::HighlightMarks> marks = std::make_shared<Gui::HighlightMarks>();
    bool shown = false;
    bool unhooked = true;
    QTimer timer;
    QPointer<QWidget> activeWindow;
    std::map<QWidget*, QRegion> covered;
    // One for each window with outlines; the guarded pointer tells a destroyed window from
    // another made at its address.
    std::vector<Over> overlays;
    std::unique_ptr<QLabel> info;
};

HookHighlight::HookHighlight() : d(std::make_unique<Private>()) {}

HookHighlight::~HookHighlight() = default;

void HookHighlight::AddReport(const AttachReport& report)
{
    d->marks->Add(report);
}

AttachReportSink HookHighlight::ReportSink(AttachReportSink next)
{
    return [marks = std::weak_ptr<Gui::HighlightMarks>(d->marks),
            next = std::move(next)](const AttachReport& report)
    {
        if (const auto kept = marks.lock())
        {
            kept->Add(report);
        }
        if (next)
        {
            next(report);
        }
    };
}

void HookHighlight::SetShown(bool shown)
{
    d->shown = shown;
    if (!shown)
    {
        d->Hide();
        return;
    }
    d->Refresh();
    d->timer.start();
}

bool HookHighlight::IsShown() const
{
    return d->shown;
}

void HookHighlight::SetUnhookedShown(bool shown)
{
    d->unhooked = shown;
    if (d->shown)
    {
        d->Refresh();
    }
}

bool HookHighlight::IsUnhookedShown() const
{
    return d->unhooked;
}

}  // namespace Velkor::KT::Tracking
