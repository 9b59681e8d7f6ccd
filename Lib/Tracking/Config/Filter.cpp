#include "Tracking/Config/Filter.h"

#include "Tracking/Config/DocumentReader.h"

#include <xercesc/dom/DOMElement.hpp>

#include <vector>

namespace Velkor::KT::Tracking::Config::Filter
{

namespace
{

using Detail::ValueKind;

const std::vector<Detail::TypeRule> kTypes = {
#include "Tracking/Config/FilterRules.inc"
};

}  // namespace

std::unique_ptr<Filter> filter(std::istream& input, ::xml_schema::flags flags,
                               const ::xml_schema::properties& properties)
{
    const ::xml_schema::flags modelFlags = flags & ~::xml_schema::flags::keep_dom;
    const Detail::XercesSession session(flags);
    const auto document = Detail::ReadDocument(
        input, flags, properties, {"filter", "Filter", Detail::ChildOrder::Free, kTypes});
    return std::make_unique<Filter>(*document->getDocumentElement(), modelFlags);
}

}  // namespace Velkor::KT::Tracking::Config::Filter
