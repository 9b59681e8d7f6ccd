#pragma once

#include <QEvent>
#include <QObject>

#include <functional>
#include <memory>

namespace Velkor::KT::Tracking
{

// Calls a stored function when a watched object receives a Qt event of a given type.
//
// The handler installs itself as an event filter on every object it watches and never consumes
// an event: the receiver gets every event exactly as if no filter were installed. It does not own
// the watched objects. An object's registrations are forgotten when the object is destroyed, so
// a later object that happens to get the same address is not mistaken for it. Destroying the
// handler removes its filter from every object still watched.
//
// Events of types or objects without a registration cost one ordered lookup and allocate
// nothing. GUI thread only.
class QtEventHandler : public QObject
{
    Q_OBJECT

public:
    using Callback = std::function<void(QObject*)>;

    explicit QtEventHandler(QObject* parent = nullptr);
    ~QtEventHandler() override;

    // Calls `callback` with `object` each time `object` receives an event of type `type`, until
    // `object` or this handler is destroyed. Registering the same (type, object) pair again is
    // kept but never called: the first registration of a pair is the one that runs.
    void Register(QEvent::Type type, QObject* object, Callback callback);

    // How many registrations are live; for diagnostics.
    std::size_t RegistrationCount() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Unregister(QObject* object);

    Q_DISABLE_COPY(QtEventHandler)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
