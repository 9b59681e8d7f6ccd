// A host built against the installed package. It checks what only an installation can get
// wrong: the shipped documents are in the installed library and valid against the installed
// schemas, and the rule stages and the delivery tracker, built from the installed headers and
// the host's reference objects, deliver events as the shipped rules make them.

#include "Tracking/Tracking.h"
// Single public headers, as a host that includes only what it uses writes them: each in the
// folder of its layer.
#include "Tracking/Delivery/ForwardKtTracker.h"
#include "Tracking/Rules/AggregatorKtTracker.h"
#include "Tracking/Rules/FilterKtTracker.h"

#include "App/CustomizationManager.h"
#include "App/SessionId.h"
#include "App/ioPath.h"
#include "KT/ProductSettings.h"

#include <QApplication>
#include <QFile>

#include <cstdio>
#include <functional>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using namespace Velkor;
using namespace Velkor::KT::Tracking;

namespace
{

int failures = 0;

void Fail(const std::string& label, const std::string& what)
{
    ++failures;
    std::printf("FAIL %s: %s\n", label.c_str(), what.c_str());
}

// --- The shipped documents against the installed schemas ---------------------------------

using Reader = std::function<void(std::istream&, const ::xml_schema::properties&)>;

struct DocumentRow
{
    const char* resource;
    const char* schema;
    Reader read;
};

const Reader kMain = [](std::istream& in, const ::xml_schema::properties& p)
{ Config::ktmstat(in, 0, p); };
const Reader kFilter = [](std::istream& in, const ::xml_schema::properties& p)
{ Config::Filter::filter(in, 0, p); };
const Reader kAggregator = [](std::istream& in, const ::xml_schema::properties& p)
{ Config::Aggregator::aggregator(in, 0, p); };

const DocumentRow kDocuments[] = {
    {"/KT/Tracking/Config.xml", "KtmStat.xsd", kMain},
    {"/KT/Tracking/ConfigGACA.xml", "KtmStat.xsd", kMain},
    {"/KT/Tracking/FilterConfig.xml", "Filter.xsd", kFilter},
    {"/KT/Tracking/FilterConfigGACA.xml", "Filter.xsd", kFilter},
    {"/KT/Tracking/AggregatorConfig.xml", "Aggregator.xsd", kAggregator},
};

void CheckDocument(const DocumentRow& row)
{
    const std::string text = LoadConfigFromQrc(row.resource);
    if (text.empty())
    {
        return Fail(row.resource, "not in the installed library");
    }
    const std::string schema = std::string(KT_SCHEMA_DIR) + "/" + row.schema;
    if (!QFile::exists(QString::fromStdString(schema)))
    {
        return Fail(row.resource, schema + " is not installed");
    }
    ::xml_schema::properties properties;
    properties.no_namespace_schema_location("file://" + schema);
    std::istringstream input(text);
    try
    {
        row.read(input, properties);
    }
    catch (const ::xml_schema::exception& error)
    {
        std::ostringstream description;
        description << error;
        Fail(row.resource, "not valid against " + schema + ": " + description.str());
    }
}

// --- Events through the installed chain ------------------------------------------------------

class Transcript : public IKtTrackingEndpoint
{
public:
    void Track(const Event& event) override { text += EventText(event); }
    std::string text;
};

// The click is held back, the stop classified with its properties, the rest unchanged.
void CheckChain()
{
    auto transcript = std::make_shared<Transcript>();
    auto delivery = std::make_shared<ForwardKtTracker>(
        std::make_shared<App::CustomizationManager>("recorder", ""),
        std::make_shared<KT::ProductSettings>(), std::make_shared<App::SessionId>("S1"),
        App::ioPath(), std::vector<std::shared_ptr<IKtTrackingEndpoint>>{transcript});
    auto aggregator = std::make_shared<AggregatorKtTracker>(delivery);
    aggregator->SetConfig(LoadConfigFromQrc("/KT/Tracking/AggregatorConfig.xml"));
    auto filter = std::make_shared<FilterKtTracker>(aggregator);
    filter->SetConfig(LoadConfigFromQrc("/KT/Tracking/FilterConfig.xml"));

    filter->Track({"BUTTON_CAPTURE_STOP_EVENT", {{"METHOD", "BUTTON"}}});
    filter->Track(
        {"CAPTURE_STOP", {{"DURATION", "90"}, {"AUDIO_SOURCES", ""}, {"FILE_SIZE", "5242880"}}});
    filter->Track({"EMAIL_DIALOG_SHOWN", {{"LANG", "en"}}});
    const std::string delivered =
        "CAPTURE_STOP\n\tAUDIO_SOURCES=OFF\n\tDURATION=90\n\tDURATION_ID=UP_TO_2_MIN\n"
        "\tFILE_SIZE=5242880\n\tFILE_SIZE_PRESET=1_10_MB\n\tMETHOD=BUTTON\n"
        "EMAIL_DIALOG_SHOWN\n\tLANG=en\n";
    if (transcript->text != delivered)
    {
        Fail("chain", "delivered\n" + transcript->text + "instead of\n" + delivered);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);

    for (const DocumentRow& row : kDocuments)
    {
        CheckDocument(row);
    }
    CheckChain();
    std::printf("%d document(s), 1 chain, %d failure(s)\n", static_cast<int>(std::size(kDocuments)),
                failures);
    return failures == 0 ? 0 : 1;
}
