#pragma once

// Event filter lists, read through Qt's private object data (link Qt5::CorePrivate).

#include <QtCore/private/qobject_p.h>

#include <QPointer>

#include <vector>

namespace KtTest
{

// The event filters installed on an object, most recent first.
inline std::vector<QObject*> Filters(QObject* object)
{
    std::vector<QObject*> filters;
    if (const auto* extra = QObjectPrivate::get(object)->extraData)
    {
        for (const QPointer<QObject>& filter : extra->eventFilters)
        {
            if (filter)
            {
                filters.push_back(filter.data());
            }
        }
    }
    return filters;
}

// Counts, after `filter` is destroyed, the filter lists that still refer to it: Qt keeps a
// reference to a filter's guard for every list it was never removed from.
class FilterProbe
{
public:
    explicit FilterProbe(QObject* filter)
        : m_keep(filter), m_guard(QObjectPrivate::get(filter)->sharedRefcount.loadRelaxed())
    {
    }

    // Valid after the filter is destroyed.
    int LeftOverReferences() const { return m_guard->weakref.loadRelaxed() - 1; }

private:
    QPointer<QObject> m_keep;
    QtSharedPointer::ExternalRefCountData* m_guard;
};

}  // namespace KtTest
