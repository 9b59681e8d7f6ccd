// The monitors filler on the screens of the platform it runs on. By default that is the
// offscreen platform's one screen: Qt 5's of 800x600 at 100 dpi, Qt 6's of 800x800 at 100 dpi
// physical and 96 logical. CMake also runs the screen tests on other screen sets (two X screens,
// a scaled interface) and names the expected screens in KT_EXPECTED_SCREENS:
// "<native rect>@<physical dpi>@<logical dpi>@<scaled rect>" per screen, separated by '|'.

#include "Tracking/Fillers/MonitorsConfigFiller_p.h"

#include "Support/CommaLocale.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QRect>
#include <QScreen>
#include <QStringList>

#include <memory>
#include <optional>
#include <string>
#include <vector>

using Params = std::map<std::string, std::string>;
using Velkor::KT::Tracking::Fillers::MonitorsConfigFiller;

namespace
{

enum class CommaLocale
{
    None,
    QtAndStd,
    CLibrary,
};

struct LocaleRow
{
    const char* label;
    CommaLocale locale;
};

const std::vector<LocaleRow> kLocales{{"PointLocale", CommaLocale::None},
                                      {"QtAndStdComma", CommaLocale::QtAndStd},
                                      {"CLibraryComma", CommaLocale::CLibrary}};

std::string RectText(const QRect& rect)
{
    return QStringLiteral("%1,%2,%3,%4")
        .arg(rect.x())
        .arg(rect.y())
        .arg(rect.width())
        .arg(rect.height())
        .toStdString();
}

// --- The screens ------------------------------------------------------------------------------

using MonitorsScreensTest = KtTest::Table<LocaleRow>;

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
const char* const kOffscreenScreen = "0,0,800,800@100.000000@96.000000@0,0,800,800";
#else
const char* const kOffscreenScreen = "0,0,800,600@100.000000@100.000000@0,0,800,600";
#endif

TEST_P(MonitorsScreensTest, DescribesEveryScreenInListOrder)
{
    const QString expected = qEnvironmentVariableIsSet("KT_EXPECTED_SCREENS")
                                 ? qEnvironmentVariable("KT_EXPECTED_SCREENS")
                                 : QString::fromLatin1(kOffscreenScreen);
    const QStringList screens = expected.split(QLatin1Char('|'));

    Params wanted{{"MONITORS_COUNT", std::to_string(screens.size())}, {"PRIMARY_MONITOR", "1"}};
    std::vector<std::string> scaledRects;
    for (int i = 0; i < screens.size(); ++i)
    {
        const QStringList fields = screens[i].split(QLatin1Char('@'));
        ASSERT_EQ(fields.size(), 4) << screens[i].toStdString();
        const std::string prefix = "MONITOR" + std::to_string(i + 1);
        wanted[prefix + "_RECT"] = fields[0].toStdString();
        wanted[prefix + "_PHYSICAL_DPI"] = fields[1].toStdString();
        wanted[prefix + "_LOGICAL_DPI"] = fields[2].toStdString();
        scaledRects.push_back(fields[3].toStdString());
    }

    // The toolkit's own view of the screens, to show what the filler had to map.
    std::vector<std::string> toolkitRects;
    for (QScreen* screen : QGuiApplication::screens())
    {
        toolkitRects.push_back(RectText(screen->geometry()));
    }
    EXPECT_EQ(toolkitRects, scaledRects);

    std::optional<KtTest::QtAndStdCommaLocale> qtAndStd;
    std::unique_ptr<KtTest::CLibraryCommaLocale> cLibrary;
    if (GetParam().locale == CommaLocale::QtAndStd)
    {
        qtAndStd.emplace();
    }
    else if (GetParam().locale == CommaLocale::CLibrary)
    {
        cLibrary = std::make_unique<KtTest::CLibraryCommaLocale>();
        if (!cLibrary->Active())
        {
            GTEST_SKIP() << cLibrary->Why();
        }
    }
    MonitorsConfigFiller filler;
    Params params{{"MONITOR9_RECT", "kept"}, {"MONITORS_COUNT", "stale"}};
    filler.Fill(params);
    wanted["MONITOR9_RECT"] = "kept";
    EXPECT_EQ(params, wanted);

    // The dpi text: six decimals and a point, whatever the locale.
    const std::vector<std::pair<double, std::string>> cases{
        {96.0, "96.000000"}, {95.958042, "95.958042"},
        {0.5, "0.500000"},   {1234567.25, "1234567.250000"},
        {0.0, "0.000000"},   {143.9999996, "144.000000"}};
    for (const auto& [dpi, text] : cases)
    {
        EXPECT_EQ(MonitorsConfigFiller::FormatDpi(dpi), text) << dpi;
    }
}

KT_ROWS(MonitorsScreensTest, kLocales);

}  // namespace
