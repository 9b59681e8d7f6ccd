#pragma once

// Aggregation rules document: root "aggregator": for each main event, its affecting events in
// document order.

#include "Tracking/TrackingExport.h"

#include "Tracking/Config/Aggregator.hxx"

#include <istream>
#include <memory>

namespace Velkor::KT::Tracking::Config::Aggregator
{

// Reads a document with the root element "aggregator" from `input`. A document type declaration is
// never accepted. Unless `flags` contain ::xml_schema::flags::dont_validate the document is also
// validated against the schema named in `properties` (no_namespace_schema_location); the
// location written in the document itself is never used. ::xml_schema::flags::keep_dom is
// ignored. Throws ::xml_schema::exception subclasses: parsing (XML errors and values that do not
// convert), unexpected_element (wrong root), expected_attribute and expected_element.
KT_TRACKING_EXPORT std::unique_ptr<Aggregator> aggregator(
    std::istream& input, ::xml_schema::flags flags = 0,
    const ::xml_schema::properties& properties = ::xml_schema::properties());

}  // namespace Velkor::KT::Tracking::Config::Aggregator
