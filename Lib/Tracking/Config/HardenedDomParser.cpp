#include "Tracking/Config/HardenedDomParser.h"

#include "Tracking/Config/XmlText.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include <sstream>

namespace Velkor::KT::Tracking::Config::Detail
{

namespace
{

using namespace xercesc;

// Deeper nesting than any real document needs. The limit keeps hostile input from exhausting the
// stack in the recursive readers, and from the parser's namespace lookups, whose cost grows with
// the square of the depth.
constexpr int kMaxDepth = 200;

// Collects parser messages in the data binding's diagnostics.
class CollectingErrorHandler : public ErrorHandler
{
public:
    void warning(const SAXParseException& e) override { Add(e, ::xml_schema::severity::warning); }
    void error(const SAXParseException& e) override { Add(e, ::xml_schema::severity::error); }
    void fatalError(const SAXParseException& e) override { Add(e, ::xml_schema::severity::error); }
    void resetErrors() override {}

    bool failed() const { return m_failed; }
    const ::xml_schema::diagnostics& diagnostics() const { return m_diagnostics; }

private:
    void Add(const SAXParseException& e, ::xml_schema::severity severity)
    {
        m_failed = m_failed || severity == ::xml_schema::severity::error;
        m_diagnostics.push_back(::xml_schema::error(severity, Narrow(e.getSystemId()),
                                                    e.getLineNumber(), e.getColumnNumber(),
                                                    Narrow(e.getMessage())));
    }

    ::xml_schema::diagnostics m_diagnostics;
    bool m_failed = false;
};

// Thrown out of the scanner to stop a document nested too deeply.
struct TooDeep
{
    TextLocation location;
};

// A DOM parser that refuses any document type declaration and nesting deeper than kMaxDepth, and
// tells its listener of each element it adds.
class HardenedDomParser : public XercesDOMParser
{
public:
    explicit HardenedDomParser(ElementListener& listener) : m_listener(listener)
    {
        getScanner()->setDisallowDTD(true);
    }

    void startElement(const XMLElementDecl& decl, const unsigned int urlId,
                      const XMLCh* const prefix, const RefVectorOf<XMLAttr>& attributes,
                      const XMLSize_t attributeCount, const bool isEmpty,
                      const bool isRoot) override
    {
        const Locator* locator = getScanner()->getLocator();
        const TextLocation location{locator->getLineNumber(), locator->getColumnNumber()};
        if (!isEmpty && ++m_depth > kMaxDepth)
        {
            throw TooDeep{location};
        }
        XercesDOMParser::startElement(decl, urlId, prefix, attributes, attributeCount, isEmpty,
                                      isRoot);
        m_listener.ElementStarted(*static_cast<DOMElement*>(getCurrentNode()), location, isEmpty);
    }

    void endElement(const XMLElementDecl& decl, const unsigned int urlId, const bool isRoot,
                    const XMLCh* const prefix) override
    {
        --m_depth;
        XercesDOMParser::endElement(decl, urlId, isRoot, prefix);
        m_listener.ElementEnded();
    }

private:
    ElementListener& m_listener;
    int m_depth = 0;
};

void ConfigureValidation(HardenedDomParser& parser, const ::xml_schema::properties& properties)
{
    parser.setValidationScheme(XercesDOMParser::Val_Always);
    parser.setDoSchema(true);
    parser.setValidationSchemaFullChecking(true);
    parser.setValidationConstraintFatal(true);
    // Only the schemas the caller names are used; locations written in the document are not
    // followed.
    parser.setLoadSchema(false);
    parser.useCachedGrammarInParse(true);
    if (!properties.no_namespace_schema_location().empty())
    {
        parser.loadGrammar(properties.no_namespace_schema_location().c_str(),
                           Grammar::SchemaGrammarType, true);
    }
    std::istringstream pairs(properties.schema_location());
    std::string ns;
    std::string location;
    while (pairs >> ns >> location)
    {
        parser.loadGrammar(location.c_str(), Grammar::SchemaGrammarType, true);
    }
}

}  // namespace

::xml_schema::dom::unique_ptr<DOMDocument> ParseHardened(const std::string& text,
                                                         ::xml_schema::flags flags,
                                                         const ::xml_schema::properties& properties,
                                                         ElementListener& listener)
{
    HardenedDomParser parser(listener);
    CollectingErrorHandler errors;
    parser.setErrorHandler(&errors);
    parser.setDoNamespaces(true);
    parser.setCreateCommentNodes(false);
    parser.setCreateEntityReferenceNodes(false);
    parser.setLoadExternalDTD(false);
    parser.setExitOnFirstFatalError(true);
    try
    {
        if (flags & ::xml_schema::flags::dont_validate)
        {
            parser.setValidationScheme(XercesDOMParser::Val_Never);
            parser.setDisableDefaultEntityResolution(true);
        }
        else
        {
            ConfigureValidation(parser, properties);
        }
        MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(), "");
        parser.parse(source);
    }
    catch (const TooDeep& e)
    {
        ThrowParsingError("elements nested deeper than " + std::to_string(kMaxDepth) + " levels",
                          e.location);
    }
    catch (const OutOfMemoryException&)
    {
        ThrowParsingError("out of memory while parsing");
    }
    catch (const XMLException& e)
    {
        ThrowParsingError(Narrow(e.getMessage()));
    }
    catch (const DOMException& e)
    {
        ThrowParsingError(Narrow(e.getMessage()));
    }
    if (errors.failed())
    {
        throw ::xml_schema::parsing(errors.diagnostics());
    }
    return ::xml_schema::dom::unique_ptr<DOMDocument>(parser.adoptDocument());
}

}  // namespace Velkor::KT::Tracking::Config::Detail
