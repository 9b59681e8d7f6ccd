#include "Tracking/Gui/HighlightMarks_p.h"

#include "Tracking/Gui/QtCompat_p.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QToolButton>
#include <QWidget>

#include <algorithm>
#include <tuple>

namespace Velkor::KT::Tracking::Gui
{

namespace
{

QString Describe(const QObject* object)
{
    return object->objectName() + QStringLiteral(" (") +
           QLatin1String(object->metaObject()->className()) + QLatin1Char(')');
}

// "line 12: button "stopButton": clicked-event BUTTON_STOP, mouse-release-event BUTTON_UP", and
// for an action entry with a condition, how it stands: "; condition: 'state' is missing".
QString EntryLine(const AttachReport::Entry& entry, const AttachReport::Match& match)
{
    QString line = entry.line > 0 ? QStringLiteral("line %1: ").arg(entry.line) : QString();
    line += AttachReport::ElementName(entry.kind) + QStringLiteral(" \"") + entry.id +
            QStringLiteral("\": ");
    if (match.hooks.isEmpty())
    {
        return line + QStringLiteral("found, no hooks of its own");
    }
    QStringList hooks;
    for (const AttachReport::Hook& hook : match.hooks)
    {
        hooks.append(hook.signal.isEmpty() ? hook.trigger + QLatin1Char(' ') + hook.event
                                           : hook.trigger + QLatin1Char(' ') + hook.signal +
                                                 QLatin1Char(' ') + hook.event);
    }
    line += hooks.join(QStringLiteral(", "));
    if (!match.condition.isEmpty())
    {
        line += QStringLiteral("; condition: ") + match.condition;
    }
    return line;
}

// Where an action shows in one of its widgets: its item in a menu or menu bar, or the whole
// tool button it is the action of. Other widgets an action was added to (for its shortcut) do
// not show it.
QRect ActionRect(QWidget* widget, QAction* action)
{
    if (auto* menu = qobject_cast<QMenu*>(widget))
    {
        return menu->actionGeometry(action);
    }
    if (auto* bar = qobject_cast<QMenuBar*>(widget))
    {
        return bar->actionGeometry(action);
    }
    auto* button = qobject_cast<QToolButton*>(widget);
    return button && button->defaultAction() == action ? button->rect() : QRect();
}

// `rect` of `widget` in global coordinates, as far as its parents leave it visible.
QRect VisibleRect(const QWidget* widget, const QRect& rect)
{
    QRect visible = rect.translated(widget->mapToGlobal(QPoint(0, 0)));
    for (const QWidget* parent = widget->parentWidget(); parent && !visible.isEmpty();
         parent = parent->parentWidget())
    {
        visible &= QRect(parent->mapToGlobal(QPoint(0, 0)), parent->size());
    }
    return visible;
}

}  // namespace

bool IsOutlinedWindow(const QWidget* window)
{
    return window->isWindow() && window->isVisible() && !window->isMinimized() &&
           window->windowType() != Qt::ToolTip && window->windowType() != Qt::Desktop;
}

void HighlightMarks::Add(const AttachReport& report)
{
    for (auto it = m_marks.begin(); it != m_marks.end();)
    {
        it = it->object.isNull() ? m_marks.erase(it) : std::next(it);
    }
    for (const AttachReport::Entry& entry : report.Entries())
    {
        for (const AttachReport::Match& match : entry.matches)
        {
            QObject* const object = match.object.data();
            if (!object)
            {
                continue;
            }
            Mark& mark = m_marks[object];
            mark.object = object;
            mark.lines.append(EntryLine(entry, match));
            mark.hooked += match.hooks.isEmpty() ? 0 : 1;
        }
    }
}

std::map<QWidget*, std::vector<Outline>> HighlightMarks::OutlinesByWindow(bool unhooked) const
{
    std::map<QWidget*, std::vector<Outline>> byWindow;
    for (const Mark& mark : m_marks)
    {
        QObject* const object = mark.object.data();
        if (auto* widget = qobject_cast<QWidget*>(object))
        {
            AddOutline(byWindow, widget, widget->rect(), mark);
        }
        else if (auto* action = qobject_cast<QAction*>(object))
        {
            for (QWidget* shown : QtCompat::AssociatedWidgets(*action))
            {
                AddOutline(byWindow, shown, ActionRect(shown, action), mark);
            }
        }
    }
    if (unhooked)
    {
        for (QWidget* window : QApplication::topLevelWidgets())
        {
            if (!IsOutlinedWindow(window))
            {
                continue;
            }
            for (QWidget* widget : window->findChildren<QWidget*>())
            {
                const QString name = widget->objectName();
                const auto found = m_marks.constFind(widget);
                if (name.isEmpty() || name.startsWith(QLatin1String("qt_")) ||
                    (found != m_marks.cend() && found->object == widget))
                {
                    continue;
                }
                AddOutline(byWindow, widget, widget->rect(), Mark{widget, {}, 0});
            }
        }
    }
    for (auto& [window, outlines] : byWindow)
    {
        std::sort(outlines.begin(), outlines.end(),
                  [](const Outline& a, const Outline& b)
                  {
                      const auto area = [](const QRect& r)
                      { return qint64(r.width()) * r.height(); };
                      return std::make_tuple(a.style, -area(a.rect)) <
                             std::make_tuple(b.style, -area(b.rect));
                  });
    }
    return byWindow;
}

void HighlightMarks::AddOutline(std::map<QWidget*, std::vector<Outline>>& byWindow, QWidget* widget,
                                const QRect& rect, const Mark& mark) const
{
    if (!widget->isVisible() || !IsOutlinedWindow(widget->window()))
    {
        return;
    }
    const QRect visible = VisibleRect(widget, rect);
    if (visible.isEmpty())
    {
        return;
    }
    Outline outline{visible, OutlineStyle::Found, Describe(mark.object)};
    if (mark.lines.isEmpty())
    {
        outline.style = OutlineStyle::Unhooked;
        outline.text += QStringLiteral(": no entry found it");
    }
    else
    {
        if (mark.hooked > 1)
        {
            outline.style = OutlineStyle::HookedTwice;
            outline.text += QStringLiteral(", hooked %1 times: each event is sent once per hook")
                                .arg(mark.hooked);
        }
        else if (mark.hooked == 1)
        {
            outline.style = OutlineStyle::Hooked;
        }
        outline.text += QLatin1Char('\n') + mark.lines.join(QLatin1Char('\n'));
    }
    byWindow[widget->window()].push_back(outline);
}

}  // namespace Velkor::KT::Tracking::Gui
