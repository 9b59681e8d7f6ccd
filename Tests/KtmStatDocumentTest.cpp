#include "Tracking/Config/KtmStat.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>

namespace Config = Velkor::KT::Tracking::Config;

namespace
{

std::unique_ptr<Config::KtmStat> Parse(const std::string& text)
{
    std::istringstream input(text);
    return Config::ktmstat(input, ::xml_schema::flags::dont_validate);
}

std::string Describe(const ::xml_schema::exception& e)
{
    std::ostringstream out;
    out << e;
    return out.str();
}

std::string Ids(const Config::Widget::button_sequence& buttons)
{
    std::string ids;
    for (const auto& button : buttons)
    {
        ids += button.id() + ";";
    }
    return ids;
}

// What a document keeps after reading, summed up as text by each row's own probe.
struct ReadRow
{
    const char* label;
    std::string body;  // children of the root element
    std::function<std::string(const Config::KtmStat&)> probe;
    std::string expected;
};

void PrintTo(const ReadRow& row, std::ostream* out)
{
    *out << row.label;
}

class KtmStatReadTest : public testing::TestWithParam<ReadRow>
{
};

TEST_P(KtmStatReadTest, KeepsWhatTheReadingRulesKeep)
{
    const ReadRow& row = GetParam();
    const auto model = Parse("<ktmstat>" + row.body + "</ktmstat>");
    ASSERT_TRUE(model);
    EXPECT_EQ(row.probe(*model), row.expected);
}

std::string Sections(const Config::KtmStat& m)
{
    return std::string(m.gui() ? "gui" : "-") + "," + (m.instances() ? "instances" : "-");
}

std::string FirstWidget(const Config::KtmStat& m)
{
    const Config::Widget& w = m.gui()->widget().front();
    return std::string(w.show_event() ? "show:" + w.show_event()->event() : "-") + "," +
           (w.close_event() ? "close:" + w.close_event()->event() : "-") + "," + Ids(w.button()) +
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

INSTANTIATE_TEST_SUITE_P(
    Order, KtmStatReadTest,
    testing::Values(
        ReadRow{"BothSectionsInOrder", "<gui/><instances/>", Sections, "gui,instances"},
        ReadRow{"InstancesBeforeGuiLeavesNoGui", "<instances/><gui/>", Sections, "-,instances"},
        ReadRow{"SecondGuiEndsReading", "<gui/><gui/><instances/>", Sections, "gui,-"},
        ReadRow{"UnknownChildEndsReading", "<gui/><extra/><instances/>", Sections, "gui,-"},
        ReadRow{"ChildInANamespaceIsUnknown", "<x:gui xmlns:x='urn:x'/><instances/>", Sections,
                "-,-"},
        ReadRow{"CommentsAndTextAreSkipped", "<!--a--> <gui/>\r\n<!--b--><instances/>", Sections,
                "gui,instances"},
        ReadRow{"EmptyRoot", "", Sections, "-,-"},
        ReadRow{"CloseBeforeShowKeepsOnlyClose",
                "<gui><widget id='w'><close-event event='C'/><show-event event='S'/>"
                "<button id='b'/></widget></gui>",
                FirstWidget, "-,close:C,,0,0,0"},
        ReadRow{"ButtonAfterComboboxIgnoredWithLaterSiblings",
                "<gui><widget id='w'><button id='a'/><button id='b'/><combobox id='c'/>"
                "<button id='d'/><label id='l'/></widget></gui>",
                FirstWidget, "-,-,a;b;,1,0,0"},
        ReadRow{"BaseChildrenMustComeFirst",
                "<gui><widget id='w'><show-event event='S'/><signal event='E' signal='2s()'/>"
                "</widget></gui>",
                FirstWidget, "show:S,-,,0,0,0"},
        ReadRow{"CutStopsAtItsParentOnly",
                "<gui><widget id='w'><unknown/><button id='b'/></widget><widget id='v'/>"
                "<action id='a'/></gui>",
                [](const Config::KtmStat& m)
                {
                    return std::to_string(m.gui()->widget().size()) + "," +
                           std::to_string(m.gui()->action().size()) + "," +
                           Ids(m.gui()->widget().front().button());
                },
                "2,1,"},
        ReadRow{"InterfaceOutOfOrderEndsInstances",
                "<instances><ICaptureInfo><start event='CAPTURE_START'/></ICaptureInfo>"
                "<IScheduler/><IConverter/></instances>",
                CaptureInfo, "-,-,start:CAPTURE_START,stop:-,cancel:-"},
        ReadRow{"CallbackOutOfOrderEndsInterface",
                "<instances><ICaptureInfo><stop event='CAPTURE_STOP'/><start event='X'/>"
                "<cancel event='Y'/></ICaptureInfo><IConverter/></instances>",
                CaptureInfo, "-,converter,start:-,stop:CAPTURE_STOP,cancel:-"},
        ReadRow{"RepeatedCallbackEndsInterface",
                "<instances><ICaptureInfo><start event='A'/><start event='B'/>"
                "<stop event='C'/></ICaptureInfo></instances>",
                CaptureInfo, "-,-,start:A,stop:-,cancel:-"},
        ReadRow{"ParamsWithTheSameKeyKeptInOrder",
                "<instances><IScheduler><start event='S'><param key='K' value='1'/>"
                "<param key='K' value='2'/></start></IScheduler></instances>",
                [](const Config::KtmStat& m)
                {
                    std::string out;
                    for (const auto& p : m.instances()->IScheduler()->start()->param())
                    {
                        out += p.key() + "=" + p.value() + ";";
                    }
                    return out;
                },
                "K=1;K=2;"},
        ReadRow{"ErrorsInsideACutAreNotSeen",
                "<gui/><gui><object/></gui><instances><IScheduler><start/></IScheduler>"
                "</instances>",
                Sections, "gui,-"}));

INSTANTIATE_TEST_SUITE_P(
    Values, KtmStatReadTest,
    testing::Values(
        ReadRow{"BooleanForms",
                "<gui><object id='a' idIsRoot='1' idIsRegExp='0'/><object id='b' "
                "idIsRoot=' true ' idIsRegExp='false'/><object id='c'/></gui>",
                [](const Config::KtmStat& m)
                {
                    std::string out;
                    for (const auto& o : m.gui()->object())
                    {
                        out += std::to_string(o.idIsRoot()) + std::to_string(o.idIsRegExp());
                    }
                    return out;
                },
                "101000"},
        ReadRow{"IntegerDataAndItsDefault",
                "<gui><widget id='w'><combobox id='a'><current-index-changed-event event='E' "
                "data=' -7 '/></combobox><combobox id='b'><current-index-changed-event "
                "event='F'/></combobox></widget></gui>",
                [](const Config::KtmStat& m)
                {
                    std::string out;
                    for (const auto& c : m.gui()->widget().front().combobox())
                    {
                        out += std::to_string(c.current_index_changed_event()->data()) + ";";
                    }
                    return out;
                },
                "-7;256;"}));

// Documents the whole of which is rejected, with the data binding's description.
struct RejectRow
{
    const char* label;
    std::string document;
    std::string description;  // a part of the description
};

void PrintTo(const RejectRow& row, std::ostream* out)
{
    *out << row.label;
}

class KtmStatRejectTest : public testing::TestWithParam<RejectRow>
{
};

TEST_P(KtmStatRejectTest, ThrowsWithDescription)
{
    const RejectRow& row = GetParam();
    try
    {
        Parse(row.document);
        FAIL() << "parsed";
    }
    catch (const ::xml_schema::exception& e)
    {
        EXPECT_NE(Describe(e).find(row.description), std::string::npos) << Describe(e);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Documents, KtmStatRejectTest,
    testing::Values(
        RejectRow{"ObjectWithoutId", "<ktmstat><gui><object/></gui></ktmstat>",
                  "expected attribute 'id'"},
        RejectRow{"EventWithoutEvent",
                  "<ktmstat><gui><widget id='w'><show-event/></widget></gui></ktmstat>",
                  "expected attribute 'event'"},
        RejectRow{"ParamWithoutKey",
                  "<ktmstat><instances><IScheduler><start event='S'><param value='v'/>"
                  "</start></IScheduler></instances></ktmstat>",
                  "expected attribute 'key'"},
        RejectRow{"ParamWithoutValue",
                  "<ktmstat><instances><IScheduler><start event='S'><param key='k'/>"
                  "</start></IScheduler></instances></ktmstat>",
                  "expected attribute 'value'"},
        RejectRow{"SignalWithoutSignal",
                  "<ktmstat><gui><object id='o'><signal event='E'/></object></gui></ktmstat>",
                  "expected attribute 'signal'"},
        RejectRow{"NotABoolean", "<ktmstat><gui><object id='o' idIsRoot='yes'/></gui></ktmstat>",
                  ":1:46 error: invalid boolean value 'yes' of attribute 'idIsRoot'"},
        RejectRow{"NotAnInteger",
                  "<ktmstat><gui><widget id='w'><combobox id='c'>\n<current-index-changed-event "
                  "event='E' data='2x'/></combobox></widget></gui></ktmstat>",
                  ":2:51 error: invalid int value '2x' of attribute 'data'"},
        RejectRow{"IntegerOutOfRange",
                  "<ktmstat><gui><widget id='w'><combobox id='c'><current-index-changed-event "
                  "event='E' data='4294967296'/></combobox></widget></gui></ktmstat>",
                  "invalid int value '4294967296'"},
        RejectRow{"FirstBadValueInDocumentOrder",
                  "<ktmstat><gui><object id='o' idIsRoot='on'/><object id='p' idIsRoot='yes'/>"
                  "</gui></ktmstat>",
                  "invalid boolean value 'on'"},
        RejectRow{"XmlErrorAfterABadValueWins",
                  "<ktmstat><gui><object id='o' idIsRoot='yes'/></gui></ktmstat",
                  "unterminated end tag 'ktmstat'"},
        RejectRow{"FilterRoot", "<filter/>", "expected element 'ktmstat' instead of 'filter'"},
        RejectRow{"RootInANamespace", "<ktmstat xmlns='urn:x'/>",
                  "expected element 'ktmstat' instead of 'urn:x#ktmstat'"},
        RejectRow{"NotWellFormed", "<ktmstat>\n<gui>\n</ktmstat>", ":3:"},
        RejectRow{"Empty", "", "error"}));

TEST(KtmStatDocumentTest, WrongSchemaLocationReadsLikeTheRightOne)
{
    const std::string body =
        "><gui><object id='o'><signal event='E' signal='2s()'/></object></gui></ktmstat>";
    const std::string xsi = "<ktmstat xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' ";
    const auto right = Parse(xsi + "xsi:noNamespaceSchemaLocation='KtmStat.xsd'" + body);
    const auto wrong = Parse(xsi + "xsi:noNamespaceSchemaLocation='C:/nowhere/none.xsd'" + body);
    EXPECT_EQ(*right, *wrong);
    EXPECT_EQ(wrong->gui()->object().front().signal().front().signal(), "2s()");
}

}  // namespace
