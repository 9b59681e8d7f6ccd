#include "RuleText.h"

#include "Tracking/Events/EventJson.h"

#include <charconv>

namespace Velkor::KT::KtTrack
{

namespace F = Tracking::Config::Filter;
using Tracking::FilterMatcherKind;

namespace
{

std::string Attribute(const char* name, const std::string& value)
{
    return std::string(" ") + name + "=\"" + value + "\"";
}

// The shortest text that reads back as `value`.
std::string Shortest(double value)
{
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return std::string(buffer, end);
}

std::string Own(const F::MatcherEqual& m)
{
    return Attribute("value", m.value());
}
std::string Own(const F::MatcherStartsWith& m)
{
    return Attribute("value", m.value());
}
std::string Own(const F::MatcherEndsWith& m)
{
    return Attribute("value", m.value());
}
std::string Own(const F::MatcherContains& m)
{
    return Attribute("value", m.value());
}
std::string Own(const F::MatcherRange& m)
{
    return (m.from() ? Attribute("from", Shortest(*m.from())) : std::string()) +
           (m.to() ? Attribute("to", Shortest(*m.to())) : std::string());
}
std::string Own(const F::MatcherAny&)
{
    return {};
}

template <typename Matchers>
std::string Text(FilterMatcherKind kind, const Matchers& matchers, std::size_t index)
{
    const auto& m = matchers[index];
    return MatcherKindName(kind) + Own(m) + (m.actOn() ? "" : Attribute("actOn", "false"));
}

}  // namespace

const char* MatcherKindName(FilterMatcherKind kind)
{
    static const char* const names[] = {"equal",    "startsWith", "endsWith",
                                        "contains", "inRange",    "any"};
    return names[static_cast<int>(kind)];
}

const char* ActionKindName(Tracking::FilterActionKind kind)
{
    static const char* const names[] = {"setValue", "addParam",  "modParam",
                                        "modEvent", "skipEvent", "delParam"};
    return names[static_cast<int>(kind)];
}

std::size_t MatcherCount(const F::Param& rule, FilterMatcherKind kind)
{
    switch (kind)
    {
        case FilterMatcherKind::Equal:
            return rule.equal().size();
        case FilterMatcherKind::StartsWith:
            return rule.startsWith().size();
        case FilterMatcherKind::EndsWith:
            return rule.endsWith().size();
        case FilterMatcherKind::Contains:
            return rule.contains().size();
        case FilterMatcherKind::InRange:
            return rule.inRange().size();
        case FilterMatcherKind::Any:
            return rule.any().size();
    }
    return 0;
}

std::string MatcherText(const F::Param& rule, FilterMatcherKind kind, std::size_t index)
{
    switch (kind)
    {
        case FilterMatcherKind::Equal:
            return Text(kind, rule.equal(), index);
        case FilterMatcherKind::StartsWith:
            return Text(kind, rule.startsWith(), index);
        case FilterMatcherKind::EndsWith:
            return Text(kind, rule.endsWith(), index);
        case FilterMatcherKind::Contains:
            return Text(kind, rule.contains(), index);
        case FilterMatcherKind::InRange:
            return Text(kind, rule.inRange(), index);
        case FilterMatcherKind::Any:
            return Text(kind, rule.any(), index);
    }
    return {};
}

std::string Quoted(const std::string& text)
{
    std::string out;
    Tracking::AppendJsonString(out, text);
    return out;
}

std::string ParamsJson(const Tracking::Event::Params& params)
{
    std::string out = "{";
    for (const auto& [key, value] : params)
    {
        if (out.size() > 1)
        {
            out += ',';
        }
        Tracking::AppendJsonString(out, key);
        out += ':';
        Tracking::AppendJsonString(out, value);
    }
    return out + "}";
}

}  // namespace Velkor::KT::KtTrack
