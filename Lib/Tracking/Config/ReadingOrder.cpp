#include "Tracking/Config/ReadingOrder_p.h"

#include "Tracking/Config/ExpressionBounds_p.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/util/XMLString.hpp>

#include <algorithm>

namespace Velkor::KT::Tracking::Config::Detail
{

namespace
{

using namespace xercesc;

bool InNamespace(const DOMElement& element)
{
    const XMLCh* const uri = element.getNamespaceURI();
    return uri && *uri != 0;
}

// Removes `from` and every later sibling. Removed nodes stay in the document's memory until it
// is released; releasing them one by one would recurse through hostile nesting.
void RemoveFrom(DOMElement& parent, DOMNode& from)
{
    DOMNode* node = &from;
    while (node)
    {
        DOMNode* following = node->getNextSibling();
        parent.removeChild(node);
        node = following;
    }
}

}  // namespace

ReadingOrder::ReadingOrder(const DocumentRules& rules, ReadObserver observer)
    : m_rules(rules), m_observer(std::move(observer))
{
}

void ReadingOrder::ElementStarted(DOMElement& element, TextLocation location, bool isEmpty)
{
    const DocumentRules::Type* const type = Read(element);
    if (type && !m_badValue)
    {
        CheckValues(element, *type, location);
    }
    if (type && m_observer)
    {
        m_observer(element, location, m_depth);
    }
    if (isEmpty)
    {
        return;
    }
    if (m_depth == m_frames.size())
    {
        m_frames.emplace_back();
    }
    Frame& frame = m_frames[m_depth++];
    frame.type = type;
    frame.element = &element;
    frame.next = 0;
    frame.taken.assign(type ? type->children.size() : 0, false);
    frame.stopped = false;
}

void ReadingOrder::ElementEnded()
{
    --m_depth;
}

void ReadingOrder::Finish()
{
    if (m_badValue)
    {
        ThrowParsingError(m_badValue->first, m_badValue->second);
    }
    for (const auto& [parent, from] : m_stops)
    {
        RemoveFrom(*parent, *from);
    }
}

// The rules of `element`'s content, or null when it is not read.
const DocumentRules::Type* ReadingOrder::Read(DOMElement& element)
{
    if (m_depth == 0)
    {
        const bool expected =
            !InNamespace(element) &&
            XMLString::equals(element.getLocalName(), m_rules.RootElementXml().c_str());
        return expected ? m_rules.RootType() : nullptr;
    }
    Frame& parent = m_frames[m_depth - 1];
    if (!parent.type || parent.stopped)
    {
        return nullptr;
    }
    const std::size_t position = Position(element, parent);
    if (position == parent.type->children.size())
    {
        parent.stopped = true;
        m_stops.emplace_back(parent.element, &element);
        return nullptr;
    }
    const DocumentRules::Child& rule = parent.type->children[position];
    parent.taken[position] = true;
    parent.next = rule.repeated ? position : position + 1;
    return rule.type;
}

// Index of the rule that reads `child`, or the number of rules when reading stops there.
std::size_t ReadingOrder::Position(const DOMElement& child, const Frame& parent) const
{
    const auto& children = parent.type->children;
    if (InNamespace(child))
    {
        return children.size();
    }
    const std::size_t first = m_rules.Order() == ChildOrder::Fixed ? parent.next : 0;
    for (std::size_t i = first; i < children.size(); ++i)
    {
        if (XMLString::equals(child.getLocalName(), children[i].element.c_str()))
        {
            return (parent.taken[i] && !children[i].repeated) ? children.size() : i;
        }
    }
    return children.size();
}

void ReadingOrder::CheckValues(const DOMElement& element, const DocumentRules::Type& type,
                               TextLocation location)
{
    for (const DocumentRules::Attribute& rule : type.attributes)
    {
        const DOMAttr* attribute = element.getAttributeNodeNS(nullptr, rule.xmlName.c_str());
        if (!attribute)
        {
            continue;
        }
        const std::string value = Narrow(attribute->getValue());
        if (!IsLexicalValue(rule.kind, value))
        {
            m_badValue.emplace("invalid " + std::string(KindName(rule.kind)) + " value '" + value +
                                   "' of attribute '" + rule.name + "' of element '" +
                                   Narrow(element.getLocalName()) + "'",
                               location);
            return;
        }
    }
    if (type.hasExpression)
    {
        CheckExpression(element, location);
    }
}

// The expression rule: each part of the expression attribute, when the flag is true.
void ReadingOrder::CheckExpression(const DOMElement& element, TextLocation location)
{
    const DOMAttr* flag = element.getAttributeNodeNS(nullptr, m_rules.ExpressionFlag().c_str());
    const DOMAttr* attribute =
        element.getAttributeNodeNS(nullptr, m_rules.ExpressionAttribute().c_str());
    if (!flag || !attribute || !IsTrue(Narrow(flag->getValue())))
    {
        return;
    }
    const std::string value = Narrow(attribute->getValue());
    std::size_t start = 0;
    while (start <= value.size())
    {
        const std::size_t end = std::min(value.find(':', start), value.size());
        const std::optional<std::string> beyond =
            ExpressionBeyondBounds(value.substr(start, end - start));
        if (beyond)
        {
            // Its beginning, cut before a character, not inside one.
            std::size_t shown = std::min<std::size_t>(value.size(), 40);
            while (shown < value.size() && (value[shown] & 0xC0) == 0x80)
            {
                --shown;
            }
            m_badValue.emplace("the expression in attribute '" +
                                   Narrow(m_rules.ExpressionAttribute().c_str()) +
                                   "' of element '" + Narrow(element.getLocalName()) + "' ('" +
                                   value.substr(0, shown) +
                                   (shown < value.size() ? "...') has " : "') has ") + *beyond,
                               location);
            return;
        }
        start = end + 1;
    }
}

}  // namespace Velkor::KT::Tracking::Config::Detail
