#include "Tracking/Config/DocumentReader.h"

#include <xsd/cxx/xml/string.hxx>

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <mutex>
#include <sstream>
#include <string>
#include <unordered_map>
#include <utility>

namespace Velkor::KT::Tracking::Config::Detail
{

namespace
{

using namespace xercesc;

// Deeper nesting than any real document needs. The limit keeps hostile input from exhausting the
// stack in the recursive readers, and from the parser's namespace lookups, whose cost grows with
// the square of the depth.
constexpr int kMaxDepth = 200;

// Xerces keeps its own count of Initialize/Terminate pairs, but the calls themselves must not
// race.
std::mutex& XercesMutex()
{
    static std::mutex mutex;
    return mutex;
}

std::string Narrow(const XMLCh* text)
{
    return text ? xsd::cxx::xml::transcode<char>(text) : std::string();
}

struct Location
{
    XMLFileLoc line = 0;
    XMLFileLoc column = 0;
};

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
    Location location;
};

// A DOM parser that refuses any document type declaration and nesting deeper than kMaxDepth, and
// remembers where each element starts, for messages about values found later.
class LocatingDomParser : public XercesDOMParser
{
public:
    LocatingDomParser() { getScanner()->setDisallowDTD(true); }

    void startElement(const XMLElementDecl& decl, const unsigned int urlId,
                      const XMLCh* const prefix, const RefVectorOf<XMLAttr>& attributes,
                      const XMLSize_t attributeCount, const bool isEmpty,
                      const bool isRoot) override
    {
        const Locator* locator = getScanner()->getLocator();
        const Location location{locator->getLineNumber(), locator->getColumnNumber()};
        if (!isEmpty && ++m_depth > kMaxDepth)
        {
            throw TooDeep{location};
        }
        XercesDOMParser::startElement(decl, urlId, prefix, attributes, attributeCount, isEmpty,
                                      isRoot);
        m_locations.emplace(getCurrentNode(), location);
    }

    void endElement(const XMLElementDecl& decl, const unsigned int urlId, const bool isRoot,
                    const XMLCh* const prefix) override
    {
        --m_depth;
        XercesDOMParser::endElement(decl, urlId, isRoot, prefix);
    }

    Location LocationOf(const DOMNode* node) const
    {
        const auto found = m_locations.find(node);
        return found == m_locations.end() ? Location{} : found->second;
    }

private:
    std::unordered_map<const DOMNode*, Location> m_locations;
    int m_depth = 0;
};

[[noreturn]] void Fail(const LocatingDomParser& parser, const DOMElement& element,
                       const std::string& message)
{
    const Location location = parser.LocationOf(&element);
    ::xml_schema::diagnostics diagnostics;
    diagnostics.push_back(::xml_schema::error(::xml_schema::severity::error, std::string(),
                                              location.line, location.column, message));
    throw ::xml_schema::parsing(diagnostics);
}

// XML Schema whitespace collapse for the types checked here: leading and trailing blanks go.
std::string Collapsed(const std::string& text)
{
    const char* const blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string::npos)
    {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsBoolean(const std::string& text)
{
    return text == "true" || text == "false" || text == "1" || text == "0";
}

bool IsInt(const std::string& text)
{
    std::size_t i = (!text.empty() && (text[0] == '+' || text[0] == '-')) ? 1 : 0;
    if (i == text.size())
    {
        return false;
    }
    for (std::size_t j = i; j < text.size(); ++j)
    {
        if (!IsDigit(text[j]))
        {
            return false;
        }
    }
    errno = 0;
    const long long value = std::strtoll(text.c_str(), nullptr, 10);
    return errno == 0 && value >= INT_MIN && value <= INT_MAX;
}

bool IsDouble(const std::string& text)
{
    if (text == "INF" || text == "-INF" || text == "NaN")
    {
        return true;
    }
    std::size_t i = 0;
    const auto digits = [&]
    {
        const std::size_t start = i;
        while (i < text.size() && IsDigit(text[i]))
        {
            ++i;
        }
        return i - start;
    };
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
    {
        ++i;
    }
    std::size_t mantissa = digits();
    if (i < text.size() && text[i] == '.')
    {
        ++i;
        mantissa += digits();
    }
    if (mantissa == 0)
    {
        return false;
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E'))
    {
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        {
            ++i;
        }
        if (digits() == 0)
        {
            return false;
        }
    }
    return i == text.size();
}

const char* KindName(ValueKind kind)
{
    switch (kind)
    {
        case ValueKind::Boolean:
            return "boolean";
        case ValueKind::Int:
            return "int";
        case ValueKind::Double:
            return "double";
    }
    return "value";
}

class RuleWalker
{
public:
    RuleWalker(const LocatingDomParser& parser, const DocumentRules& rules)
        : m_parser(parser), m_rules(rules)
    {
        for (const TypeRule& type : rules.types)
        {
            m_types.emplace(type.name, &type);
        }
    }

    // Recursion is bounded: the parser refuses documents nested deeper than kMaxDepth.
    void Walk(DOMElement& element, const std::string& typeName)
    {
        const auto found = m_types.find(typeName);
        if (found == m_types.end())
        {
            return;  // simple content
        }
        const TypeRule& type = *found->second;
        CheckAttributes(element, type);

        std::vector<bool> taken(type.children.size(), false);
        std::size_t next = 0;  // first position still allowed (fixed order)
        DOMElement* child = element.getFirstElementChild();
        while (child)
        {
            const std::size_t position = Position(*child, type, taken, next);
            if (position == type.children.size())
            {
                Cut(element, *child);
                return;
            }
            taken[position] = true;
            next = type.children[position].repeated ? position : position + 1;
            Walk(*child, type.children[position].type);
            child = child->getNextElementSibling();
        }
    }

private:
    // Index of the rule that reads `child`, or the number of rules when reading stops there.
    std::size_t Position(const DOMElement& child, const TypeRule& type,
                         const std::vector<bool>& taken, std::size_t next) const
    {
        const std::size_t none = type.children.size();
        if (child.getNamespaceURI() && *child.getNamespaceURI() != 0)
        {
            return none;
        }
        const std::string name = Narrow(child.getLocalName());
        const std::size_t first = m_rules.order == ChildOrder::Fixed ? next : 0;
        for (std::size_t i = first; i < type.children.size(); ++i)
        {
            if (name == type.children[i].element)
            {
                return (taken[i] && !type.children[i].repeated) ? none : i;
            }
        }
        return none;
    }

    // Removes `from` and every later sibling. Removed nodes stay in the document's memory until
    // it is released; releasing them one by one would recurse through hostile nesting.
    static void Cut(DOMElement& parent, DOMElement& from)
    {
        DOMNode* node = &from;
        while (node)
        {
            DOMNode* following = node->getNextSibling();
            parent.removeChild(node);
            node = following;
        }
    }

    void CheckAttributes(const DOMElement& element, const TypeRule& type) const
    {
        for (const AttributeRule& rule : type.attributes)
        {
            const DOMAttr* attribute =
                element.getAttributeNodeNS(nullptr, xsd::cxx::xml::string(rule.name).c_str());
            if (!attribute)
            {
                continue;
            }
            const std::string raw = Narrow(attribute->getValue());
            const std::string value = Collapsed(raw);
            const bool valid = rule.kind == ValueKind::Boolean ? IsBoolean(value)
                               : rule.kind == ValueKind::Int   ? IsInt(value)
                                                               : IsDouble(value);
            if (!valid)
            {
                Fail(m_parser, element,
                     "invalid " + std::string(KindName(rule.kind)) + " value '" + raw +
                         "' of attribute '" + rule.name + "' of element '" +
                         Narrow(element.getLocalName()) + "'");
            }
        }
    }

    const LocatingDomParser& m_parser;
    const DocumentRules& m_rules;
    std::unordered_map<std::string, const TypeRule*> m_types;
};

void ConfigureValidation(LocatingDomParser& parser, const ::xml_schema::properties& properties)
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

::xml_schema::diagnostics Single(const std::string& message)
{
    ::xml_schema::diagnostics diagnostics;
    diagnostics.push_back(
        ::xml_schema::error(::xml_schema::severity::error, std::string(), 0, 0, message));
    return diagnostics;
}

}  // namespace

XercesSession::XercesSession(::xml_schema::flags flags)
    : m_initialized(!(flags & ::xml_schema::flags::dont_initialize))
{
    if (m_initialized)
    {
        std::lock_guard<std::mutex> lock(XercesMutex());
        XMLPlatformUtils::Initialize();
    }
}

XercesSession::~XercesSession()
{
    if (m_initialized)
    {
        std::lock_guard<std::mutex> lock(XercesMutex());
        XMLPlatformUtils::Terminate();
    }
}

::xml_schema::dom::unique_ptr<DOMDocument> ReadDocument(std::istream& input,
                                                        ::xml_schema::flags flags,
                                                        const ::xml_schema::properties& properties,
                                                        const DocumentRules& rules)
{
    const std::string text{std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};

    LocatingDomParser parser;
    CollectingErrorHandler errors;
    parser.setErrorHandler(&errors);
    parser.setDoNamespaces(true);
    parser.setCreateCommentNodes(false);
    parser.setCreateEntityReferenceNodes(false);
    parser.setLoadExternalDTD(false);
    parser.setExitOnFirstFatalError(true);

    ::xml_schema::dom::unique_ptr<DOMDocument> document;
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
        if (errors.failed())
        {
            throw ::xml_schema::parsing(errors.diagnostics());
        }
        document.reset(parser.adoptDocument());
    }
    catch (const TooDeep& e)
    {
        ::xml_schema::diagnostics diagnostics;
        diagnostics.push_back(::xml_schema::error(
            ::xml_schema::severity::error, std::string(), e.location.line, e.location.column,
            "elements nested deeper than " + std::to_string(kMaxDepth) + " levels"));
        throw ::xml_schema::parsing(diagnostics);
    }
    catch (const OutOfMemoryException&)
    {
        throw ::xml_schema::parsing(Single("out of memory while parsing"));
    }
    catch (const XMLException& e)
    {
        throw ::xml_schema::parsing(Single(Narrow(e.getMessage())));
    }
    catch (const DOMException& e)
    {
        throw ::xml_schema::parsing(Single(Narrow(e.getMessage())));
    }

    DOMElement* root = document ? document->getDocumentElement() : nullptr;
    if (!root)
    {
        throw ::xml_schema::parsing(Single("no root element"));
    }
    const std::string rootName = Narrow(root->getLocalName());
    const std::string rootNamespace = Narrow(root->getNamespaceURI());
    if (rootName != rules.rootElement || !rootNamespace.empty())
    {
        throw ::xml_schema::unexpected_element(rootName, rootNamespace, rules.rootElement, "");
    }
    RuleWalker(parser, rules).Walk(*root, rules.rootType);
    return document;
}

}  // namespace Velkor::KT::Tracking::Config::Detail
