#include "Tracking/Config/HardenedDomParser_p.h"

#include "Tracking/Config/XmlText_p.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include <algorithm>
#include <optional>
#include <sstream>
#include <string>

namespace Velkor::KT::Tracking::Config::Detail
{

namespace
{

using namespace xercesc;

// Deeper nesting than any real document needs. The limit keeps hostile input from exhausting the
// stack in the recursive readers, and from the parser's namespace lookups, whose cost grows with
// the square of the depth.
constexpr int kMaxDepth = 200;

// `text` as the characters of its encoding, when that is UTF-16 or UTF-32 (told by a byte order
// mark, or by the "<" or "<?" it begins with, as XML lets a parser tell them): each character
// below 128 as itself, every other one as '?', the byte order mark dropped. Text in an encoding
// of single bytes, UTF-8 among them, is given back as it is.
std::string SingleByteView(const std::string& text)
{
    const auto starts = [&](const char* bytes, std::size_t size)
    { return text.compare(0, size, bytes, size) == 0; };
    std::size_t unit = 1;
    bool bigEndian = false;
    std::size_t skip = 0;
    if (starts("\0\0\xFE\xFF", 4) || starts("\0\0\0<", 4))
    {
        unit = 4, bigEndian = true, skip = text[3] == '<' ? 0 : 4;
    }
    else if (starts("\xFF\xFE\0\0", 4) || starts("<\0\0\0", 4))
    {
        unit = 4, skip = text[0] == '<' ? 0 : 4;
    }
    else if (starts("\xFE\xFF", 2) || starts("\0<", 2))
    {
        unit = 2, bigEndian = true, skip = text[1] == '<' ? 0 : 2;
    }
    else if (starts("\xFF\xFE", 2) || starts("<\0", 2))
    {
        unit = 2, skip = text[0] == '<' ? 0 : 2;
    }
    if (unit == 1)
    {
        return text;
    }
    std::string view;
    for (std::size_t i = skip; i + unit <= text.size(); i += unit)
    {
        unsigned long code = 0;
        for (std::size_t b = 0; b < unit; ++b)
        {
            const auto byte = static_cast<unsigned char>(text[i + (bigEndian ? b : unit - 1 - b)]);
            code = (code << 8) | byte;
        }
        view += code < 128 ? static_cast<char>(code) : '?';
    }
    return view;
}

// Whether the prolog of `text` (after a byte order mark, white space, processing instructions
// and comments) goes on with a document type declaration, in whatever encoding XML allows.
bool PrologHasDoctype(const std::string& document)
{
    const std::string text = SingleByteView(document);
    std::size_t i = text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
    while (i < text.size())
    {
        if (text[i] == ' ' || text[i] == '\t' || text[i] == '\r' || text[i] == '\n')
        {
            ++i;
            continue;
        }
        const char* end = text.compare(i, 4, "<!--") == 0 ? "-->"
                          : text.compare(i, 2, "<?") == 0 ? "?>"
                                                          : nullptr;
        if (!end)
        {
            return text.compare(i, 9, "<!DOCTYPE") == 0;
        }
        const std::size_t closing = text.find(end, i + 2);
        if (closing == std::string::npos)
        {
            return false;
        }
        i = closing + std::char_traits<char>::length(end);
    }
    return false;
}

// Where the first byte 0 of `text` is, when `text` is in an encoding of single bytes (it starts
// with two bytes that are neither 0 nor a UTF-16 byte order mark). The scanner takes that byte
// for the end of the input: it would report unclosed elements, or ignore what follows the root.
std::optional<TextLocation> NulOfSingleByteText(const std::string& text)
{
    if (text.size() < 2 || text[0] == 0 || text[1] == 0 || text.compare(0, 2, "\xFE\xFF") == 0 ||
        text.compare(0, 2, "\xFF\xFE") == 0)
    {
        return std::nullopt;
    }
    const std::size_t nul = text.find('\0');
    if (nul == std::string::npos)
    {
        return std::nullopt;
    }
    // Lines end as XML's do: at a line feed, a carriage return, or both together.
    XMLFileLoc line = 1;
    std::size_t lineStart = 0;
    for (std::size_t i = 0; i < nul; ++i)
    {
        if (text[i] == '\n' || (text[i] == '\r' && text[i + 1] != '\n'))
        {
            ++line;
            lineStart = i + 1;
        }
    }
    return TextLocation{line, static_cast<XMLFileLoc>(nul - lineStart + 1)};
}

// Collects parser messages in the data binding's diagnostics. The scanner refuses a document
// type declaration as "invalid document structure"; that message names the reason instead.
class CollectingErrorHandler : public ErrorHandler
{
public:
    explicit CollectingErrorHandler(const std::string& text) : m_text(text) {}

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
        std::string message = Narrow(e.getMessage());
        if (message == "invalid document structure" && PrologHasDoctype(m_text))
        {
            message = "document type declarations (<!DOCTYPE ...>) are not allowed";
        }
        m_diagnostics.push_back(::xml_schema::error(
            severity, Narrow(e.getSystemId()), e.getLineNumber(), e.getColumnNumber(), message));
    }

    const std::string& m_text;
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
    if (const std::optional<TextLocation> nul = NulOfSingleByteText(text))
    {
        ThrowParsingError("byte 0 (NUL) is not allowed in a document", *nul);
    }
    HardenedDomParser parser(listener);
    CollectingErrorHandler errors(text);
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
