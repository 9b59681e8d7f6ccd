#include "Tracking/Gui/QtEventHandler_p.h"

#include <boost/multi_index/composite_key.hpp>
#include <boost/multi_index/member.hpp>
#include <boost/multi_index/ordered_index.hpp>
#include <boost/multi_index/tag.hpp>
#include <boost/multi_index_container.hpp>
#include <boost/tuple/tuple.hpp>

#include <utility>

namespace Velkor::KT::Tracking
{

// Named rather than anonymous: the handler's Private, declared in a header, holds the registry.
namespace QtEventRegistry
{

namespace bmi = boost::multi_index;

struct Registration
{
    QEvent::Type type;
    QObject* object;
    // Shared so that a dispatch can keep the function alive without copying it, even when the
    // callback leads to the destruction of the object and so to the erasure of this entry.
    std::shared_ptr<const QtEventHandler::Callback> callback;
};

struct ByTypeAndObject
{
};
struct ByObject
{
};

// Equal keys keep their insertion order in an ordered non-unique index, so the lower bound of a
// (type, object) pair is always its first registration.
using Registry = bmi::multi_index_container<
    Registration,
    bmi::indexed_by<
        bmi::ordered_non_unique<
            bmi::tag<ByTypeAndObject>,
            bmi::composite_key<Registration,
                               bmi::member<Registration, QEvent::Type, &Registration::type>,
                               bmi::member<Registration, QObject*, &Registration::object>>>,
        bmi::ordered_non_unique<bmi::tag<ByObject>,
                                bmi::member<Registration, QObject*, &Registration::object>>>>;

}  // namespace QtEventRegistry

using namespace QtEventRegistry;

class QtEventHandler::Private
{
public:
    Registry registry;
};

QtEventHandler::QtEventHandler(QObject* parent) : QObject(parent), d(std::make_unique<Private>()) {}

QtEventHandler::~QtEventHandler()
{
    for (const Registration& registration : d->registry)
    {
        registration.object->removeEventFilter(this);
    }
}

void QtEventHandler::Register(QEvent::Type type, QObject* object, Callback callback)
{
    if (!object)
    {
        return;
    }
    d->registry.insert(
        Registration{type, object, std::make_shared<const Callback>(std::move(callback))});
    object->installEventFilter(this);
    connect(object, &QObject::destroyed, this, [this](QObject* dead) { Unregister(dead); });
}

std::size_t QtEventHandler::RegistrationCount() const
{
    return d->registry.size();
}

void QtEventHandler::Unregister(QObject* object)
{
    d->registry.get<ByObject>().erase(object);
    object->removeEventFilter(this);
}

bool QtEventHandler::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    const auto& index = d->registry.get<ByTypeAndObject>();
    const auto found = index.lower_bound(boost::make_tuple(type, watched));
    if (found != index.end() && found->type == type && found->object == watched && *found->callback)
    {
        const std::shared_ptr<const Callback> callback = found->callback;
        (*callback)(watched);
    }
    return false;
}

}  // namespace Velkor::KT::Tracking
