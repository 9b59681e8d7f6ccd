#pragma once

// Filter rules document: root "filter". Each kind of child is kept as its own list in document
// order; the order between kinds is not kept. Reading of an element's children stops silently at
// the first unknown child or a second occurrence of a single child.

#include "Tracking/TrackingExport.h"

#include "Tracking/Config/Filter.hxx"

#include <istream>
#include <memory>

namespace Velkor::KT::Tracking::Config::Filter
{

// Reads a document with the root element "filter" from `input`. A document type declaration is
// never accepted. Unless `flags` contain ::xml_schema::flags::dont_validate the document is also
// validated against the schema named in `properties` (no_namespace_schema_location); the
// location written in the document itself is never used. ::xml_schema::flags::keep_dom is
// ignored. Throws ::xml_schema::exception subclasses: parsing (XML errors and values that do not
// convert), unexpected_element (wrong root), expected_attribute and expected_element.
KT_TRACKING_EXPORT std::unique_ptr<Filter> filter(
    std::istream& input, ::xml_schema::flags flags = 0,
    const ::xml_schema::properties& properties = ::xml_schema::properties());

}  // namespace Velkor::KT::Tracking::Config::Filter
