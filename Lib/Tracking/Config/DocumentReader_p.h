#pragma once

// Internal: turns the text of a configuration document into a DOM that the generated object model
// can be built from, in one parse that also applies the reading rules the generated parsers do
// not enforce.

// First: it selects the C++11 flavour of the data binding runtime.
#include "Tracking/Config/XmlSchema.hxx"

#include "Tracking/Config/ReadingOrder_p.h"
#include "Tracking/Config/ReadingRules_p.h"

#include <xercesc/dom/DOMDocument.hpp>

#include <cstddef>
#include <istream>

namespace Velkor::KT::Tracking::Config::Detail
{

// The largest document read, in bytes: forty times the largest shipped document. Reading costs
// up to about sixteen times the size of a document in memory.
constexpr std::size_t kMaxDocumentBytes = 1024 * 1024;

// Parses the text of `input` (see ParseHardened), checks that the root element is
// `rules.RootElement()` in no namespace, and applies the reading rules (see ReadingOrder). Throws
// ::xml_schema::parsing for XML errors and unconvertible values, for a text longer than
// kMaxDocumentBytes (read no further than that), ::xml_schema::unexpected_element for a wrong
// root. Xerces must be initialised. `observer` is told of the elements read.
::xml_schema::dom::unique_ptr<xercesc::DOMDocument> ReadDocument(
    std::istream& input, ::xml_schema::flags flags, const ::xml_schema::properties& properties,
    const DocumentRules& rules, ReadingOrder::ReadObserver observer = {});

}  // namespace Velkor::KT::Tracking::Config::Detail
