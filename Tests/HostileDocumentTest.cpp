// Document text may come from anywhere: whatever it holds, reading it must end in the data
// binding's exception (or a model), never read a file through an entity, never expand entities
// and never crash.

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/Filter.h"
#include "Tracking/Config/KtmStat.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <ostream>
#include <sstream>
#include <string>

namespace Config = Velkor::KT::Tracking::Config;

namespace
{

const char* const kSecret = "TOP-SECRET-7d1f";

using Reader = std::function<void(std::istream&)>;

struct RootRow
{
    const char* label;
    const char* root;
    Reader read;
};

void PrintTo(const RootRow& row, std::ostream* out)
{
    *out << row.label;
}

const RootRow kRoots[] = {
    {"ktmstat", "ktmstat",
     [](std::istream& in) { Config::ktmstat(in, ::xml_schema::flags::dont_validate); }},
    {"filter", "filter",
     [](std::istream& in) { Config::Filter::filter(in, ::xml_schema::flags::dont_validate); }},
    {"aggregator", "aggregator",
     [](std::istream& in)
     { Config::Aggregator::aggregator(in, ::xml_schema::flags::dont_validate); }},
};

// A document built around the root name; %ROOT% and %DIR% are replaced.
struct HostileRow
{
    const char* label;
    std::string text;
    std::string description;  // a part of the description
};

void PrintTo(const HostileRow& row, std::ostream* out)
{
    *out << row.label;
}

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

std::string Nested(int depth, const std::string& open, const std::string& close)
{
    std::string text;
    text.reserve(depth * (open.size() + close.size()));
    for (int i = 0; i < depth; ++i)
    {
        text += open;
    }
    for (int i = 0; i < depth; ++i)
    {
        text += close;
    }
    return text;
}

const HostileRow kHostile[] = {
    {"InternalSubset", "<!DOCTYPE %ROOT% [<!ENTITY x 'y'>]><%ROOT%/>",
     "invalid document structure"},
    {"ExternalEntity",
     "<!DOCTYPE %ROOT% [<!ENTITY s SYSTEM 'file://%DIR%/secret.txt'>]>"
     "<%ROOT%><event event='&s;'>&s;</event></%ROOT%>",
     "invalid document structure"},
    {"ExternalDtd", "<!DOCTYPE %ROOT% SYSTEM 'file://%DIR%/secret.dtd'><%ROOT%/>",
     "invalid document structure"},
    {"ParameterEntity",
     "<!DOCTYPE %ROOT% [<!ENTITY % p SYSTEM 'file://%DIR%/secret.txt'> %p;]><%ROOT%/>",
     "invalid document structure"},
    {"BillionLaughs", BillionLaughs(), "invalid document structure"},
    {"UndeclaredEntity", "<%ROOT%><event event='&undeclared;'/></%ROOT%>",
     "entity 'undeclared' not found"},
    {"NotUtf8", "<%ROOT%><event event='\xff\xfe\xc3'/></%ROOT%>", "invalid byte"},
    {"BinaryZero", std::string("<%ROOT%>\0</%ROOT%>", 19),
     "input ended before all started tags were ended"},
    {"TwoRoots", "<%ROOT%/><%ROOT%/>", "comment or processing instruction expected"},
    {"OnlyAComment", "<!-- nothing -->", "invalid document structure"},
    // Refused while scanning, before the parser's cost grows with the square of the depth.
    {"DeepNesting", "<%ROOT%>" + Nested(100000, "<x>", "</x>") + "</%ROOT%>",
     "error: elements nested deeper than 200 levels"},
};

class HostileDocumentTest : public testing::TestWithParam<std::tuple<RootRow, HostileRow>>
{
protected:
    static void SetUpTestSuite()
    {
        s_dir = new QTemporaryDir();
        const std::string dir = s_dir->path().toStdString();
        std::ofstream(dir + "/secret.txt") << kSecret;
        std::ofstream(dir + "/secret.dtd") << "<!ENTITY leak '" << kSecret << "'>";
    }
    static void TearDownTestSuite()
    {
        delete s_dir;
        s_dir = nullptr;
    }

    static QTemporaryDir* s_dir;
};

QTemporaryDir* HostileDocumentTest::s_dir = nullptr;

TEST_P(HostileDocumentTest, FailsCleanlyWithoutReadingFiles)
{
    const auto& [root, hostile] = GetParam();
    std::string text = Replace(hostile.text, "%ROOT%", root.root);
    text = Replace(text, "%DIR%", s_dir->path().toStdString());

    std::istringstream input(text);
    const auto start = std::chrono::steady_clock::now();
    try
    {
        root.read(input);
        FAIL() << "parsed";
    }
    catch (const ::xml_schema::exception& e)
    {
        std::ostringstream description;
        description << e;
        EXPECT_EQ(description.str().find(kSecret), std::string::npos) << description.str();
        EXPECT_NE(description.str().find(hostile.description), std::string::npos)
            << description.str();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

INSTANTIATE_TEST_SUITE_P(Documents, HostileDocumentTest,
                         testing::Combine(testing::ValuesIn(kRoots), testing::ValuesIn(kHostile)),
                         [](const auto& info) {
                             return std::string(std::get<0>(info.param).label) + "_" +
                                    std::get<1>(info.param).label;
                         });

// Real documents nest far less; the limit leaves room for them.
TEST(HostileDocumentNestingTest, ModerateNestingIsRead)
{
    std::istringstream input("<ktmstat><gui>" + Nested(150, "<widget id='w'>", "</widget>") +
                             "</gui></ktmstat>");
    const auto model = Config::ktmstat(input, ::xml_schema::flags::dont_validate);
    int depth = 0;
    for (const auto* widgets = &model->gui()->widget(); !widgets->empty();
         widgets = &widgets->front().widget())
    {
        ++depth;
    }
    EXPECT_EQ(depth, 150);
}

}  // namespace
