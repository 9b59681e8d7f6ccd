#include "Tracking/Config/DocumentReader_p.h"

#include "Tracking/Config/HardenedDomParser_p.h"
#include "Tracking/Config/ReadingOrder_p.h"

#include <string>
#include <utility>

namespace Velkor::KT::Tracking::Config::Detail
{

::xml_schema::dom::unique_ptr<xercesc::DOMDocument> ReadDocument(
    std::istream& input, ::xml_schema::flags flags, const ::xml_schema::properties& properties,
    const DocumentRules& rules, ReadingOrder::ReadObserver observer)
{
    std::string text;
    char chunk[16 * 1024];
    while (input.read(chunk, sizeof chunk) || input.gcount() > 0)
    {
        text.append(chunk, static_cast<std::size_t>(input.gcount()));
        if (text.size() > kMaxDocumentBytes)
        {
            ThrowParsingError("document larger than " + std::to_string(kMaxDocumentBytes) +
                              " bytes, the limit of a configuration document");
        }
    }
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
