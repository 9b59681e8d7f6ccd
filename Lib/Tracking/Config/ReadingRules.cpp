#include "Tracking/Config/ReadingRules_p.h"

#include <string>
#include <unordered_map>

namespace Velkor::KT::Tracking::Config::Detail
{

DocumentRules::DocumentRules(const char* rootElement, const char* rootType, ChildOrder order,
                             const std::vector<TypeRule>& types,
                             std::optional<ExpressionRule> expression)
    : m_rootElement(rootElement),
      m_rootElementXml(WidenAscii(rootElement)),
      m_order(order),
      m_types(types.size())
{
    if (expression)
    {
        m_expressionAttribute = WidenAscii(expression->attribute);
        m_expressionFlag = WidenAscii(expression->flag);
    }
    // The types are all in place before any pointer to one is taken.
    std::unordered_map<std::string, const Type*> byName;
    for (std::size_t i = 0; i < types.size(); ++i)
    {
        byName.emplace(types[i].name, &m_types[i]);
    }
    const auto find = [&byName](const char* name)
    {
        const auto found = byName.find(name);
        return found == byName.end() ? nullptr : found->second;
    };
    for (std::size_t i = 0; i < types.size(); ++i)
    {
        for (const ChildRule& child : types[i].children)
        {
            m_types[i].children.push_back(
                {WidenAscii(child.element), find(child.type), child.repeated});
        }
        for (const AttributeRule& attribute : types[i].attributes)
        {
            m_types[i].attributes.push_back(
                {attribute.name, WidenAscii(attribute.name), attribute.kind});
            m_types[i].hasExpression =
                m_types[i].hasExpression ||
                (expression && std::string(attribute.name) == expression->flag);
        }
    }
    m_rootType = find(rootType);
}

}  // namespace Velkor::KT::Tracking::Config::Detail
