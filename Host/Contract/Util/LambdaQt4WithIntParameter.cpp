#include "Util/LambdaQt4WithIntParameter.h"

namespace Velkor::Util
{

class LambdaQt4WithIntParameter::Private
{
public:
    explicit Private(const Function& function) : function(function) {}

    const Function function;
};

LambdaQt4WithIntParameter::LambdaQt4WithIntParameter(const Function& function, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(function))
{
}

LambdaQt4WithIntParameter::~LambdaQt4WithIntParameter() = default;

void LambdaQt4WithIntParameter::execute(int value)
{
    if (d->function)
    {
        d->function(sender(), value);
    }
}

}  // namespace Velkor::Util
