#pragma once

#include "HostExport.h"

#include <QObject>

#include <functional>
#include <memory>

namespace Velkor::Util
{

// A receiver for Qt's string-based connect that calls a stored function with the sender and the
// integer each time its slot "execute(int)" is invoked. The function is copied at construction; an
// empty function makes the slot do nothing. Meant to be parented to whoever makes the
// connections, so that it outlives its senders.
class KT_HOST_EXPORT LambdaQt4WithIntParameter : public QObject
{
    Q_OBJECT

public:
    using Function = std::function<void(QObject*, int)>;

    LambdaQt4WithIntParameter(const Function& function, QObject* parent);
    ~LambdaQt4WithIntParameter() override;

public slots:
    void execute(int value);

private:
    Q_DISABLE_COPY(LambdaQt4WithIntParameter)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::Util
