#include "Tracking/Gui/LambdaQt4WithStringParameter_p.h"

namespace Velkor::KT::Tracking
{

class LambdaQt4WithStringParameter::Private
{
public:
    explicit Private(const Function& function) : function(function) {}

    const Function function;
};

LambdaQt4WithStringParameter::LambdaQt4WithStringParameter(const Function& function,
                                                           QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(function))
{
}

LambdaQt4WithStringParameter::~LambdaQt4WithStringParameter() = default;

void LambdaQt4WithStringParameter::execute(const QString& value)
{
    if (d->function)
    {
        d->function(sender(), value);
    }
}

}  // namespace Velkor::KT::Tracking
