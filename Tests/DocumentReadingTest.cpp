// Reading the three kinds of document without validation, as the application does: what each
// keeps (the reader stops at the first element out of place and drops it with its later
// siblings), the values it converts, and the documents it rejects with a description.

#include "Support/Table.h"

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/Filter.h"
#include "Tracking/Config/KtmStat.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>

namespace Config = Velkor::KT::Tracking::Config;
namespace Filter = Velkor::KT::Tracking::Config::Filter;

namespace
{

constexpr auto kUnvalidated = ::xml_schema::flags::dont_validate;

std::unique_ptr<Config::KtmStat> ParseMain(const std::string& text)
{
    std::istringstream input(text);
    return Config::ktmstat(input, kUnvalidated);
}

std::unique_ptr<Filter::Filter> ParseFilter(const std::string& text)
{
    std::istringstream input(text);
    return Filter::filter(input, kUnvalidated);
}

template <typename Sequence, typename Text>
std::string Join(const Sequence& items, Text text)
{
    std::string out;
    for (const auto& item : items)
    {
        out += text(item) + ";";
    }
    return out;
}

// ---- the main document -----------------------------------------------------------------------

struct ReadRow
{
    const char* label;
    std::string body;  // children of the root element
    std::function<std::string(const Config::KtmStat&)> probe;
    std::string expected;
};
using KtmStatReadTest = KtTest::Table<ReadRow>;

TEST_P(KtmStatReadTest, KeepsWhatTheReadingRulesKeep)
{
    const auto model = ParseMain("<ktmstat>" + GetParam().body + "</ktmstat>");
    ASSERT_TRUE(model);
    EXPECT_EQ(GetParam().probe(*model), GetParam().expected);
}

std::string Sections(const Config::KtmStat& m)
{
    return std::string(m.gui() ? "gui" : "-") + "," + (m.instances() ? "instances" : "-");
}

std::string ButtonIds(const Config::Widget& w)
{
    return Join(w.button(), [](const auto& b) { return b.id(); });
}

std::string FirstWidget(const Config::KtmStat& m)
{
    const Config::Widget& w = m.gui()->widget().front();
    return std::string(w.show_event() ? "show:" + w.show_event()->event() : "-") + "," +
           (w.close_event() ? "close:" + w.close_event()->event() : "-") + "," + ButtonIds(w) +
           "," + std::to_string(w.combobox().size()) + "," + std::to_string(w.label().size()) +
           "," + std::to_string(w.signal().size());
}

std::string CaptureInfo(const Config::KtmStat& m)
{
    const auto& i = *m.instances();
    std::string out = std::string(i.IScheduler() ? "scheduler" : "-") + "," +
                      (i.IConverter() ? "converter" : "-");
    if (i.ICaptureInfo())
    {
        const auto& c = *i.ICaptureInfo();
        out += std::string(",start:") + (c.start() ? c.start()->event() : "-") +
               ",stop:" + (c.stop() ? c.stop()->event() : "-") +
               ",cancel:" + (c.cancel() ? c.cancel()->event() : "-");
    }
    return out;
}

KT_ROWS(KtmStatReadTest,
        {
            {"InstancesBeforeGuiLeavesNoGui", "<instances/><gui/>", Sections, "-,instances"},
            {"UnknownChildEndsReading", "<gui/><extra/><instances/>", Sections, "gui,-"},
            {"ChildInANamespaceIsUnknown", "<x:gui xmlns:x='urn:x'/><instances/>", Sections, "-,-"},
            {"CommentsAndTextAreSkipped", "<!--a--> <gui/>\r\n<!--b--><instances/>", Sections,
             "gui,instances"},
            {"CloseBeforeShowKeepsOnlyClose",
             "<gui><widget id='w'><close-event event='C'/><show-event event='S'/>"
             "<button id='b'/></widget></gui>",
             FirstWidget, "-,close:C,,0,0,0"},
            {"ButtonAfterComboboxIgnoredWithLaterSiblings",
             "<gui><widget id='w'><button id='a'/><button id='b'/><combobox id='c'/>"
             "<button id='d'/><label id='l'/></widget></gui>",
             FirstWidget, "-,-,a;b;,1,0,0"},
            {"BaseChildrenMustComeFirst",
             "<gui><widget id='w'><show-event event='S'/><signal event='E' signal='2s()'/>"
             "</widget></gui>",
             FirstWidget, "show:S,-,,0,0,0"},
            {"CutStopsAtItsParentOnly",
             "<gui><widget id='w'><unknown/><button id='b'/></widget><widget id='v'/>"
             "<action id='a'/></gui>",
             [](const Config::KtmStat& m)
             {
                 return std::to_string(m.gui()->widget().size()) + "," +
                        std::to_string(m.gui()->action().size()) + "," +
                        ButtonIds(m.gui()->widget().front());
             },
             "2,1,"},
            {"InterfaceOutOfOrderEndsInstances",
             "<instances><ICaptureInfo><start event='CAPTURE_START'/></ICaptureInfo>"
             "<IScheduler/><IConverter/></instances>",
             CaptureInfo, "-,-,start:CAPTURE_START,stop:-,cancel:-"},
            {"CallbackOutOfOrderEndsInterface",
             "<instances><ICaptureInfo><stop event='CAPTURE_STOP'/><start event='X'/>"
             "<cancel event='Y'/></ICaptureInfo><IConverter/></instances>",
             CaptureInfo, "-,converter,start:-,stop:CAPTURE_STOP,cancel:-"},
            {"RepeatedCallbackEndsInterface",
             "<instances><ICaptureInfo><start event='A'/><start event='B'/>"
             "<stop event='C'/></ICaptureInfo></instances>",
             CaptureInfo, "-,-,start:A,stop:-,cancel:-"},
            {"ParamsWithTheSameKeyKeptInOrder",
             "<instances><IScheduler><start event='S'><param key='K' value='1'/>"
             "<param key='K' value='2'/></start></IScheduler></instances>",
             [](const Config::KtmStat& m)
             {
                 return Join(m.instances()->IScheduler()->start()->param(),
                             [](const auto& p) { return p.key() + "=" + p.value(); });
             },
             "K=1;K=2;"},
            {"ErrorsInsideACutAreNotSeen",
             "<gui/><gui><object/></gui><instances><IScheduler><start/></IScheduler>"
             "</instances>",
             Sections, "gui,-"},
            {"BooleanForms",
             "<gui><object id='a' idIsRoot='1' idIsRegExp='0'/><object id='b' "
             "idIsRoot=' true ' idIsRegExp='false'/><object id='c'/></gui>",
             [](const Config::KtmStat& m)
             {
                 return Join(
                     m.gui()->object(), [](const auto& o)
                     { return std::to_string(o.idIsRoot()) + std::to_string(o.idIsRegExp()); });
             },
             "10;10;00;"},
            {"IntegerDataAndItsDefault",
             "<gui><widget id='w'><combobox id='a'><current-index-changed-event event='E' "
             "data=' -7 '/></combobox><combobox id='b'><current-index-changed-event "
             "event='F'/></combobox></widget></gui>",
             [](const Config::KtmStat& m)
             {
                 return Join(m.gui()->widget().front().combobox(), [](const auto& c)
                             { return std::to_string(c.current_index_changed_event()->data()); });
             },
             "-7;256;"},
        });

// ---- the filter and aggregator documents ---------------------------------------------------

// One `param` rule, summed up by each row's probe.
struct ParamRow
{
    const char* label;
    std::string matchers;  // children of <param key="K">
    std::function<std::string(const Filter::Param&)> probe;
    std::string expected;
};
using FilterParamTest = KtTest::Table<ParamRow>;

TEST_P(FilterParamTest, KeepsEachKindInDocumentOrder)
{
    const auto model =
        ParseFilter("<filter><event event='E'><param key='K'>" + GetParam().matchers +
                    "</param><param key='L'/></event></filter>");
    ASSERT_EQ(model->event().front().param().size(), 2u);
    EXPECT_EQ(GetParam().probe(model->event().front().param().front()), GetParam().expected);
}

std::string Matchers(const Filter::Param& p)
{
    const auto value = [](const auto& m) { return m.value(); };
    return Join(p.equal(), value) + "|" + Join(p.startsWith(), value) + "|" +
           Join(p.contains(), value) + "|" + std::to_string(p.any().size());
}

std::string Actions(const Filter::Param& p)
{
    const Filter::Matcher& m = p.equal().front();
    return (m.setValue() ? m.setValue()->value() : "-") + "|" +
           Join(m.addParam(), [](const auto& a) { return a.key() + "=" + a.value(); }) + "|" +
           Join(m.modEvent(), [](const auto& e) { return e.name(); }) + "|" +
           Join(m.delParam(), [](const auto& d) { return d.key(); });
}

KT_ROWS(FilterParamTest,
        {
            {"MatcherKindsInterleaved",
             "<any/><equal value='a'/><contains value='c1'/><startsWith value='s'/>"
             "<equal value='b'/><contains value='c2'/><any/>",
             Matchers, "a;b;|s;|c1;c2;|2"},
            {"ActionKindsInterleaved",
             "<equal value=''><delParam key='D1'/><addParam key='A' value='1'/>"
             "<modEvent name='M'/><setValue value='V'/><delParam key='D2'/>"
             "<addParam key='B' value='2'/></equal>",
             Actions, "V|A=1;B=2;|M;|D1;D2;"},
            {"SecondSetValueEndsTheMatcher",
             "<equal value='x'><setValue value='1'/><setValue value='2'/>"
             "<addParam key='A' value='1'/></equal>",
             Actions, "1|||"},
            {"UnknownMatcherEndsTheParam", "<equal value='a'/><regex value='r'/><equal value='b'/>",
             Matchers, "a;|||0"},
            // 10737418240 must not be cut to 32 bits.
            {"RangeBounds",
             "<inRange to='10737418240'/><inRange from='-1.5e3' to=' 12 '/><inRange/>"
             "<inRange from='INF'/>",
             [](const Filter::Param& p)
             {
                 return Join(p.inRange(),
                             [](const auto& r)
                             {
                                 return (r.from() ? std::to_string(*r.from()) : "-") + ".." +
                                        (r.to() ? std::to_string(*r.to()) : "-");
                             });
             },
             "-..10737418240.000000;-1500.000000..12.000000;-..-;inf..-;"},
            {"BooleanDefaultsAndForms",
             "<any/><any actOn='false'><skipEvent/><skipEvent skipFullRepeats='1'/></any>"
             "<any actOn='true'><skipEvent skipFullRepeats='false'/></any>",
             [](const Filter::Param& p)
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
             },
             "1;001;10;"},
        });

// (The filter's blocks in document order: FilterKtTrackerTest.)
TEST(RuleDocumentsTest, AggregatorBlocksAndNamesKeptAsWrittenInDocumentOrder)
{
    std::istringstream input(
        "<aggregator><event event='CAPTURE_START'><affectingEventName>B</affectingEventName>"
        "<affectingEventName> H </affectingEventName></event><event event='EMPTY'/>"
        "<event event='CAPTURE_STOP'><affectingEventName>H</affectingEventName></event>"
        "</aggregator>");
    const auto aggregator = Config::Aggregator::aggregator(input, kUnvalidated);
    EXPECT_EQ(Join(aggregator->event(),
                   [](const auto& e)
                   {
                       return e.event() + ":" +
                              Join(e.affectingEventName(),
                                   [](const auto& n) { return "[" + n + "]"; });
                   }),
              "CAPTURE_START:[B];[ H ];;EMPTY:;CAPTURE_STOP:[H];;");
}

// ---- rejected documents ----------------------------------------------------------------------

// Read by the reader of the document's intended root: 'm'ain, 'f'ilter or 'a'ggregator.
struct RejectRow
{
    const char* label;
    char reader;
    std::string document;
    std::string description;  // a part of the data binding's description
};
using DocumentRejectTest = KtTest::Table<RejectRow>;

TEST_P(DocumentRejectTest, ThrowsWithDescription)
{
    const RejectRow& row = GetParam();
    std::istringstream input(row.document);
    try
    {
        row.reader == 'm'   ? (void)Config::ktmstat(input, kUnvalidated)
        : row.reader == 'f' ? (void)Filter::filter(input, kUnvalidated)
                            : (void)Config::Aggregator::aggregator(input, kUnvalidated);
        FAIL() << "parsed";
    }
    catch (const ::xml_schema::exception& e)
    {
        std::ostringstream description;
        description << e;
        EXPECT_NE(description.str().find(row.description), std::string::npos) << description.str();
    }
}

const std::string kParam = "<filter><event event='E'><param key='K'>";
const std::string kEnd = "</param></event></filter>";

KT_ROWS(DocumentRejectTest,
        {
            // Required attributes: one mechanism, one row per kind of document.
            {"ObjectWithoutId", 'm', "<ktmstat><gui><object/></gui></ktmstat>",
             "expected attribute 'id'"},
            {"ModEventWithoutName", 'f', kParam + "<any><modEvent/></any>" + kEnd,
             "expected attribute 'name'"},
            // Values that do not convert, at their position.
            {"NotABoolean", 'm', "<ktmstat><gui><object id='o' idIsRoot='yes'/></gui></ktmstat>",
             ":1:46 error: invalid boolean value 'yes' of attribute 'idIsRoot'"},
            {"NotAnInteger", 'm',
             "<ktmstat><gui><widget id='w'><combobox id='c'>\n<current-index-changed-event "
             "event='E' data='2x'/></combobox></widget></gui></ktmstat>",
             ":2:51 error: invalid int value '2x' of attribute 'data'"},
            {"IntegerOutOfRange", 'm',
             "<ktmstat><gui><widget id='w'><combobox id='c'><current-index-changed-event "
             "event='E' data='4294967296'/></combobox></widget></gui></ktmstat>",
             "invalid int value '4294967296'"},
            {"ToWithTrailingText", 'f', kParam + "<inRange to='12abc'/>" + kEnd,
             "invalid double value '12abc'"},
            {"EmptyBound", 'f', kParam + "<inRange to=''/>" + kEnd, "invalid double value ''"},
            {"ActOnCapitalised", 'f', kParam + "<any actOn='True'/>" + kEnd,
             "invalid boolean value 'True'"},
            {"FirstBadValueInDocumentOrder", 'm',
             "<ktmstat><gui><object id='o' idIsRoot='on'/><object id='p' idIsRoot='yes'/>"
             "</gui></ktmstat>",
             "invalid boolean value 'on'"},
            {"XmlErrorAfterABadValueWins", 'm',
             "<ktmstat><gui><object id='o' idIsRoot='yes'/></gui></ktmstat",
             "unterminated end tag 'ktmstat'"},
            // Roots.
            {"MainGivenFilter", 'm', "<filter/>", "expected element 'ktmstat' instead of 'filter'"},
            {"RootInANamespace", 'm', "<ktmstat xmlns='urn:x'/>",
             "expected element 'ktmstat' instead of 'urn:x#ktmstat'"},
            {"FilterGivenKtmstat", 'f', "<ktmstat/>",
             "expected element 'filter' instead of 'ktmstat'"},
            {"AggregatorGivenFilter", 'a', "<filter/>",
             "expected element 'aggregator' instead of 'filter'"},
        });

}  // namespace
