#pragma once

// Internal: the data binding's parsing exception for a failure the reader finds itself.

// First: it selects the C++11 flavour of the data binding runtime.
#include "Tracking/Config/XmlSchema.hxx"

#include <xercesc/util/XercesDefs.hpp>

#include <string>

namespace Velkor::KT::Tracking::Config::Detail
{

// Where in the text something starts (1-based); 0 when not known.
struct TextLocation
{
    XMLFileLoc line = 0;
    XMLFileLoc column = 0;
};

// Throws ::xml_schema::parsing with one error-level diagnostic: an unnamed resource, `where`,
// `message`.
[[noreturn]] inline void ThrowParsingError(const std::string& message, TextLocation where = {})
{
    ::xml_schema::diagnostics diagnostics;
    diagnostics.push_back(::xml_schema::error(::xml_schema::severity::error, std::string(),
                                              where.line, where.column, message));
    throw ::xml_schema::parsing(diagnostics);
}

}  // namespace Velkor::KT::Tracking::Config::Detail
