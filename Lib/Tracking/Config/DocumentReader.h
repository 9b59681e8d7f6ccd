#pragma once

// Internal: turns the text of a configuration document into a DOM that the generated object model
// can be built from, applying the reading rules the generated parsers do not enforce.

// First: it selects the C++11 flavour of the data binding runtime.
#include "Tracking/Config/XmlSchema.hxx"

#include <xercesc/dom/DOMDocument.hpp>

#include <istream>
#include <vector>

namespace Velkor::KT::Tracking::Config::Detail
{

enum class ValueKind
{
    Boolean,
    Int,
    Double,
};

struct ChildRule
{
    const char* element;
    const char* type;  // empty: simple content, nothing to check inside
    bool repeated;
};

struct AttributeRule
{
    const char* name;
    ValueKind kind;
};

// One complex type of a schema: its child elements in schema order (those of its base types
// first) and its attributes whose values must convert.
struct TypeRule
{
    const char* name;
    std::vector<ChildRule> children;
    std::vector<AttributeRule> attributes;
};

enum class ChildOrder
{
    // Children in schema order; reading stops at the first unknown, out-of-order or repeated
    // single child.
    Fixed,
    // Children in any order; reading stops at the first unknown or repeated single child.
    Free,
};

struct DocumentRules
{
    const char* rootElement;
    const char* rootType;
    ChildOrder order;
    const std::vector<TypeRule>& types;
};

// Keeps Xerces initialised while it exists (unless the flags say the caller does it).
class XercesSession
{
public:
    explicit XercesSession(::xml_schema::flags flags);
    ~XercesSession();
    XercesSession(const XercesSession&) = delete;
    XercesSession& operator=(const XercesSession&) = delete;

private:
    bool m_initialized;
};

// Parses the text of `input` (no DOCTYPE allowed; validated against the schema named in
// `properties` unless the flags switch validation off), checks that the root element is
// `rules.rootElement` in no namespace, removes every element the reading rules leave unread and
// checks the values of the typed attributes of the rest. Throws ::xml_schema::parsing for XML
// errors and unconvertible values, ::xml_schema::unexpected_element for a wrong root.
::xml_schema::dom::unique_ptr<xercesc::DOMDocument> ReadDocument(
    std::istream& input, ::xml_schema::flags flags, const ::xml_schema::properties& properties,
    const DocumentRules& rules);

}  // namespace Velkor::KT::Tracking::Config::Detail
