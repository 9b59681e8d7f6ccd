// Build tool: reads one of the configuration schemas and writes the reading rules of its complex
// types as C++ initialisers (see Config/ReadingRules.h), so the reader that runs before the
// generated object model follows the schema without a second hand-written copy of it.
//
//   KtSchemaRules <schema.xsd> <output.inc>
//
// Only the schema subset the configuration schemas use is understood: named complex types with a
// sequence of elements and attributes, optionally as an extension of another named complex type.
// Anything else stops the build with a message, so a schema change that the reader would
// silently misread cannot slip through.

#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using namespace xercesc;

const char* const kXsNamespace = "http://www.w3.org/2001/XMLSchema";

std::string Narrow(const XMLCh* text)
{
    if (!text)
    {
        return {};
    }
    char* narrow = XMLString::transcode(text);
    std::string result(narrow);
    XMLString::release(&narrow);
    return result;
}

std::string Attribute(const DOMElement& element, const char* name)
{
    XMLCh* wide = XMLString::transcode(name);
    std::string result = Narrow(element.getAttribute(wide));
    XMLString::release(&wide);
    return result;
}

std::string LocalName(const DOMElement& element)
{
    if (Narrow(element.getNamespaceURI()) != kXsNamespace)
    {
        throw std::runtime_error("element outside the XML Schema namespace: " +
                                 Narrow(element.getTagName()));
    }
    return Narrow(element.getLocalName());
}

std::vector<const DOMElement*> Children(const DOMElement& element)
{
    std::vector<const DOMElement*> result;
    for (const DOMElement* child = element.getFirstElementChild(); child;
         child = child->getNextElementSibling())
    {
        if (LocalName(*child) != "annotation")
        {
            result.push_back(child);
        }
    }
    return result;
}

struct Child
{
    std::string element;
    std::string type;  // empty for simple content
    bool repeated;
};

struct TypedAttribute
{
    std::string name;
    std::string kind;
};

struct ComplexType
{
    std::string base;
    std::vector<Child> children;
    std::vector<TypedAttribute> attributes;
};

// Strips the prefix of a QName; built-in types (prefix "xs") are returned with it.
std::string TypeName(const std::string& qname)
{
    return qname.rfind("xs:", 0) == 0 ? qname : qname.substr(qname.find(':') + 1);
}

void ReadParticles(const DOMElement& holder, const std::string& typeName, ComplexType& type)
{
    for (const DOMElement* part : Children(holder))
    {
        const std::string kind = LocalName(*part);
        if (kind == "sequence")
        {
            for (const DOMElement* element : Children(*part))
            {
                if (LocalName(*element) != "element" || Attribute(*element, "type").empty())
                {
                    throw std::runtime_error("type " + typeName +
                                             ": only named-type elements in a sequence");
                }
                const std::string childType = TypeName(Attribute(*element, "type"));
                const std::string maxOccurs = Attribute(*element, "maxOccurs");
                type.children.push_back(
                    {Attribute(*element, "name"), childType.rfind("xs:", 0) == 0 ? "" : childType,
                     !maxOccurs.empty() && maxOccurs != "1" && maxOccurs != "0"});
            }
        }
        else if (kind == "attribute")
        {
            const std::string attributeType = Attribute(*part, "type");
            static const std::map<std::string, std::string> kKinds = {
                {"xs:boolean", "Boolean"}, {"xs:int", "Int"}, {"xs:double", "Double"}};
            if (const auto found = kKinds.find(attributeType); found != kKinds.end())
            {
                type.attributes.push_back({Attribute(*part, "name"), found->second});
            }
            else if (attributeType != "xs:string")
            {
                throw std::runtime_error("type " + typeName + ": unsupported attribute type " +
                                         attributeType);
            }
        }
        else
        {
            throw std::runtime_error("type " + typeName + ": unsupported content <" + kind + ">");
        }
    }
}

std::map<std::string, ComplexType> ReadTypes(const DOMElement& schema)
{
    std::map<std::string, ComplexType> types;
    for (const DOMElement* top : Children(schema))
    {
        const std::string kind = LocalName(*top);
        if (kind == "element")
        {
            continue;  // root elements are named by the code that parses them
        }
        if (kind != "complexType")
        {
            throw std::runtime_error("unsupported top-level <" + kind + ">");
        }
        const std::string name = Attribute(*top, "name");
        ComplexType type;
        const auto content = Children(*top);
        if (content.size() == 1 && LocalName(*content.front()) == "complexContent")
        {
            const auto extension = Children(*content.front());
            if (extension.size() != 1 || LocalName(*extension.front()) != "extension")
            {
                throw std::runtime_error("type " + name + ": only extensions are supported");
            }
            type.base = TypeName(Attribute(*extension.front(), "base"));
            ReadParticles(*extension.front(), name, type);
        }
        else
        {
            ReadParticles(*top, name, type);
        }
        types.emplace(name, std::move(type));
    }
    return types;
}

// Children and typed attributes of a type with those of its bases first.
ComplexType Flatten(const std::map<std::string, ComplexType>& types, const std::string& name,
                    int depth = 0)
{
    const auto found = types.find(name);
    if (found == types.end() || depth > 32)
    {
        throw std::runtime_error("unknown or cyclic base type " + name);
    }
    ComplexType result;
    if (!found->second.base.empty())
    {
        result = Flatten(types, found->second.base, depth + 1);
    }
    result.children.insert(result.children.end(), found->second.children.begin(),
                           found->second.children.end());
    result.attributes.insert(result.attributes.end(), found->second.attributes.begin(),
                             found->second.attributes.end());
    return result;
}

void Write(const std::map<std::string, ComplexType>& types, const std::string& source,
           std::ostream& out)
{
    out << "// Generated by KtSchemaRules from " << source << ". Do not edit.\n";
    for (const auto& [name, declared] : types)
    {
        const ComplexType type = Flatten(types, name);
        for (const Child& child : type.children)
        {
            if (!child.type.empty() && types.count(child.type) == 0)
            {
                throw std::runtime_error("type " + name + ": element " + child.element +
                                         " has unknown type " + child.type);
            }
        }
        out << "{\"" << name << "\",\n {";
        for (const Child& child : type.children)
        {
            out << "{\"" << child.element << "\", \"" << child.type << "\", "
                << (child.repeated ? "true" : "false") << "}, ";
        }
        out << "},\n {";
        for (const TypedAttribute& attribute : type.attributes)
        {
            out << "{\"" << attribute.name << "\", ValueKind::" << attribute.kind << "}, ";
        }
        out << "}},\n";
    }
}

class ThrowingErrors : public HandlerBase
{
public:
    void error(const SAXParseException& e) override { Fail(e); }
    void fatalError(const SAXParseException& e) override { Fail(e); }

private:
    static void Fail(const SAXParseException& e)
    {
        throw std::runtime_error("line " + std::to_string(e.getLineNumber()) + ": " +
                                 Narrow(e.getMessage()));
    }
};

int Run(const std::string& schemaPath, const std::string& outputPath)
{
    XercesDOMParser parser;
    ThrowingErrors errors;
    parser.setErrorHandler(&errors);
    parser.setDoNamespaces(true);
    parser.setCreateCommentNodes(false);
    parser.parse(schemaPath.c_str());
    const DOMDocument* document = parser.getDocument();
    if (!document || !document->getDocumentElement())
    {
        throw std::runtime_error("no schema element");
    }
    const auto types = ReadTypes(*document->getDocumentElement());

    const std::string base = schemaPath.substr(schemaPath.find_last_of("/\\") + 1);
    std::ofstream out(outputPath, std::ios::binary | std::ios::trunc);
    Write(types, base, out);
    out.close();
    if (!out)
    {
        throw std::runtime_error("cannot write " + outputPath);
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
    {
        std::cerr << "usage: KtSchemaRules <schema.xsd> <output.inc>\n";
        return 2;
    }
    XMLPlatformUtils::Initialize();
    int result = 1;
    try
    {
        result = Run(argv[1], argv[2]);
    }
    catch (const std::exception& e)
    {
        std::cerr << argv[1] << ": " << e.what() << '\n';
    }
    catch (const XMLException& e)
    {
        std::cerr << argv[1] << ": " << Narrow(e.getMessage()) << '\n';
    }
    XMLPlatformUtils::Terminate();
    return result;
}
