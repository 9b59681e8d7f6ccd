#pragma once

#include "App/ISessionId.h"
#include "HostReferenceExport.h"

#include <string>

namespace Velkor::App
{

// A session identifier fixed for the life of the object: a random UUID in lower-case hex
// without braces unless one is given.
class KT_HOST_REFERENCE_EXPORT SessionId : public ISessionId
{
public:
    SessionId();
    explicit SessionId(std::string id);

    std::string GetSessionId() const override;

private:
    const std::string m_id;
};

}  // namespace Velkor::App
