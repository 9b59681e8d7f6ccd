#include "KT/SettingsKinds.h"

#include <gtest/gtest.h>

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

}  // namespace
