#include "Tracking/Delivery/DebugKtTracker.h"

#include "Tracking/Events/EventText.h"
#include "Tracking/Gui/AttachedMarker_p.h"

#include "Util/FunctionForwarder.h"

#include <glog/logging.h>

#include <QListWidget>
#include <QPointer>
#include <QString>

#include <string>

namespace Velkor::KT::Tracking
{

namespace
{

const char kStyleSheet[] =
    "color: black; background: white; font-family: \"Courier\"; font-size: 12px;";

}  // namespace

class DebugKtTracker::Private
{
public:
    void Show(const Event& event)
    {
        const std::string text = EventText(event);
        LOG(INFO) << "Stat:" << text;

        if (!window)
        {
            window = new QListWidget();
            window->setWindowFlags(Qt::Window);
            // A window for developers: closing the host's last window still ends the host.
            window->setAttribute(Qt::WA_QuitOnClose, false);
            // Never attached, never dumped: its items are the events themselves.
            MarkLibraryWindow(window);
            window->setStyleSheet(QString::fromLatin1(kStyleSheet));
            window->resize(640, 480);
        }
        if (!window->isVisible())
        {
            window->show();
        }
        auto* item = new QListWidgetItem(QString::fromStdString(text));
        window->addItem(item);
        // The list lays out every item again after each insertion; an item that carries its own
        // size hint spares the delegate from measuring its text each time.
        item->setSizeHint(window->sizeHintForIndex(window->model()->index(window->row(item), 0)));
        ScrollToBottom();
    }

    // A list view lays out all of its items again after every insertion, and scrolling needs
    // that layout. Events queued together are shown together (nothing is painted between
    // them), so the scroll is done once, after the last of the events already queued.
    void ScrollToBottom()
    {
        if (scrollPending)
        {
            return;
        }
        scrollPending = true;
        forwarder.Forward(
            [this]()
            {
                scrollPending = false;
                if (window)
                {
                    window->scrollToBottom();
                }
            });
    }

    QPointer<QListWidget> window;
    bool scrollPending = false;
    // Declared last so that it is destroyed first: queued functions refer to this record, and
    // none of them runs once the record is going away.
    Velkor::Util::FunctionForwarder forwarder;
};

DebugKtTracker::DebugKtTracker() : d(std::make_unique<Private>()) {}

DebugKtTracker::~DebugKtTracker()
{
    if (d->window)
    {
        d->window->deleteLater();
    }
}

void DebugKtTracker::Track(const Event& event)
{
    Private* const record = d.get();
    d->forwarder.Forward([record, event]() { record->Show(event); });
}

}  // namespace Velkor::KT::Tracking
