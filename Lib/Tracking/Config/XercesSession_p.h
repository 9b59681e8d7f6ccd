#pragma once

// Internal: keeping Xerces initialised while documents are read.

// First: it selects the C++11 flavour of the data binding runtime.
#include "Tracking/Config/XmlSchema.hxx"

namespace Velkor::KT::Tracking::Config::Detail
{

// Keeps Xerces initialised while it exists. Xerces counts its initialisations, so sessions nest:
// the first initialises it, the last one to go terminates it. Each reading of a document opens
// one; the objects that read documents over their life (the statistics manager, the rule stages)
// hold one for that life, because initialising Xerces costs several times a parse of the largest
// document. Sessions may be opened and closed on several threads at once.
class XercesSession
{
public:
    // With ::xml_schema::flags::dont_initialize the caller keeps Xerces initialised itself and
    // the session does nothing.
    explicit XercesSession(::xml_schema::flags flags = 0);
    ~XercesSession();
    XercesSession(const XercesSession&) = delete;
    XercesSession& operator=(const XercesSession&) = delete;

private:
    const bool m_initialized;
};

}  // namespace Velkor::KT::Tracking::Config::Detail
