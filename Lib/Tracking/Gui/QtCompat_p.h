#pragma once

// The few things Qt 5 and Qt 6 spell differently, for the library's sources, which build against
// either (KT_QT_MAJOR_VERSION). Each does the same under both.

#include <QAction>
#include <QList>
#include <QMetaType>
#include <QWidget>
#include <QtGlobal>

namespace Velkor::KT::Tracking::QtCompat
{

// The meta-type id Qt knows for a type name, QMetaType::UnknownType for none.
inline int MetaTypeId(const char* name)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QMetaType::fromName(name).id();
#else
    return QMetaType::type(name);
#endif
}

// The widgets an action is shown in (menus, tool bars, tool buttons), in the order it was added
// to them.
inline QList<QWidget*> AssociatedWidgets(const QAction& action)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QList<QWidget*> widgets;
    for (QObject* object : action.associatedObjects())
    {
        if (auto* widget = qobject_cast<QWidget*>(object))
        {
            widgets.append(widget);
        }
    }
    return widgets;
#else
    return action.associatedWidgets();
#endif
}

}  // namespace Velkor::KT::Tracking::QtCompat
