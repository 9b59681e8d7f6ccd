#include "Tracking/Config/KtmStat.h"

#include "Tracking/Config/DocumentReader.h"

#include <xercesc/dom/DOMElement.hpp>

#include <vector>

namespace Velkor::KT::Tracking::Config
{

namespace
{

using Detail::ValueKind;

const std::vector<Detail::TypeRule> kTypes = {
#include "Tracking/Config/KtmStatRules.inc"
};

}  // namespace

std::unique_ptr<KtmStat> ktmstat(std::istream& input, ::xml_schema::flags flags,
                                 const ::xml_schema::properties& properties)
{
    const ::xml_schema::flags modelFlags = flags & ~::xml_schema::flags::keep_dom;
    const Detail::XercesSession session(flags);
    const auto document = Detail::ReadDocument(
        input, flags, properties, {"ktmstat", "KtmStat", Detail::ChildOrder::Fixed, kTypes});
    return std::make_unique<KtmStat>(*document->getDocumentElement(), modelFlags);
}

}  // namespace Velkor::KT::Tracking::Config
