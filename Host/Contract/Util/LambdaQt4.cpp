#include "Util/LambdaQt4.h"

namespace Velkor::Util
{

class LambdaQt4::Private
{
public:
    explicit Private(const Function& function) : function(function) {}

    const Function function;
};

LambdaQt4::LambdaQt4(const Function& function, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(function))
{
}

LambdaQt4::~LambdaQt4() = default;

void LambdaQt4::execute()
{
    if (d->function)
    {
        d->function(sender());
    }
}

}  // namespace Velkor::Util
