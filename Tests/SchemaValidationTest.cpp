// The shipped documents must be valid against their schemas, so authors' editors and the reader
// agree. Validation is switched on here only; the application reads without it.

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/Filter.h"
#include "Tracking/Config/KtmStat.h"
#include "Tracking/ConfigLoader.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <sstream>
#include <string>

namespace Config = Velkor::KT::Tracking::Config;
using Velkor::KT::Tracking::LoadConfigFromQrc;

namespace
{

using Reader =
    std::function<void(std::istream&, ::xml_schema::flags, const ::xml_schema::properties&)>;

struct DocumentRow
{
    const char* document;
    const char* schema;
    Reader read;
};

void PrintTo(const DocumentRow& row, std::ostream* out)
{
    *out << row.document;
}

const Reader kMain = [](std::istream& in, ::xml_schema::flags f, const ::xml_schema::properties& p)
{ Config::ktmstat(in, f, p); };
const Reader kFilter = [](std::istream& in, ::xml_schema::flags f,
                          const ::xml_schema::properties& p) { Config::Filter::filter(in, f, p); };
const Reader kAggregator =
    [](std::istream& in, ::xml_schema::flags f, const ::xml_schema::properties& p)
{ Config::Aggregator::aggregator(in, f, p); };

::xml_schema::properties SchemaProperties(const char* schema)
{
    ::xml_schema::properties properties;
    properties.no_namespace_schema_location(std::string("file://" SOURCE_CONFIG_DIR "/") + schema);
    return properties;
}

std::string Describe(const ::xml_schema::exception& e)
{
    std::ostringstream out;
    out << e;
    return out.str();
}

class SchemaValidationTest : public testing::TestWithParam<DocumentRow>
{
};

TEST_P(SchemaValidationTest, ShippedDocumentIsValid)
{
    const DocumentRow& row = GetParam();
    const std::string text = LoadConfigFromQrc(std::string("/KT/Tracking/") + row.document);
    ASSERT_FALSE(text.empty());
    std::istringstream input(text);
    try
    {
        row.read(input, 0, SchemaProperties(row.schema));
    }
    catch (const ::xml_schema::exception& e)
    {
        FAIL() << Describe(e);
    }
}

INSTANTIATE_TEST_SUITE_P(Documents, SchemaValidationTest,
                         testing::Values(DocumentRow{"Config.xml", "KtmStat.xsd", kMain},
                                         DocumentRow{"ConfigGACA.xml", "KtmStat.xsd", kMain},
                                         DocumentRow{"FilterConfig.xml", "Filter.xsd", kFilter},
                                         DocumentRow{"FilterConfigGACA.xml", "Filter.xsd", kFilter},
                                         DocumentRow{"AggregatorConfig.xml", "Aggregator.xsd",
                                                     kAggregator}),
                         [](const auto& info)
                         {
                             std::string name = info.param.document;
                             return name.substr(0, name.find('.'));
                         });

// The same reader, given documents the schemas forbid: with validation they fail, without it
// they are read by the reading rules. Shows that the validation above really took place.
struct InvalidRow
{
    const char* label;
    const char* schema;
    Reader read;
    std::string text;
};

void PrintTo(const InvalidRow& row, std::ostream* out)
{
    *out << row.label;
}

class SchemaValidationRejectTest : public testing::TestWithParam<InvalidRow>
{
};

TEST_P(SchemaValidationRejectTest, OnlyValidationRejects)
{
    const InvalidRow& row = GetParam();
    std::istringstream validated(row.text);
    EXPECT_THROW(row.read(validated, 0, SchemaProperties(row.schema)), ::xml_schema::parsing);
    std::istringstream unvalidated(row.text);
    EXPECT_NO_THROW(
        row.read(unvalidated, ::xml_schema::flags::dont_validate, ::xml_schema::properties()));
}

INSTANTIATE_TEST_SUITE_P(
    Documents, SchemaValidationRejectTest,
    testing::Values(
        InvalidRow{"SectionsOutOfOrder", "KtmStat.xsd", kMain,
                   "<ktmstat><instances/><gui/></ktmstat>"},
        InvalidRow{"UnknownCallback", "KtmStat.xsd", kMain,
                   "<ktmstat><instances><IScheduler><stop event='E'/></IScheduler></instances>"
                   "</ktmstat>"},
        InvalidRow{"MatchersOutOfOrder", "Filter.xsd", kFilter,
                   "<filter><event event='E'><param key='K'><any/><equal value=''/></param>"
                   "</event></filter>"},
        InvalidRow{"TextInEvent", "Aggregator.xsd", kAggregator,
                   "<aggregator><event event='E'>text</event></aggregator>"}));

TEST(SchemaValidationTest, ValidationWithoutSchemaFails)
{
    std::istringstream input("<ktmstat/>");
    EXPECT_THROW(Config::ktmstat(input), ::xml_schema::parsing);
}

}  // namespace
