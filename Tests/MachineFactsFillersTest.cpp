// The fillers that report facts of the machine: their keys, the accelerators found, the country.

#include "Tracking/Fillers/AppConfigFiller_p.h"
#include "Tracking/Fillers/CountryNameFiller_p.h"

#include "Analytics/AcceleratorsPropertiesFiller.h"
#include "Analytics/HardwareConfigFiller.h"
#include "Analytics/OSConfigFiller.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

using Params = std::map<std::string, std::string>;
using Velkor::Tracking::IDataFiller;

namespace
{

Params FillFresh(IDataFiller& filler)
{
    Params params;
    filler.Fill(params);
    return params;
}

// --- Keys -------------------------------------------------------------------------------------

struct KeysRow
{
    const char* label;
    std::function<std::unique_ptr<IDataFiller>()> make;
    std::set<std::string> keys;
};

using FillerKeysTest = KtTest::Table<KeysRow>;

TEST_P(FillerKeysTest, WritesExactlyItsKeysWithValuesAndOverwrites)
{
    const KeysRow& row = GetParam();
    const std::unique_ptr<IDataFiller> filler = row.make();
    const Params fresh = FillFresh(*filler);
    // None but its keys, each with a value; that it writes all of them, the overwrite shows.
    for (const auto& [key, value] : fresh)
    {
        EXPECT_TRUE(row.keys.count(key) == 1 && !value.empty()) << key << "=" << value;
    }

    // Over a map that already holds every key with another value, and a foreign key.
    Params stale{{"FOREIGN", "kept"}};
    for (const std::string& key : row.keys)
    {
        stale[key] = "stale";
    }
    filler->Fill(stale);
    EXPECT_EQ(stale.at("FOREIGN"), "kept");
    stale.erase("FOREIGN");
    EXPECT_EQ(stale, fresh);
}

template <typename Filler>
std::function<std::unique_ptr<IDataFiller>()> Make()
{
    return [] { return std::make_unique<Filler>(); };
}

KT_ROWS(FillerKeysTest,
        {KeysRow{"Accelerators",
                 Make<Velkor::Analytics::AcceleratorsPropertiesFiller>(),
                 {"IM_HW_AVAILABLE", "NVENC_AVAILABLE", "NVDEC_AVAILABLE", "AMF_AVAILABLE",
                  "NVENC_ENABLED", "NVDEC_ENABLED", "AMF_ENABLED"}},
         KeysRow{"HardwareConfig",
                 Make<Velkor::Analytics::HardwareConfigFiller>(),
                 {"CPU_NAME", "CPU_ARCHITECTURE", "CPU_CORES", "RAM_TOTAL_MB"}},
         KeysRow{"OSConfig",
                 Make<Velkor::Analytics::OSConfigFiller>(),
                 {"OS_NAME", "OS_VERSION", "OS_KERNEL", "OS_BITS", "OS_LANGUAGE"}},
         KeysRow{"AppConfig", Make<Velkor::KT::Tracking::Fillers::AppConfigFiller>(), {"APP_BITS"}},
         KeysRow{"CountryName",
                 Make<Velkor::KT::Tracking::Fillers::CountryNameFiller>(),
                 {"COUNTRY_NAME"}}});

// --- Acceleration over a made-up device list --------------------------------------------------

struct Device
{
    const char* pciClass;
    const char* vendor;
};

struct AcceleratorsRow
{
    const char* label;
    std::vector<Device> devices;
    const char* available;  // Intel, NVIDIA, AMD: 'Y' or 'N'
};

using AcceleratorsFillerTest = KtTest::Table<AcceleratorsRow>;

TEST_P(AcceleratorsFillerTest, CountsOnlyDisplayControllersOfEachVendor)
{
    const AcceleratorsRow& row = GetParam();
    QTemporaryDir root;
    ASSERT_TRUE(root.isValid());
    int index = 0;
    for (const Device& device : row.devices)
    {
        const QString dir = root.filePath(QStringLiteral("0000:00:%1.0").arg(index++));
        ASSERT_TRUE(QDir().mkpath(dir));
        for (const auto& [name, text] :
             {std::pair{"class", device.pciClass}, std::pair{"vendor", device.vendor}})
        {
            QFile file(dir + QLatin1Char('/') + QLatin1String(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(text) + '\n');
        }
    }

    Velkor::Analytics::AcceleratorsPropertiesFiller filler(root.path().toStdString());
    const Params facts = FillFresh(filler);
    auto flag = [&row](int at) { return std::string(row.available[at] == 'Y' ? "YES" : "NO"); };
    EXPECT_EQ(facts.at("IM_HW_AVAILABLE"), flag(0));
    EXPECT_EQ(facts.at("NVENC_AVAILABLE"), flag(1));
    EXPECT_EQ(facts.at("NVDEC_AVAILABLE"), flag(1));
    EXPECT_EQ(facts.at("AMF_AVAILABLE"), flag(2));
    // Enabled needs the hardware; whether the runtime is installed depends on the machine.
    for (const std::string facility : {"NVENC", "NVDEC", "AMF"})
    {
        const std::string& enabled = facts.at(facility + "_ENABLED");
        EXPECT_TRUE(enabled == "NO" ||
                    (enabled == "YES" && facts.at(facility + "_AVAILABLE") == "YES"))
            << facility << " enabled " << enabled;
    }
}

KT_ROWS(AcceleratorsFillerTest,
        {{"VendorsWithoutDisplays",
          {{"0x060000", "0x8086"}, {"0x040300", "0x10de"}, {"0x0c0330", "0x1002"}},
          "NNN"},
         {"IntelGraphics", {{"0x030000", "0x8086"}}, "YNN"},
         {"AmdAndNvidia3d", {{"0x038000", "0x1002"}, {"0x030200", "0x10de"}}, "NYY"},
         {"UnreadableEntriesIgnored",
          {{"garbage", "0x8086"}, {"0x030000", ""}, {"0x030000", "0x1af4"}},
          "NNN"}});

// --- Country of the system locale -------------------------------------------------------------

// The system locale is read from the environment once per process, so each locale is tried in
// a child: this executable started again with KT_COUNTRY_CHILD set prints the filler's value and
// exits before any test runs.
[[maybe_unused]] const bool COUNTRY_CHILD = []
{
    if (!qEnvironmentVariableIsEmpty("KT_COUNTRY_CHILD"))
    {
        Velkor::KT::Tracking::Fillers::CountryNameFiller filler;
        std::printf("COUNTRY=[%s]\n", FillFresh(filler).at("COUNTRY_NAME").c_str());
        std::fflush(stdout);
        std::_Exit(0);
    }
    return false;
}();

struct CountryRow
{
    const char* label;
    const char* lang;
    const char* country;
};

using CountryNameFillerTest = KtTest::Table<CountryRow>;

TEST_P(CountryNameFillerTest, NamesTheSystemLocalesCountryInEnglish)
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LC_NUMERIC", "LANGUAGE"})
    {
        environment.remove(QString::fromLatin1(name));
    }
    environment.insert(QStringLiteral("LANG"), QString::fromLatin1(GetParam().lang));
    environment.insert(QStringLiteral("KT_COUNTRY_CHILD"), QStringLiteral("1"));
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), QStringList());
    ASSERT_TRUE(child.waitForFinished(60000));
    const QByteArray output = child.readAllStandardOutput();
    EXPECT_EQ(child.exitCode(), 0) << output.toStdString();
    EXPECT_TRUE(output.contains("COUNTRY=[" + QByteArray(GetParam().country) + "]"))
        << output.toStdString();
}

KT_ROWS(CountryNameFillerTest, {CountryRow{"BrazilianPortuguese", "pt_BR.UTF-8", "Brazil"},
                                CountryRow{"CanadianFrench", "fr_CA", "Canada"}});

}  // namespace
