// Document text may come from anywhere. Each hostile classic goes to the stage that reads its
// kind over an earlier document: it is refused with a logged reason, or read with a defined
// meaning, in bounded time and memory, never reading a file through an entity. A refused
// document leaves the earlier one in force.

#include "Support/EventText.h"
#include "Support/LaunchAndCrashDoubles.h"
#include "Support/LogCapture.h"
#include "Support/RecordingTracker.h"
#include "Support/Table.h"

#include "App/ILaunchTypeProcessor.h"
#include "Tracking/Manager/StatisticsManager.h"
#include "Tracking/Rules/AggregatorKtTracker.h"
#include "Tracking/Rules/FilterKtTracker.h"

#include <QString>
#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Tracking = Velkor::KT::Tracking;

namespace
{

const char* const kSecret = "TOP-SECRET-7d1f";

// A stage that reads one document kind over an earlier document, and a probe that tells which
// document is in force by the events it delivers, in EventsText's form.
struct Stage
{
    std::shared_ptr<KtTest::RecordingTracker> delivered =
        std::make_shared<KtTest::RecordingTracker>();
    std::function<void(const std::string&)> setConfig;
    std::function<void()> probe;

    std::string Probe()
    {
        delivered->Clear();
        probe();
        return KtTest::EventsText(delivered->Events());
    }
};

// The stage's tracker on `stage.delivered`, read with `earlier`, probed by `probe`.
template <class Tracker, class... Args>
std::shared_ptr<Tracker> Make(Stage& stage, const char* earlier, Args&&... args)
{
    auto tracker = std::make_shared<Tracker>(stage.delivered, std::forward<Args>(args)...);
    stage.setConfig = [tracker](const std::string& text) { tracker->SetConfig(text); };
    tracker->SetConfig(earlier);
    return tracker;
}

struct RootRow
{
    const char* root;
    const char* logPrefix;
    std::function<void(Stage&)> make;
    std::string earlierProbe;  // what the probe delivers under the earlier document
};

const RootRow kRoots[] = {
    // A widget "probe" attached and shown: the earlier document reports PROBE_SHOWN.
    {"ktmstat", "Can't read configuration: ",
     [](Stage& stage)
     {
         auto manager = Make<Tracking::StatisticsManager>(
             stage,
             "<ktmstat><gui><widget id='probe'><show-event event='PROBE_SHOWN'/></widget></gui>"
             "</ktmstat>",
             nullptr, nullptr, nullptr,
             std::make_shared<KtTest::FixedLaunchType>(
                 Velkor::App::ILaunchTypeProcessor::EveryStart),
             std::make_shared<KtTest::ListCrashTracker>(std::vector<std::string>{}), nullptr,
             std::vector<Tracking::FillerTypes>{});
         stage.probe = [manager]
         {
             QWidget probe;
             probe.setObjectName("probe");
             manager->AttachAllTopLevelWindows();
             manager->AttachQObject(&probe);
             probe.show();
         };
     },
     "PROBE_SHOWN{}"},
    // PROBE{K=1e308}: the earlier rules rename it PROBE_SEEN.
    {"filter", "Can't parse configuration: ",
     [](Stage& stage)
     {
         auto filter = Make<Tracking::FilterKtTracker>(
             stage,
             "<filter><event event='PROBE'><param key='K'>"
             "<any><modEvent name='PROBE_SEEN'/></any></param></event></filter>");
         stage.probe = [filter] { filter->Track({"PROBE", {{"K", "1e308"}}}); };
     },
     "PROBE_SEEN{K=1e308}"},
    // PROBE then MAIN: the earlier rules merge PROBE's params into MAIN.
    {"aggregator", "Can't parse configuration: ",
     [](Stage& stage)
     {
         auto aggregator = Make<Tracking::AggregatorKtTracker>(
             stage,
             "<aggregator><event event='MAIN'><affectingEventName>PROBE</affectingEventName>"
             "</event></aggregator>");
         stage.probe = [aggregator]
         {
             aggregator->Track({"PROBE", {{"K", "v"}}});
             aggregator->Track({"MAIN", {}});
         };
     },
     "MAIN{K=v}"},
};

// A document around %ROOT%, for every root or for one. %DIR% is the directory of the secret
// files; %DEEP%, %50MB% and %PARENS% stand for 100,000 nested elements, 50 MB of text and 10,500
// opening parentheses. Refused with a reason that contains `refusal`, or, with no refusal, read:
// the probe then delivers `readProbe`.
struct HostileRow
{
    const char* label;
    std::string text;
    const char* refusal;
    const char* onlyRoot = nullptr;  // null: every root
    std::string readProbe = {};
    // Applied last: the text in another encoding, or "%FILL%" filled up to a size.
    std::function<std::string(const std::string&)> finish = {};
};

std::string Repeated(int count, const std::string& text)
{
    std::string result;
    for (int i = 0; i < count; ++i)
    {
        result += text;
    }
    return result;
}

std::string BillionLaughs()
{
    std::string dtd = "<!DOCTYPE %ROOT% [<!ENTITY l0 'lol'>";
    for (int i = 1; i < 10; ++i)
    {
        dtd += "<!ENTITY l" + std::to_string(i) + " '" +
               Repeated(10, "&l" + std::to_string(i - 1) + ";") + "'>";
    }
    return dtd + "]><%ROOT%><event event='&l9;'/></%ROOT%>";
}

// A filter whose PROBE rule tests K against one inRange bound: PROBE_IN or PROBE_OUT.
std::string RangeRule(const std::string& bound)
{
    return "<%ROOT%><event event='PROBE'><param key='K'><inRange " + bound +
           "><modEvent name='PROBE_IN'/></inRange><any><modEvent name='PROBE_OUT'/></any>"
           "</param></event></%ROOT%>";
}

// The UTF-8 `text` in UTF-16, with or without a byte order mark.
std::function<std::string(const std::string&)> Utf16(bool bigEndian, bool bom)
{
    return [=](const std::string& text)
    {
        std::string bytes;
        const QString unicode = (bom ? QChar(0xFEFF) : QString()) + QString::fromStdString(text);
        for (const QChar c : unicode)
        {
            const char high = char(c.unicode() >> 8);
            const char low = char(c.unicode() & 0xff);
            bytes += bigEndian ? std::string{high, low} : std::string{low, high};
        }
        return bytes;
    };
}

// A filter that renames PROBE to `name`, for documents whose reading the probe tells.
std::string Renaming(const std::string& name)
{
    return "<%ROOT%><event event='PROBE'><param key='K'><any><modEvent name='" + name +
           "'/></any></param></event>%FILL%</%ROOT%>";
}

// A filter renaming PROBE: with "%FILL%" filled up to `size` bytes, refused with `refusal` or read.
HostileRow Sized(const char* label, std::size_t size, const char* refusal)
{
    return {
        label,
        Renaming("PROBE_READ"),
        refusal,
        "filter",
        refusal ? "" : "PROBE_READ{K=1e308}",
        [=](const std::string& text)
        { return KtTest::ReplaceAll(text, "%FILL%", std::string(size - (text.size() - 6), ' ')); }};
}

// A filter renaming PROBE to a name beyond ASCII after `declaration`, encoded by `encode`.
HostileRow Encoded(const char* label, const std::string& declaration,
                   const std::function<std::string(const std::string&)>& encode)
{
    return {label,
            declaration + Renaming("PROBE_\u00e9"),
            nullptr,
            "filter",
            {"PROBE_\u00e9{K=1e308}"},
            [=](const std::string& text)
            { return encode(KtTest::ReplaceAll(text, "%FILL%", "")); }};
}

// A gui section with a widget "probe" that reports READ, and `widgets`: read, the probe says READ.
HostileRow GuiRead(const char* label, const std::string& widgets)
{
    return {label,
            "<%ROOT%><gui><widget id='probe'><show-event event='READ'/></widget>" + widgets +
                "</gui></%ROOT%>",
            nullptr, "ktmstat", "READ{}"};
}

// A filter read with one inRange `bound`: the probe is `probe`.
HostileRow RangeRead(const char* label, const std::string& bound, const char* probe)
{
    return {label, RangeRule(bound), nullptr, "filter", {probe}};
}

const char* const kUtf16 = "<?xml version='1.0' encoding='UTF-16'?>";
const char* const kDoctype = "document type declarations (<!DOCTYPE ...>) are not allowed";

const HostileRow kHostile[] = {
    {"BillionLaughs", BillionLaughs(), kDoctype},
    {"ExternalEntity",
     "<!DOCTYPE %ROOT% [<!ENTITY s SYSTEM 'file://%DIR%/secret.txt'>]>"
     "<%ROOT%><event event='&s;'>&s;</event></%ROOT%>",
     kDoctype},
    {"ExternalDtd",
     "<!-- a comment first -->\n<!DOCTYPE %ROOT% SYSTEM 'file://%DIR%/secret.dtd'><%ROOT%/>",
     kDoctype},
    {"ParameterEntity",
     "<?xml version='1.0'?><!DOCTYPE %ROOT% [<!ENTITY % p SYSTEM 'file://%DIR%/secret.txt'> "
     "%p;]><%ROOT%/>",
     kDoctype},
    {"UndeclaredEntity", "<%ROOT%><event event='&undeclared;'/></%ROOT%>",
     "entity 'undeclared' not found"},
    // Refused while scanning, before the parser's cost grows with the square of the depth.
    {"DeepNesting", "<%ROOT%>%DEEP%</%ROOT%>", "elements nested deeper than 200 levels"},
    // Refused before it is parsed (it cost some 820 MB when it was parsed).
    {"HugeAttribute", "<%ROOT%><event event='%50MB%'/></%ROOT%>",
     "document larger than 1048576 bytes"},
    {"NotUtf8", "<%ROOT%><event event='\xff\xfe\xc3'/></%ROOT%>", "invalid byte"},
    {"NulInText", std::string("<%ROOT%>\n<!-- a\0b -->\n</%ROOT%>", 30),
     "2:7 error: byte 0 (NUL) is not allowed in a document"},
    {"NulAfterRoot", std::string("<%ROOT%/>\0<x/>", 14),
     "error: byte 0 (NUL) is not allowed in a document"},
    {"TwoRoots", "<%ROOT%/><%ROOT%/>", "comment or processing instruction expected"},
    // The bounds of inRange: XML Schema doubles. Numbers beyond the range of a double are
    // infinities, INF and -INF are the infinities, NaN compares false with everything, so
    // nothing is in a range with a NaN bound; other spellings are refused.
    RangeRead("RangeBound1e400", "from='1e400'", "PROBE_OUT{K=1e308}"),
    RangeRead("RangeBoundMinusINF", "from='-INF' to='1e400'", "PROBE_IN{K=1e308}"),
    RangeRead("RangeBoundNaN", "to='NaN'", "PROBE_OUT{K=1e308}"),
    {"RangeBoundLowerNan", RangeRule("from='nan'"),
     "invalid double value 'nan' of attribute 'from' of element 'inRange'", "filter"},
    {"RangeBoundLowerMinusInf", RangeRule("to='-inf'"),
     "invalid double value '-inf' of attribute 'to' of element 'inRange'", "filter"},
    // QRegExp would overflow the stack parsing this id when the windows are attached.
    {"ExpressionNesting",
     "<%ROOT%><gui>\n  <widget id='%PARENS%' idIsRegExp='true'/></gui></%ROOT%>",
     "2:10536 error: the expression in attribute 'id' of element 'widget' ('((((", "ktmstat"},
    // ... and spell out a billion states for this one.
    {"ExpressionRepetition",
     "<%ROOT%><gui><widget id='p:((a{1000}){1000}){1000}' idIsRegExp='1'/></gui></%ROOT%>",
     "has more than 10000 atoms once its repetitions are spelt out", "ktmstat"},
    // The bounds at their edges: the size limit itself is read, a byte more is not; lookaheads
    // count towards the depth as groups do ("(?:" cannot be written: ':' separates the parts of
    // an id); ranged repetitions are spelt out to their maximum.
    Sized("SizeAtTheLimit", 1048576, nullptr),
    Sized("SizeOverTheLimit", 1048577, "document larger than 1048576 bytes"),
    GuiRead("ExpressionDepthAtTheLimit", "<widget id='p:" + Repeated(11, "(") +
                                             Repeated(11, "(?=") + Repeated(10, "(?!") + "a" +
                                             std::string(32, ')') + "' idIsRegExp='true'/>"),
    {"ExpressionDepthOverTheLimitLookahead",
     "<%ROOT%><gui><widget id='" + Repeated(16, "(?=") + Repeated(17, "(?!") + "a" +
         std::string(33, ')') + "' idIsRegExp='true'/></gui></%ROOT%>",
     "groups nested deeper than 32 levels", "ktmstat"},
    GuiRead("RangedRepetitionAtTheLimit",
            "<widget id='(a{50,100}){100}:(ab{99,}){100}:x{1,1025}' idIsRegExp='true'/>"),
    {"RangedRepetitionOverTheLimit",
     "<%ROOT%><gui><widget id='(a{50,100}){100}b' idIsRegExp='true'/></gui></%ROOT%>",
     "has more than 10000 atoms", "ktmstat"},
    {"OpenRepetitionOverTheLimit",
     "<%ROOT%><gui><widget id='(ab{99,}){100}c' idIsRegExp='true'/></gui></%ROOT%>",
     "has more than 10000 atoms", "ktmstat"},
    // Every encoding XML allows, with or without a declaration where XML lets the parser tell.
    Encoded("Utf8WithByteOrderMark", "", [](const std::string& t) { return "\xEF\xBB\xBF" + t; }),
    Encoded("Utf16LittleEndian", kUtf16, Utf16(false, true)),
    Encoded("Utf16BigEndian", kUtf16, Utf16(true, true)),
    Encoded("Utf16WithoutByteOrderMark", kUtf16, Utf16(false, false)),
    Encoded("Latin1Declared", "<?xml version='1.0' encoding='ISO-8859-1'?>",
            [](const std::string& t)
            { return QString::fromStdString(t).toLatin1().toStdString(); }),
    {"Utf16Doctype",
     "<!DOCTYPE %ROOT% [<!ENTITY x 'y'>]><%ROOT%/>",
     kDoctype,
     nullptr,
     {},
     Utf16(false, true)},
    // Where a refusal points, whatever the line ends.
    {"NulInTextCrLf", std::string("<%ROOT%>\r\n\r\n<!-- a\0b -->\r\n</%ROOT%>", 33),
     "3:7 error: byte 0 (NUL) is not allowed in a document"},
    {"NulInTextCr", std::string("<%ROOT%>\r\r<!-- a\0b -->\r</%ROOT%>", 30),
     "3:7 error: byte 0 (NUL) is not allowed in a document"},
    {"ExpressionNestingCr",
     "<%ROOT%>\r<gui>\r\r  <widget id='" + Repeated(40, "(") +
         "' idIsRegExp='true'/></gui></%ROOT%>",
     "4:76 error: the expression in attribute 'id' of element 'widget'", "ktmstat"},
    {"UndeclaredEntityCrLf", "<%ROOT%>\r\n\r\n<event event='&undeclared;'/></%ROOT%>",
     "3:27 error: entity 'undeclared' not found"},
    // Real documents nest far less than the limit, and real ids' expressions stay within the
    // bounds: escaped parentheses and those inside a class open no group, and an id that is not
    // an expression is not one.
    GuiRead("ModerateNesting", Repeated(150, "<widget id='w'>") + Repeated(150, "</widget>")),
    GuiRead("ExpressionsWithinTheBounds",
            "<widget id='Main.*:(rec|stop)[]x-]Button{2,3}:" + std::string(32, '(') + "a" +
                std::string(32, ')') + ":(a{100}){100}:" + Repeated(40, "\\(") + ":[" +
                std::string(40, '(') + "]' idIsRegExp='true'/><widget id='" + std::string(40, '(') +
                "'/>"),
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
    const std::string path = directory.path().toStdString();
    std::ofstream(path + "/secret.txt") << kSecret;
    std::ofstream(path + "/secret.dtd") << "<!ENTITY leak '" << kSecret << "'>";
    return path;
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
            text = KtTest::ReplaceAll(text, token, expansion());
        }
    }
    if (hostile.finish)
    {
        text = hostile.finish(text);
    }
    Stage stage;
    root.make(stage);
    ASSERT_EQ(stage.Probe(), root.earlierProbe);

    KtTest::LogCapture log;
    const long peakBefore = PeakKilobytes();
    const auto start = std::chrono::steady_clock::now();
    stage.setConfig(text);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_LT(PeakKilobytes() - peakBefore, 256 * 1024);

    const std::vector<std::string> messages = log.Messages();
    if (hostile.refusal)
    {
        ASSERT_EQ(messages.size(), 1u);
        EXPECT_EQ(messages[0].rfind(root.logPrefix, 0), 0u) << messages[0];
        EXPECT_NE(messages[0].find(hostile.refusal), std::string::npos) << messages[0];
        EXPECT_EQ(messages[0].find(kSecret), std::string::npos) << messages[0];
        EXPECT_EQ(stage.Probe(), root.earlierProbe);
    }
    else
    {
        EXPECT_TRUE(messages.empty()) << messages.front();
        EXPECT_EQ(stage.Probe(), hostile.readProbe);
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

}  // namespace
