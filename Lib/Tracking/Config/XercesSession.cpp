#include "Tracking/Config/XercesSession_p.h"

#include <xercesc/util/PlatformUtils.hpp>

#include <mutex>

namespace Velkor::KT::Tracking::Config::Detail
{

namespace
{

// Xerces keeps its own count of Initialize/Terminate pairs, but the calls themselves must not
// race.
std::mutex& XercesMutex()
{
    static std::mutex mutex;
    return mutex;
}

}  // namespace

XercesSession::XercesSession(::xml_schema::flags flags)
    : m_initialized(!(flags & ::xml_schema::flags::dont_initialize))
{
    if (m_initialized)
    {
        std::lock_guard<std::mutex> lock(XercesMutex());
        xercesc::XMLPlatformUtils::Initialize();
    }
}

XercesSession::~XercesSession()
{
    if (m_initialized)
    {
        std::lock_guard<std::mutex> lock(XercesMutex());
        xercesc::XMLPlatformUtils::Terminate();
    }
}

}  // namespace Velkor::KT::Tracking::Config::Detail
