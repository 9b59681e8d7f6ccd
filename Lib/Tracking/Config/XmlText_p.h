#pragma once

// Internal: conversions between the parser's UTF-16 text and the UTF-8 text of the object model
// and of messages.

#include <xsd/cxx/xml/string.hxx>

#include <xercesc/util/XercesDefs.hpp>

#include <string>

namespace Velkor::KT::Tracking::Config::Detail
{

using XmlString = std::basic_string<XMLCh>;

// UTF-8 of a parser string; a null string gives "".
inline std::string Narrow(const XMLCh* text)
{
    return text ? xsd::cxx::xml::transcode<char>(text) : std::string();
}

// The parser string of an ASCII name (element and attribute names of the schemas). Needs no
// initialised parser, so it can run while the reading rules are prepared.
inline XmlString WidenAscii(const char* name)
{
    XmlString wide;
    for (; *name; ++name)
    {
        wide.push_back(static_cast<XMLCh>(static_cast<unsigned char>(*name)));
    }
    return wide;
}

}  // namespace Velkor::KT::Tracking::Config::Detail
