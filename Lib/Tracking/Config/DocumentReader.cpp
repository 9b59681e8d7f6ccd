#include "Tracking/Config/DocumentReader.h"

#include "Tracking/Config/HardenedDomParser.h"
#include "Tracking/Config/ReadingOrder.h"

#include <iterator>
#include <string>
#include <utility>

namespace Velkor::KT::Tracking::Config::Detail
{

::xml_schema::dom::unique_ptr<xercesc::DOMDocument> ReadDocument(
    std::istream& input, ::xml_schema::flags flags, const ::xml_schema::properties& properties,
    const DocumentRules& rules, ReadingOrder::ReadObserver observer)
{
    const std::string text{std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
    ReadingOrder reading(rules, std::move(observer));
    auto document = ParseHardened(text, flags, properties, reading);

    xercesc::DOMElement* root = document ? document->getDocumentElement() : nullptr;
    if (!root)
    {
        ThrowParsingError("no root element");
    }
    const std::string rootName = Narrow(root->getLocalName());
    const std::string rootNamespace = Narrow(root->getNamespaceURI());
    if (rootName != rules.RootElement() || !rootNamespace.empty())
    {
        throw ::xml_schema::unexpected_element(rootName, rootNamespace, rules.RootElement(), "");
    }
    reading.Finish();
    return document;
}

}  // namespace Velkor::KT::Tracking::Config::Detail
