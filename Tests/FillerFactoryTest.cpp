#include "Tracking/Fillers/FillerFactory_p.h"

#include "App/ILookAndFeelManager.h"
#include "App/LookAndFeelManager.h"
#include "KT/ConvertationSettings.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

using Velkor::App::ILookAndFeelManager;
using Velkor::App::LookAndFeelManager;
using Velkor::KT::ConvertationSettings;
using Velkor::KT::Tracking::FillerTypes;
using Velkor::KT::Tracking::Fillers::CreateAvailableFillers;
using Velkor::KT::Tracking::Fillers::FillerMap;
using Velkor::KT::Tracking::Fillers::RunFillers;
using Params = std::map<std::string, std::string>;

namespace
{

std::vector<FillerTypes> TypesOf(const FillerMap& fillers)
{
    std::vector<FillerTypes> types;
    for (const auto& [type, filler] : fillers)
    {
        EXPECT_NE(filler, nullptr);
        types.push_back(type);
    }
    return types;
}

FillerTypes Unknown(int value)
{
    return static_cast<FillerTypes>(value);
}

// --- Which fillers exist ----------------------------------------------------------------------

struct CreationRow
{
    const char* label;
    std::vector<FillerTypes> requested;
    std::vector<FillerTypes> created;  // in map order
};

using FillerCreationTest = KtTest::Table<CreationRow>;

TEST_P(FillerCreationTest, CreatesEachRequestedTypeOnce)
{
    const CreationRow& row = GetParam();
    const FillerMap fillers =
        CreateAvailableFillers(std::make_shared<LookAndFeelManager>("en"),
                               std::make_shared<ConvertationSettings>(), row.requested);
    EXPECT_EQ(TypesOf(fillers), row.created);
}

using T = FillerTypes;
KT_ROWS(FillerCreationTest,
        {CreationRow{"Nothing", {}, {}},
         CreationRow{"UnknownValuesIgnored",
                     {Unknown(8), T::CountryName, Unknown(-1), Unknown(42)},
                     {T::CountryName}},
         CreationRow{"EveryTypeReversed",
                     {T::OSConfig, T::HardwareConfig, T::AppConfig, T::MonitorsConfig,
                      T::CountryName, T::AppLanguage, T::HyperPass, T::Accelerators},
                     {T::Accelerators, T::HyperPass, T::AppLanguage, T::CountryName,
                      T::MonitorsConfig, T::AppConfig, T::HardwareConfig, T::OSConfig}},
         CreationRow{"DuplicatesAmongOthers",
                     {T::HyperPass, T::MonitorsConfig, T::HyperPass, T::MonitorsConfig},
                     {T::HyperPass, T::MonitorsConfig}}});

// --- What the library's own fillers write -----------------------------------------------------

// Answers a new language on every question and counts the questions.
class ScriptedLookAndFeel : public ILookAndFeelManager
{
public:
    std::string GetLanguage() const override
    {
        const int n = asked++;
        return n < int(languages.size()) ? languages[n] : "exhausted";
    }

    std::vector<std::string> languages{"en", "de", "pt_BR"};
    mutable std::atomic<int> asked{0};
};

TEST(AppLanguageFillerTest, AsksTheLanguageOnEveryFillAndNeverBefore)
{
    auto lookAndFeel = std::make_shared<ScriptedLookAndFeel>();
    const FillerMap fillers = CreateAvailableFillers(
        lookAndFeel, nullptr, {FillerTypes::AppLanguage, FillerTypes::AppLanguage});
    EXPECT_EQ(lookAndFeel->asked, 0);

    std::vector<std::string> seen;
    for (int i = 0; i < 3; ++i)
    {
        Params params{{"APP_LANGUAGE", "stale"}};
        RunFillers(fillers, {FillerTypes::AppLanguage}, params);
        seen.push_back(params.at("APP_LANGUAGE"));
    }
    EXPECT_EQ(seen, lookAndFeel->languages);
    EXPECT_EQ(lookAndFeel->asked, 3);
}

// The setting is read when the filler runs, not when it is made.
TEST(HyperPassFillerTest, ReportsTheSettingAtFillTime)
{
    for (const bool enabled : {true, false})
    {
        auto settings = std::make_shared<ConvertationSettings>();
        settings->SetHyperPassEnabled(!enabled);
        const FillerMap fillers =
            CreateAvailableFillers(nullptr, settings, {FillerTypes::HyperPass});
        settings->SetHyperPassEnabled(enabled);
        Params params{{"HP_ENABLED", "stale"}, {"OTHER", "kept"}};
        RunFillers(fillers, {FillerTypes::HyperPass}, params);
        EXPECT_EQ(params, (Params{{"HP_ENABLED", enabled ? "YES" : "NO"}, {"OTHER", "kept"}}));
    }
}

}  // namespace
