// The parse functions of the three document roots: each reads its document under the reading
// rules extracted from its schema, then builds the generated object model from what was read.

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/DocumentReader.h"
#include "Tracking/Config/Filter.h"
#include "Tracking/Config/KtmStat.h"
#include "Tracking/Config/XercesSession.h"

#include <xercesc/dom/DOMElement.hpp>

namespace Velkor::KT::Tracking::Config
{

namespace
{

using Detail::ChildOrder;
using Detail::DocumentRules;
using Detail::ValueKind;

const DocumentRules& MainRules()
{
    static const DocumentRules rules("ktmstat", "KtmStat", ChildOrder::Fixed,
                                     {
#include "Tracking/Config/KtmStatRules.inc"
                                     });
    return rules;
}

const DocumentRules& FilterRules()
{
    static const DocumentRules rules("filter", "Filter", ChildOrder::Free,
                                     {
#include "Tracking/Config/FilterRules.inc"
                                     });
    return rules;
}

const DocumentRules& AggregatorRules()
{
    static const DocumentRules rules("aggregator", "Aggregator", ChildOrder::Free,
                                     {
#include "Tracking/Config/AggregatorRules.inc"
                                     });
    return rules;
}

// The DOM lives only while the model is built from it: ::xml_schema::flags::keep_dom is ignored.
template <typename Root>
std::unique_ptr<Root> ReadModel(std::istream& input, ::xml_schema::flags flags,
                                const ::xml_schema::properties& properties,
                                const DocumentRules& rules)
{
    const Detail::XercesSession session(flags);
    const auto document = Detail::ReadDocument(input, flags, properties, rules);
    return std::make_unique<Root>(*document->getDocumentElement(),
                                  flags & ~::xml_schema::flags::keep_dom);
}

}  // namespace

std::unique_ptr<KtmStat> ktmstat(std::istream& input, ::xml_schema::flags flags,
                                 const ::xml_schema::properties& properties)
{
    return ReadModel<KtmStat>(input, flags, properties, MainRules());
}

namespace Filter
{

std::unique_ptr<Filter> filter(std::istream& input, ::xml_schema::flags flags,
                               const ::xml_schema::properties& properties)
{
    return ReadModel<Filter>(input, flags, properties, FilterRules());
}

}  // namespace Filter

namespace Aggregator
{

std::unique_ptr<Aggregator> aggregator(std::istream& input, ::xml_schema::flags flags,
                                       const ::xml_schema::properties& properties)
{
    return ReadModel<Aggregator>(input, flags, properties, AggregatorRules());
}

}  // namespace Aggregator

}  // namespace Velkor::KT::Tracking::Config
