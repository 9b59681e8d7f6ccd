#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/Filter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>

namespace Filter = Velkor::KT::Tracking::Config::Filter;
namespace Aggregator = Velkor::KT::Tracking::Config::Aggregator;

namespace
{

std::unique_ptr<Filter::Filter> ParseFilter(const std::string& text)
{
    std::istringstream input(text);
    return Filter::filter(input, ::xml_schema::flags::dont_validate);
}

std::unique_ptr<Aggregator::Aggregator> ParseAggregator(const std::string& text)
{
    std::istringstream input(text);
    return Aggregator::aggregator(input, ::xml_schema::flags::dont_validate);
}

std::string Describe(const ::xml_schema::exception& e)
{
    std::ostringstream out;
    out << e;
    return out.str();
}

// One `param` rule, summed up by each row's probe.
struct ParamRow
{
    const char* label;
    std::string matchers;  // children of <param key="K">
    std::function<std::string(const Filter::Param&)> probe;
    std::string expected;
};

void PrintTo(const ParamRow& row, std::ostream* out)
{
    *out << row.label;
}

class FilterParamTest : public testing::TestWithParam<ParamRow>
{
};

TEST_P(FilterParamTest, KeepsEachKindInDocumentOrder)
{
    const ParamRow& row = GetParam();
    const auto model = ParseFilter("<filter><event event='E'><param key='K'>" + row.matchers +
                                   "</param><param key='L'/></event></filter>");
    ASSERT_EQ(model->event().front().param().size(), 2u);
    EXPECT_EQ(row.probe(model->event().front().param().front()), row.expected);
}

template <typename Sequence>
std::string Values(const Sequence& matchers)
{
    std::string out;
    for (const auto& m : matchers)
    {
        out += m.value() + ";";
    }
    return out;
}

std::string Matchers(const Filter::Param& p)
{
    return Values(p.equal()) + "|" + Values(p.startsWith()) + "|" + Values(p.contains()) + "|" +
           std::to_string(p.any().size());
}

std::string Actions(const Filter::Param& p)
{
    const Filter::Matcher& m = p.equal().front();
    std::string out = m.setValue() ? m.setValue()->value() : "-";
    for (const auto& a : m.addParam())
    {
        out += "|add " + a.key() + "=" + a.value();
    }
    for (const auto& e : m.modEvent())
    {
        out += "|mod " + e.name();
    }
    for (const auto& d : m.delParam())
    {
        out += "|del " + d.key();
    }
    return out;
}

std::string Ranges(const Filter::Param& p)
{
    std::ostringstream out;
    for (const auto& r : p.inRange())
    {
        out << (r.from() ? std::to_string(*r.from()) : "-") << ".."
            << (r.to() ? std::to_string(*r.to()) : "-") << ";";
    }
    return out.str();
}

std::string Flags(const Filter::Param& p)
{
    std::string out;
    for (const auto& a : p.any())
    {
        out += std::to_string(a.actOn());
        for (const auto& s : a.skipEvent())
        {
            out += std::to_string(s.skipFullRepeats());
        }
        out += ";";
    }
    return out;
}

INSTANTIATE_TEST_SUITE_P(
    Rules, FilterParamTest,
    testing::Values(
        ParamRow{"MatcherKindsInterleaved",
                 "<any/><equal value='a'/><contains value='c1'/><startsWith value='s'/>"
                 "<equal value='b'/><contains value='c2'/><any/>",
                 Matchers, "a;b;|s;|c1;c2;|2"},
        ParamRow{"ActionKindsInterleaved",
                 "<equal value=''><delParam key='D1'/><addParam key='A' value='1'/>"
                 "<modEvent name='M'/><setValue value='V'/><delParam key='D2'/>"
                 "<addParam key='B' value='2'/></equal>",
                 Actions, "V|add A=1|add B=2|mod M|del D1|del D2"},
        ParamRow{"SecondSetValueEndsTheMatcher",
                 "<equal value='x'><setValue value='1'/><setValue value='2'/>"
                 "<addParam key='A' value='1'/></equal>",
                 Actions, "1"},
        ParamRow{"UnknownMatcherEndsTheParam",
                 "<equal value='a'/><regex value='r'/><equal value='b'/>", Matchers, "a;|||0"},
        ParamRow{"MatcherWithoutActions", "<equal value='1024x768'/>", Actions, "-"},
        // 10737418240 must not be cut to 32 bits.
        ParamRow{"RangeBounds",
                 "<inRange to='10737418240'/><inRange from='-1.5e3' to=' 12 '/><inRange/>"
                 "<inRange from='INF'/>",
                 Ranges, "-..10737418240.000000;-1500.000000..12.000000;-..-;inf..-;"},
        ParamRow{"BooleanDefaultsAndForms",
                 "<any/><any actOn='false'><skipEvent/><skipEvent skipFullRepeats='1'/></any>"
                 "<any actOn='true'><skipEvent skipFullRepeats='false'/></any>",
                 Flags, "1;001;10;"}));

TEST(FilterDocumentTest, BlocksKeepDocumentOrderWithRepeatedNames)
{
    const auto model = ParseFilter(
        "<filter><event event='PREF_CHANGE'><param key='A'/></event><event event='X'/>"
        "<event event='PREF_CHANGE'><param key='B'/></event></filter>");
    std::string out;
    for (const auto& e : model->event())
    {
        out += e.event() + (e.param().empty() ? "" : ":" + e.param().front().key()) + ";";
    }
    EXPECT_EQ(out, "PREF_CHANGE:A;X;PREF_CHANGE:B;");
}

TEST(AggregatorDocumentTest, KeepsBlocksAndNamesAsWritten)
{
    const auto model = ParseAggregator(
        "<aggregator><event event='CAPTURE_START'><affectingEventName>B</affectingEventName>"
        "<affectingEventName> H </affectingEventName></event><event event='EMPTY'/>"
        "<event event='CAPTURE_STOP'><affectingEventName>H</affectingEventName></event>"
        "</aggregator>");
    std::string out;
    for (const auto& e : model->event())
    {
        out += e.event() + ":";
        for (const auto& name : e.affectingEventName())
        {
            out += "[" + name + "]";
        }
        out += ";";
    }
    EXPECT_EQ(out, "CAPTURE_START:[B][ H ];EMPTY:;CAPTURE_STOP:[H];");
}

struct RejectRow
{
    const char* label;
    bool aggregator;  // which root function reads the document
    std::string document;
    std::string description;  // a part of the description
};

void PrintTo(const RejectRow& row, std::ostream* out)
{
    *out << row.label;
}

class RuleRejectTest : public testing::TestWithParam<RejectRow>
{
};

TEST_P(RuleRejectTest, ThrowsWithDescription)
{
    const RejectRow& row = GetParam();
    try
    {
        if (row.aggregator)
        {
            ParseAggregator(row.document);
        }
        else
        {
            ParseFilter(row.document);
        }
        FAIL() << "parsed";
    }
    catch (const ::xml_schema::exception& e)
    {
        EXPECT_NE(Describe(e).find(row.description), std::string::npos) << Describe(e);
    }
}

const std::string kParam = "<filter><event event='E'><param key='K'>";
const std::string kEnd = "</param></event></filter>";

INSTANTIATE_TEST_SUITE_P(
    Documents, RuleRejectTest,
    testing::Values(
        RejectRow{"FromNotANumber", false, kParam + "<inRange from='abc'/>" + kEnd,
                  "invalid double value 'abc' of attribute 'from' of element 'inRange'"},
        RejectRow{"ToWithTrailingText", false, kParam + "<inRange to='12abc'/>" + kEnd,
                  "invalid double value '12abc'"},
        RejectRow{"EmptyBound", false, kParam + "<inRange to=''/>" + kEnd,
                  "invalid double value ''"},
        RejectRow{"SkipFullRepeatsMaybe", false,
                  kParam + "<any><skipEvent skipFullRepeats='maybe'/></any>" + kEnd,
                  "invalid boolean value 'maybe' of attribute 'skipFullRepeats'"},
        RejectRow{"ActOnCapitalised", false, kParam + "<any actOn='True'/>" + kEnd,
                  "invalid boolean value 'True'"},
        RejectRow{"EqualWithoutValue", false, kParam + "<equal/>" + kEnd,
                  "expected attribute 'value'"},
        RejectRow{"ParamWithoutKey", false, "<filter><event event='E'><param/></event></filter>",
                  "expected attribute 'key'"},
        RejectRow{"EventWithoutEvent", false, "<filter><event/></filter>",
                  "expected attribute 'event'"},
        RejectRow{"ModEventWithoutName", false, kParam + "<any><modEvent/></any>" + kEnd,
                  "expected attribute 'name'"},
        RejectRow{"FilterGivenKtmstat", false, "<ktmstat/>",
                  "expected element 'filter' instead of 'ktmstat'"},
        RejectRow{"AggregatorEventWithoutEvent", true,
                  "<aggregator><event><affectingEventName>A</affectingEventName></event>"
                  "</aggregator>",
                  "expected attribute 'event'"},
        RejectRow{"AggregatorGivenFilter", true, "<filter/>",
                  "expected element 'aggregator' instead of 'filter'"}));

}  // namespace
