#pragma once

// Internal: the reading rules of one document kind, extracted from its schema at build time
// (Config/SchemaRulesTool.cpp writes the tables) and prepared once for the reader.

#include "Tracking/Config/LexicalValues_p.h"
#include "Tracking/Config/XmlText_p.h"

#include <optional>
#include <vector>

namespace Velkor::KT::Tracking::Config::Detail
{

// The tables as the build tool writes them.
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

// An attribute that holds a regular expression when a boolean attribute of the same element is
// true (the id of a `gui` entry with idIsRegExp), checked against the bounds of
// ExpressionBounds.h. Each part between ':' is one expression.
struct ExpressionRule
{
    const char* attribute;
    const char* flag;
};

enum class ChildOrder
{
    // Children in schema order; reading stops at the first unknown, out-of-order or repeated
    // single child.
    Fixed,
    // Children in any order; reading stops at the first unknown or repeated single child.
    Free,
};

// The tables of one document kind, with names in the parser's text and every child's type
// resolved, so that reading looks nothing up by name.
class DocumentRules
{
public:
    struct Type;

    struct Child
    {
        XmlString element;
        const Type* type;  // null: simple content (or a type without rules), not read further
        bool repeated;
    };

    struct Attribute
    {
        const char* name;
        XmlString xmlName;
        ValueKind kind;
    };

    struct Type
    {
        std::vector<Child> children;
        std::vector<Attribute> attributes;
        bool hasExpression = false;  // the type has the flag attribute of the expression rule
    };

    DocumentRules(const char* rootElement, const char* rootType, ChildOrder order,
                  const std::vector<TypeRule>& types,
                  std::optional<ExpressionRule> expression = std::nullopt);
    DocumentRules(const DocumentRules&) = delete;
    DocumentRules& operator=(const DocumentRules&) = delete;

    const char* RootElement() const { return m_rootElement; }
    const XmlString& RootElementXml() const { return m_rootElementXml; }
    const Type* RootType() const { return m_rootType; }
    ChildOrder Order() const { return m_order; }
    // Names in the parser's text; empty without an expression rule.
    const XmlString& ExpressionAttribute() const { return m_expressionAttribute; }
    const XmlString& ExpressionFlag() const { return m_expressionFlag; }

private:
    const char* m_rootElement;
    XmlString m_rootElementXml;
    ChildOrder m_order;
    std::vector<Type> m_types;
    const Type* m_rootType = nullptr;
    XmlString m_expressionAttribute;
    XmlString m_expressionFlag;
};

}  // namespace Velkor::KT::Tracking::Config::Detail
