#include "Tracking/Gui/GuiElementAutoAttacher.h"

#include "Tracking/Gui/AttachedMarker.h"
#include "Tracking/GuiHandler.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

namespace Velkor::KT::Tracking
{

GuiElementAutoAttacher::GuiElementAutoAttacher(GuiHandler* handler) : m_handler(handler)
{
    if (QCoreApplication* application = QCoreApplication::instance())
    {
        application->installEventFilter(this);
    }
}

GuiElementAutoAttacher::~GuiElementAutoAttacher()
{
    if (QCoreApplication* application = QCoreApplication::instance())
    {
        application->removeEventFilter(this);
    }
}

bool GuiElementAutoAttacher::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::WinIdChange && m_handler && watched->isWidgetType())
    {
        auto* widget = static_cast<QWidget*>(watched);
        if (widget->isWindow() && !IsAttached(widget))
        {
            m_handler->Attach(widget, nullptr);
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace Velkor::KT::Tracking
