#pragma once

// Internal: a Xerces DOM parse of document text that may come from anywhere.

// First: it selects the C++11 flavour of the data binding runtime.
#include "Tracking/Config/XmlSchema.hxx"

#include "Tracking/Config/ParsingError_p.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include <string>

namespace Velkor::KT::Tracking::Config::Detail
{

// Told of each element as soon as the parser has added it to the DOM, in document order.
class ElementListener
{
public:
    // `location` is where the element's start tag ends. An empty element gets no ElementEnded().
    virtual void ElementStarted(xercesc::DOMElement& element, TextLocation location,
                                bool isEmpty) = 0;
    virtual void ElementEnded() = 0;

protected:
    ~ElementListener() = default;
};

// Parses `text` into a DOM: namespaces on, no comment nodes, no document type declaration
// accepted (so no entity of the document's own and nothing read from elsewhere), no nesting
// deeper than 200 elements, no byte 0 in a text of single-byte characters. Unless the flags contain
// ::xml_schema::flags::dont_validate the document is validated against the schemas named in
// `properties`, never against a location the document names itself. Throws ::xml_schema::parsing
// with the parser's diagnostics for any failure; Xerces must be initialised.
::xml_schema::dom::unique_ptr<xercesc::DOMDocument> ParseHardened(
    const std::string& text, ::xml_schema::flags flags, const ::xml_schema::properties& properties,
    ElementListener& listener);

}  // namespace Velkor::KT::Tracking::Config::Detail
