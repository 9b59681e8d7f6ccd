#pragma once

#include "HostExport.h"

#include <QObject>

#include <functional>
#include <memory>

namespace Velkor::Util
{

// A receiver for Qt's string-based connect that calls a stored function with the sender
// each time its slot "execute()" is invoked. The function is copied at construction; an
// empty function makes the slot do nothing. Meant to be parented to whoever makes the
// connections, so that it outlives its senders.
class KT_HOST_EXPORT LambdaQt4 : public QObject
{
    Q_OBJECT

public:
    using Function = std::function<void(QObject*)>;

    LambdaQt4(const Function& function, QObject* parent);
    ~LambdaQt4() override;

public slots:
    void execute();

private:
    Q_DISABLE_COPY(LambdaQt4)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::Util
