// Document text may come from anywhere. Each hostile classic goes to the stage that reads its
// kind over an earlier document: it is refused with a logged reason, or read with a defined
// meaning, in bounded time and memory, never reading a file through an entity. A refused
// document leaves the earlier one in force.

#include "Support/LaunchAndCrashDoubles.h"
#include "Support/LogCapture.h"
#include "Support/RecordingTracker.h"
#include "Support/Table.h"

#include "App/ILaunchTypeProcessor.h"
#include "Tracking/AggregatorKtTracker.h"
#include "Tracking/Config/KtmStat.h"
#include "Tracking/FilterKtTracker.h"
#include "Tracking/StatisticsManager.h"

#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace Config = Velkor::KT::Tracking::Config;
namespace Tracking = Velkor::KT::Tracking;
using Tracking::Event;

namespace
{

const char* const kSecret = "TOP-SECRET-7d1f";

// A stage that reads one document kind: SetConfig, and a probe that tells which document is in
// force by what it delivers ("NAME" per event, "NAME{K=V}" with the probe's key).
class Stage
{
public:
    virtual ~Stage() = default;
    virtual void SetConfig(const std::string& text) = 0;
    virtual std::vector<std::string> Probe() = 0;

protected:
    static std::vector<std::string> Describe(const std::vector<Event>& events)
    {
        std::vector<std::string> names;
        for (const Event& event : events)
        {
            const auto probe = event.params.find("K");
            names.push_back(event.name +
                            (probe == event.params.end() ? "" : "{K=" + probe->second + "}"));
        }
        return names;
    }

    const std::shared_ptr<KtTest::RecordingTracker> m_delivered =
        std::make_shared<KtTest::RecordingTracker>();
};

// PROBE{K=1e308}: the earlier rules rename it PROBE_SEEN.
class FilterStage : public Stage
{
public:
    FilterStage()
    {
        m_filter.SetConfig(
            "<filter><event event='PROBE'><param key='K'>"
            "<any><modEvent name='PROBE_SEEN'/></any></param></event></filter>");
    }
    void SetConfig(const std::string& text) override { m_filter.SetConfig(text); }
    std::vector<std::string> Probe() override
    {
        m_delivered->Clear();
        m_filter.Track({"PROBE", {{"K", "1e308"}}});
        return Describe(m_delivered->Events());
    }

private:
    Tracking::FilterKtTracker m_filter{m_delivered};
};

// PROBE then MAIN: the earlier rules merge PROBE's params into MAIN.
class AggregatorStage : public Stage
{
public:
    AggregatorStage()
    {
        m_aggregator.SetConfig(
            "<aggregator><event event='MAIN'><affectingEventName>PROBE</affectingEventName>"
            "</event></aggregator>");
    }
    void SetConfig(const std::string& text) override { m_aggregator.SetConfig(text); }
    std::vector<std::string> Probe() override
    {
        m_delivered->Clear();
        m_aggregator.Track({"PROBE", {{"K", "v"}}});
        m_aggregator.Track({"MAIN", {}});
        return Describe(m_delivered->Events());
    }

private:
    Tracking::AggregatorKtTracker m_aggregator{m_delivered};
};

// A widget "probe" attached and shown: the earlier document reports PROBE_SHOWN.
class MainStage : public Stage
{
public:
    MainStage()
        : m_manager(m_delivered, nullptr, nullptr, nullptr,
                    std::make_shared<KtTest::FixedLaunchType>(
                        Velkor::App::ILaunchTypeProcessor::EveryStart),
                    std::make_shared<KtTest::ListCrashTracker>(std::vector<std::string>{}), nullptr,
                    {})
    {
        m_manager.SetConfig(
            "<ktmstat><gui><widget id='probe'><show-event event='PROBE_SHOWN'/></widget></gui>"
            "</ktmstat>");
    }
    void SetConfig(const std::string& text) override { m_manager.SetConfig(text); }
    std::vector<std::string> Probe() override
    {
        m_delivered->Clear();
        QWidget probe;
        probe.setObjectName("probe");
        m_manager.AttachAllTopLevelWindows();
        m_manager.AttachQObject(&probe);
        probe.show();
        return Describe(m_delivered->Events());
    }

private:
    Tracking::StatisticsManager m_manager;
};

struct RootRow
{
    const char* root;
    const char* logPrefix;
    std::function<std::unique_ptr<Stage>()> make;
    std::vector<std::string> earlierProbe;  // what the probe delivers under the earlier document
};

const RootRow kRoots[] = {
    {"ktmstat",
     "Can't read configuration: ",
     [] { return std::make_unique<MainStage>(); },
     {"PROBE_SHOWN"}},
    {"filter",
     "Can't parse configuration: ",
     [] { return std::make_unique<FilterStage>(); },
     {"PROBE_SEEN{K=1e308}"}},
    {"aggregator",
     "Can't parse configuration: ",
     [] { return std::make_unique<AggregatorStage>(); },
     {"MAIN{K=v}"}},
};

// A document around %ROOT%, for every root or for one. %DIR% is the directory of the secret
// files; %DEEP%, %50MB% and %PARENS% stand for 100,000 nested elements, 50 MB of text and 10,500
// opening parentheses. Refused with a reason that contains `refusal`, or, with no refusal, read:
// the probe then delivers `readProbe`.
struct HostileRow
{
    const char* label;
    std::string text;
    const char* onlyRoot;  // null: every root
    const char* refusal;
    std::vector<std::string> readProbe;
};

std::string Replace(std::string text, const std::string& from, const std::string& to)
{
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::string BillionLaughs()
{
    std::string dtd = "<!DOCTYPE %ROOT% [<!ENTITY l0 'lol'>";
    for (int i = 1; i < 10; ++i)
    {
        dtd += "<!ENTITY l" + std::to_string(i) + " '";
        for (int j = 0; j < 10; ++j)
        {
            dtd += "&l" + std::to_string(i - 1) + ";";
        }
        dtd += "'>";
    }
    return dtd + "]><%ROOT%><event event='&l9;'/></%ROOT%>";
}

std::string Repeated(int count, const std::string& text)
{
    std::string result;
    result.reserve(count * text.size());
    for (int i = 0; i < count; ++i)
    {
        result += text;
    }
    return result;
}

// A filter whose PROBE rule tests K against one inRange bound: PROBE_IN or PROBE_OUT.
std::string RangeRule(const std::string& bound)
{
    return "<%ROOT%><event event='PROBE'><param key='K'><inRange " + bound +
           "><modEvent name='PROBE_IN'/></inRange><any><modEvent name='PROBE_OUT'/></any>"
           "</param></event></%ROOT%>";
}

const char* const kDoctype = "document type declarations (<!DOCTYPE ...>) are not allowed";

const HostileRow kHostile[] = {
    {"BillionLaughs", BillionLaughs(), nullptr, kDoctype, {}},
    {"InternalSubset", "<!DOCTYPE %ROOT% [<!ENTITY x 'y'>]><%ROOT%/>", nullptr, kDoctype, {}},
    {"ExternalEntity",
     "<!DOCTYPE %ROOT% [<!ENTITY s SYSTEM 'file://%DIR%/secret.txt'>]>"
     "<%ROOT%><event event='&s;'>&s;</event></%ROOT%>",
     nullptr,
     kDoctype,
     {}},
    {"ExternalDtd",
     "<!-- a comment first -->\n<!DOCTYPE %ROOT% SYSTEM 'file://%DIR%/secret.dtd'><%ROOT%/>",
     nullptr,
     kDoctype,
     {}},
    {"ParameterEntity",
     "<?xml version='1.0'?><!DOCTYPE %ROOT% [<!ENTITY % p SYSTEM 'file://%DIR%/secret.txt'> "
     "%p;]><%ROOT%/>",
     nullptr,
     kDoctype,
     {}},
    {"UndeclaredEntity",
     "<%ROOT%><event event='&undeclared;'/></%ROOT%>",
     nullptr,
     "entity 'undeclared' not found",
     {}},
    // Refused while scanning, before the parser's cost grows with the square of the depth.
    {"DeepNesting",
     "<%ROOT%>%DEEP%</%ROOT%>",
     nullptr,
     "elements nested deeper than 200 levels",
     {}},
    // Refused before it is parsed (it cost some 820 MB when it was parsed).
    {"HugeAttribute",
     "<%ROOT%><event event='%50MB%'/></%ROOT%>",
     nullptr,
     "document larger than 1048576 bytes",
     {}},
    {"NotUtf8", "<%ROOT%><event event='\xff\xfe\xc3'/></%ROOT%>", nullptr, "invalid byte", {}},
    {"NulInText",
     std::string("<%ROOT%>\n<!-- a\0b -->\n</%ROOT%>", 30),
     nullptr,
     "2:7 error: byte 0 (NUL) is not allowed in a document",
     {}},
    {"NulAfterRoot",
     std::string("<%ROOT%/>\0<x/>", 14),
     nullptr,
     "error: byte 0 (NUL) is not allowed in a document",
     {}},
    {"TwoRoots", "<%ROOT%/><%ROOT%/>", nullptr, "comment or processing instruction expected", {}},
    // The bounds of inRange: XML Schema doubles. Numbers beyond the range of a double are
    // infinities, INF and -INF are the infinities, NaN compares false with everything, so
    // nothing is in a range with a NaN bound; other spellings are refused.
    {"RangeBound1e400", RangeRule("from='1e400'"), "filter", nullptr, {"PROBE_OUT{K=1e308}"}},
    {"RangeBoundMinusINF",
     RangeRule("from='-INF' to='1e400'"),
     "filter",
     nullptr,
     {"PROBE_IN{K=1e308}"}},
    {"RangeBoundNaN", RangeRule("to='NaN'"), "filter", nullptr, {"PROBE_OUT{K=1e308}"}},
    {"RangeBoundLowerNan",
     RangeRule("from='nan'"),
     "filter",
     "invalid double value 'nan' of attribute 'from' of element 'inRange'",
     {}},
    {"RangeBoundLowerMinusInf",
     RangeRule("to='-inf'"),
     "filter",
     "invalid double value '-inf' of attribute 'to' of element 'inRange'",
     {}},
    // QRegExp would overflow the stack parsing this id when the windows are attached.
    {"ExpressionNesting",
     "<%ROOT%><gui>\n  <widget id='%PARENS%' idIsRegExp='true'/></gui></%ROOT%>",
     "ktmstat",
     "2:10536 error: the expression in attribute 'id' of element 'widget' ('((((",
     {}},
    // ... and spell out a billion states for this one.
    {"ExpressionRepetition",
     "<%ROOT%><gui><widget id='p:((a{1000}){1000}){1000}' idIsRegExp='1'/></gui></%ROOT%>",
     "ktmstat",
     "has more than 10000 atoms once its repetitions are spelt out",
     {}},
};

// A hostile document for one root: "ROOT_LABEL".
struct CaseRow
{
    std::string label;
    RootRow root;
    HostileRow hostile;
};

// A directory with the files the entities name, for the life of the process.
std::string SecretDirectory()
{
    static const QTemporaryDir directory;
    static const bool written = []
    {
        const std::string path = directory.path().toStdString();
        std::ofstream(path + "/secret.txt") << kSecret;
        std::ofstream(path + "/secret.dtd") << "<!ENTITY leak '" << kSecret << "'>";
        return true;
    }();
    (void)written;
    return directory.path().toStdString();
}

long PeakKilobytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

using HostileDocumentTest = KtTest::Table<CaseRow>;

TEST_P(HostileDocumentTest, RefusedOrReadAsDefined)
{
    const RootRow& root = GetParam().root;
    const HostileRow& hostile = GetParam().hostile;
    const std::pair<const char*, std::function<std::string()>> expansions[] = {
        {"%ROOT%", [&] { return std::string(root.root); }},
        {"%DIR%", [] { return SecretDirectory(); }},
        {"%DEEP%", [] { return Repeated(100000, "<x>") + Repeated(100000, "</x>"); }},
        {"%50MB%", [] { return std::string(50 << 20, 'x'); }},
        {"%PARENS%", [] { return std::string(10500, '('); }},
    };
    std::string text = hostile.text;
    for (const auto& [token, expansion] : expansions)
    {
        if (text.find(token) != std::string::npos)
        {
            text = Replace(text, token, expansion());
        }
    }
    const std::unique_ptr<Stage> stage = root.make();
    ASSERT_EQ(stage->Probe(), root.earlierProbe);

    KtTest::LogCapture log;
    const long peakBefore = PeakKilobytes();
    const auto start = std::chrono::steady_clock::now();
    stage->SetConfig(text);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_LT(PeakKilobytes() - peakBefore, 256 * 1024);

    const std::vector<std::string> messages = log.Messages();
    if (hostile.refusal)
    {
        ASSERT_EQ(messages.size(), 1u);
        EXPECT_EQ(messages[0].rfind(root.logPrefix, 0), 0u) << messages[0];
        EXPECT_NE(messages[0].find(hostile.refusal), std::string::npos) << messages[0];
        EXPECT_EQ(messages[0].find(kSecret), std::string::npos) << messages[0];
        EXPECT_EQ(stage->Probe(), root.earlierProbe);
    }
    else
    {
        EXPECT_TRUE(messages.empty()) << messages.front();
        EXPECT_EQ(stage->Probe(), hostile.readProbe);
    }
}

std::vector<CaseRow> Cases()
{
    std::vector<CaseRow> cases;
    for (const RootRow& root : kRoots)
    {
        for (const HostileRow& hostile : kHostile)
        {
            if (!hostile.onlyRoot || std::string(hostile.onlyRoot) == root.root)
            {
                cases.push_back({std::string(root.root) + "_" + hostile.label, root, hostile});
            }
        }
    }
    return cases;
}

KT_ROWS(HostileDocumentTest, Cases());

// Real documents nest far less; the limit leaves room for them.
TEST(HostileDocumentNestingTest, ModerateNestingIsRead)
{
    std::istringstream input("<ktmstat><gui>" + Repeated(150, "<widget id='w'>") +
                             Repeated(150, "</widget>") + "</gui></ktmstat>");
    const auto model = Config::ktmstat(input, ::xml_schema::flags::dont_validate);
    int depth = 0;
    for (const auto* widgets = &model->gui()->widget(); !widgets->empty();
         widgets = &widgets->front().widget())
    {
        ++depth;
    }
    EXPECT_EQ(depth, 150);
}

// Expressions of real ids are read, up to the bounds; escaped parentheses and those inside a
// class open no group, and an id that is not an expression is not one.
TEST(HostileDocumentNestingTest, ExpressionsWithinTheBoundsAreRead)
{
    const std::string nested = std::string(32, '(') + "a" + std::string(32, ')');
    std::string escaped;
    for (int i = 0; i < 40; ++i)
    {
        escaped += "\\(";
    }
    std::istringstream input(
        "<ktmstat><gui><widget id='Main.*:(rec|stop)[]x-]Button{2,3}:" + nested +
        ":(a{100}){100}:" + escaped + ":[" + std::string(40, '(') +
        "]' idIsRegExp='true'/><widget id='" + std::string(40, '(') + "'/></gui></ktmstat>");
    const auto model = Config::ktmstat(input, ::xml_schema::flags::dont_validate);
    EXPECT_EQ(model->gui()->widget().size(), 2u);
}

}  // namespace
