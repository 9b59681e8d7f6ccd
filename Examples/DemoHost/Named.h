#pragma once

#include <QString>

namespace Velkor::Demo
{

// The widget, given its object name: the name the `gui` section finds it by.
template <class Widget>
Widget* Named(Widget* widget, const QString& name)
{
    widget->setObjectName(name);
    return widget;
}

}  // namespace Velkor::Demo
