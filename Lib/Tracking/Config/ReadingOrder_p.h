#pragma once

// Internal: the reading rules applied while the parser builds the DOM. Of each element's
// children only those the rules read are kept: reading stops silently at the first child that is
// unknown, in a namespace, out of order (fixed order) or a second occurrence of a single child,
// and that child goes with all that follows it. The typed attributes of the elements that are
// read must hold values that convert, and their expressions (see ExpressionRule) must be within
// bounds.

#include "Tracking/Config/HardenedDomParser_p.h"
#include "Tracking/Config/ReadingRules_p.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Velkor::KT::Tracking::Config::Detail
{

class ReadingOrder : public ElementListener
{
public:
    // Told of each element that is read and has content rules of its own, with its depth (the
    // root's is 0), as the parser adds it.
    using ReadObserver =
        std::function<void(const xercesc::DOMElement&, TextLocation, std::size_t depth)>;

    explicit ReadingOrder(const DocumentRules& rules, ReadObserver observer = {});

    void ElementStarted(xercesc::DOMElement& element, TextLocation location, bool isEmpty) override;
    void ElementEnded() override;

    // Once the text has parsed and its root is the expected one: throws ::xml_schema::parsing
    // for the first value in document order that does not convert, or else removes the children
    // reading stopped at, each with its later siblings.
    void Finish();

private:
    struct Frame
    {
        const DocumentRules::Type* type;  // null: the element's content is not read
        xercesc::DOMElement* element;
        std::size_t next;  // first rule still allowed (fixed order)
        std::vector<bool> taken;
        bool stopped;  // reading of the children has stopped
    };

    const DocumentRules::Type* Read(xercesc::DOMElement& element);
    std::size_t Position(const xercesc::DOMElement& child, const Frame& parent) const;
    void CheckValues(const xercesc::DOMElement& element, const DocumentRules::Type& type,
                     TextLocation location);
    void CheckExpression(const xercesc::DOMElement& element, TextLocation location);

    const DocumentRules& m_rules;
    const ReadObserver m_observer;
    std::vector<Frame> m_frames;  // reused between siblings; the first m_depth are open
    std::size_t m_depth = 0;
    std::vector<std::pair<xercesc::DOMElement*, xercesc::DOMNode*>> m_stops;
    std::optional<std::pair<std::string, TextLocation>> m_badValue;
};

}  // namespace Velkor::KT::Tracking::Config::Detail
