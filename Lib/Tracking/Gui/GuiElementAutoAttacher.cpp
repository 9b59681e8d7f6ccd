#include "Tracking/Gui/GuiElementAutoAttacher_p.h"

#include "Tracking/Gui/AttachedMarker_p.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

#include <utility>

namespace Velkor::KT::Tracking
{

GuiElementAutoAttacher::GuiElementAutoAttacher(Attach attach) : m_attach(std::move(attach))
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
    if (event->type() == QEvent::WinIdChange && m_attach && watched->isWidgetType())
    {
        auto* widget = static_cast<QWidget*>(watched);
        if (widget->isWindow() && !IsAttached(widget))
        {
            m_attach(widget);
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace Velkor::KT::Tracking
