#include "KT/ProductSettings.h"
#include "KT/SettingsKinds.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Velkor::KT;

namespace
{

class ChangeLog : public ISettingsObserver
{
public:
    void OnSettingChanged(const std::string& field, const QVariantList& value) override
    {
        QStringList texts;
        for (const QVariant& element : value)
        {
            texts << element.toString();
        }
        lines.push_back(field + "=" + texts.join(",").toStdString());
    }

    std::vector<std::string> lines;
};

TEST(ObservableSettingsTest, EveryChangeIsToldEvenWithoutDifference)
{
    HotkeySettings settings;
    ChangeLog log;
    settings.AddObserver(&log);
    settings.Set("startStop", {QString("Ctrl+F9")});
    settings.Set("startStop", {QString("Ctrl+F9")});
    settings.Set("fastPreset", {QString("Preset 2"), QString("Alt+2")});
    EXPECT_EQ(log.lines, (std::vector<std::string>{"startStop=Ctrl+F9", "startStop=Ctrl+F9",
                                                   "fastPreset=Preset 2,Alt+2"}));
    EXPECT_EQ(settings.Get("fastPreset").size(), 2);
    settings.RemoveObserver(&log);
    settings.Set("startStop", {QString("F10")});
    EXPECT_EQ(log.lines.size(), 3u);
    EXPECT_EQ(settings.Get("startStop").value(0).toString(), "F10");
}

TEST(ObservableSettingsTest, UnknownFieldThrowsAndTellsNobody)
{
    CaptureCursorSettings settings;
    ChangeLog log;
    settings.AddObserver(&log);
    // The click volume is "volumeClick" here; "volumeClickSound" belongs to capture effects.
    EXPECT_THROW(settings.Set("volumeClickSound", {3}), std::invalid_argument);
    EXPECT_THROW(settings.Get("volumeClickSound"), std::invalid_argument);
    EXPECT_TRUE(log.lines.empty());
}

struct ProductRow
{
    const char* label;
    std::function<void(ProductSettings&)> change;
    std::function<bool(const ProductSettings&)> check;
    std::string expectedLine;
};

void PrintTo(const ProductRow& row, std::ostream* out)
{
    *out << row.label;
}

class ProductSettingsTest : public testing::TestWithParam<ProductRow>
{
};

TEST_P(ProductSettingsTest, SetterUpdatesGetterAndNotifiesItsField)
{
    const ProductRow& row = GetParam();
    ProductSettings settings;
    ChangeLog log;
    settings.AddObserver(&log);
    row.change(settings);
    EXPECT_TRUE(row.check(settings));
    EXPECT_EQ(log.lines, std::vector<std::string>{row.expectedLine});
}

INSTANTIATE_TEST_SUITE_P(
    Fields, ProductSettingsTest,
    testing::Values(
        ProductRow{"AutoUpdate", [](ProductSettings& s) { s.SetAutoUpdateEnabled(false); },
                   [](const ProductSettings& s) { return !s.IsAutoUpdateEnabled(); },
                   "autoUpdateEnabled=false"},
        ProductRow{"Statistics", [](ProductSettings& s) { s.SetAllowSendStatistics(true); },
                   [](const ProductSettings& s) { return s.IsAllowSendStatistics(); },
                   "statisticsEnabled=true"},
        ProductRow{"AutoStart", [](ProductSettings& s) { s.SetAutoStartEnabled(true); },
                   [](const ProductSettings& s) { return s.IsAutoStartEnabled(); },
                   "autoStartEnabled=true"},
        ProductRow{"Locale", [](ProductSettings& s) { s.SetCurrentLocale("de_DE"); },
                   [](const ProductSettings& s) { return s.GetCurrentLocale() == "de_DE"; },
                   "currentLocale=de_DE"}),
    [](const testing::TestParamInfo<ProductRow>& info) { return info.param.label; });

}  // namespace
