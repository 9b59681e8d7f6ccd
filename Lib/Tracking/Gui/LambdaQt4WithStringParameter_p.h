#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace Velkor::KT::Tracking
{

// A receiver for Qt's string-based connect that calls a stored function with the sender and the
// string each time its slot "execute(QString)" is invoked. The function is copied at construction;
// an empty function makes the slot do nothing. Meant to be parented to whoever makes the
// connections, so that it outlives its senders.
class LambdaQt4WithStringParameter : public QObject
{
    Q_OBJECT

public:
    using Function = std::function<void(QObject*, const QString&)>;

    LambdaQt4WithStringParameter(const Function& function, QObject* parent);
    ~LambdaQt4WithStringParameter() override;

public slots:
    void execute(const QString& value);

private:
    Q_DISABLE_COPY(LambdaQt4WithStringParameter)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
