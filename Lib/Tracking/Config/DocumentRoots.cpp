// The parse functions of the three document roots: each reads its document under the reading
// rules extracted from its schema, then builds the generated object model from what was read.

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/DocumentReader_p.h"
#include "Tracking/Config/Filter.h"
#include "Tracking/Config/KtmStat.h"
#include "Tracking/Config/XercesSession_p.h"
#include "Tracking/Config/XmlText_p.h"

#include <xercesc/dom/DOMElement.hpp>

#include <set>
#include <string>
#include <utility>

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
                                     },
                                     Detail::ExpressionRule{"id", "idIsRegExp"});
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
                                const DocumentRules& rules,
                                Detail::ReadingOrder::ReadObserver observer = {})
{
    const Detail::XercesSession session(flags);
    const auto document =
        Detail::ReadDocument(input, flags, properties, rules, std::move(observer));
    return std::make_unique<Root>(*document->getDocumentElement(),
                                  flags & ~::xml_schema::flags::keep_dom);
}

}  // namespace

std::unique_ptr<KtmStat> ktmstat(std::istream& input, ::xml_schema::flags flags,
                                 const ::xml_schema::properties& properties)
{
    return ReadModel<KtmStat>(input, flags, properties, MainRules());
}

std::unique_ptr<KtmStat> ktmstat(std::istream& input, GuiLines& guiLines, ::xml_schema::flags flags,
                                 const ::xml_schema::properties& properties)
{
    // Below "gui" the entries and their signals are the only elements of these names.
    static const std::set<std::string> kEntries = {"widget",
                                                   "button",
                                                   "label",
                                                   "combobox",
                                                   "object",
                                                   "abstractPresetButton",
                                                   "buttonWithPopUpList",
                                                   "action"};
    static const std::set<std::string> kSignals = {"signal", "intSignal", "stringSignal"};
    guiLines = {};
    bool inGui = false;
    return ReadModel<KtmStat>(
        input, flags, properties, MainRules(),
        [&](const xercesc::DOMElement& element, Detail::TextLocation location, std::size_t depth)
        {
            const std::string name = Detail::Narrow(element.getLocalName());
            if (depth == 1)
            {
                inGui = name == "gui";
            }
            else if (inGui && kEntries.count(name))
            {
                guiLines.entries.push_back(int(location.line));
            }
            else if (inGui && kSignals.count(name))
            {
                guiLines.signalTriggers.push_back(int(location.line));
            }
        });
}

std::unique_ptr<KtmStat> ktmstat(std::istream& input, std::vector<int>& guiEntryLines,
                                 ::xml_schema::flags flags,
                                 const ::xml_schema::properties& properties)
{
    GuiLines lines;
    auto model = ktmstat(input, lines, flags, properties);
    guiEntryLines = std::move(lines.entries);
    return model;
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
