#include "UI/AbstractPresetButton.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

using Velkor::KT::UI::AbstractPresetButton;

namespace
{

std::vector<std::string> Names(const QSignalSpy& spy)
{
    std::vector<std::string> names;
    for (const QList<QVariant>& arguments : spy)
    {
        names.push_back(arguments.at(0).toString().toStdString());
    }
    return names;
}

struct ClickRow
{
    const char* label;
    const char* presetName;
    std::function<void(AbstractPresetButton&)> act;
    std::vector<std::string> expected;  // the names Clicked carried, in order
};

void PrintTo(const ClickRow& row, std::ostream* out)
{
    *out << row.label;
}

class AbstractPresetButtonClickTest : public testing::TestWithParam<ClickRow>
{
};

TEST_P(AbstractPresetButtonClickTest, EmitsItsPresetNameWithEveryClick)
{
    const ClickRow& row = GetParam();
    AbstractPresetButton button(QString::fromUtf8(row.presetName));
    button.resize(button.sizeHint());
    button.show();
    QSignalSpy presets(&button, &AbstractPresetButton::Clicked);
    QSignalSpy clicks(&button, &QAbstractButton::clicked);

    row.act(button);

    EXPECT_EQ(Names(presets), row.expected);
    // One Clicked per clicked, never more or fewer.
    EXPECT_EQ(clicks.size(), presets.size());
}

void Click(AbstractPresetButton& button)
{
    QTest::mouseClick(&button, Qt::LeftButton);
}

INSTANTIATE_TEST_SUITE_P(
    PersonDriven, AbstractPresetButtonClickTest,
    testing::Values(
        ClickRow{"MouseClick", "FULL_HD", Click, {"FULL_HD"}},
        ClickRow{"TwoClicksTwoEmissions",
                 "FULL_HD",
                 [](AbstractPresetButton& b)
                 {
                     Click(b);
                     Click(b);
                 },
                 {"FULL_HD", "FULL_HD"}},
        ClickRow{"SpaceKey",
                 "GAME",
                 [](AbstractPresetButton& b)
                 {
                     b.setFocus();
                     QTest::keyClick(&b, Qt::Key_Space);
                 },
                 {"GAME"}},
        ClickRow{"ReleasedOutsideCancels",
                 "GAME",
                 [](AbstractPresetButton& b)
                 {
                     QTest::mousePress(&b, Qt::LeftButton);
                     QTest::mouseRelease(&b, Qt::LeftButton, {}, QPoint(-20, -20));
                 },
                 {}},
        ClickRow{"PressAloneEmitsNothing",
                 "GAME",
                 [](AbstractPresetButton& b) { QTest::mousePress(&b, Qt::LeftButton); },
                 {}},
        ClickRow{"Disabled",
                 "GAME",
                 [](AbstractPresetButton& b)
                 {
                     b.setEnabled(false);
                     Click(b);
                 },
                 {}},
        ClickRow{"RenamedBetweenClicks",
                 "GAME",
                 [](AbstractPresetButton& b)
                 {
                     Click(b);
                     b.SetPresetName("DESKTOP");
                     Click(b);
                 },
                 {"GAME", "DESKTOP"}},
        ClickRow{"EmptyNameStillEmits", "", Click, {""}},
        ClickRow{"NonAsciiName", "4K \xE2\x80\x93 60 fps", Click, {"4K \xE2\x80\x93 60 fps"}},
        ClickRow{"CheckableEmitsOnUncheckToo",
                 "WEBCAM",
                 [](AbstractPresetButton& b)
                 {
                     b.setCheckable(true);
                     Click(b);
                     Click(b);
                     EXPECT_FALSE(b.isChecked());
                 },
                 {"WEBCAM", "WEBCAM"}},
        ClickRow{
            "ProgrammaticClick", "GAME", [](AbstractPresetButton& b) { b.click(); }, {"GAME"}}),
    [](const testing::TestParamInfo<ClickRow>& info) { return std::string(info.param.label); });

QImage Render(AbstractPresetButton& button)
{
    button.resize(160, button.sizeHint().height());
    return button.grab().toImage();
}

TEST(AbstractPresetButtonTest, ShowsItsTextOrElseItsPresetName)
{
    AbstractPresetButton game("GAME");
    AbstractPresetButton desktop("DESKTOP");
    AbstractPresetButton labelled("DESKTOP");
    labelled.setText("GAME");

    EXPECT_NE(Render(game), Render(desktop));
    EXPECT_EQ(Render(game), Render(labelled));
}

TEST(AbstractPresetButtonTest, SizeHintFollowsTheShownText)
{
    AbstractPresetButton shortName("HD");
    AbstractPresetButton longName("FULL_HD_60_FPS_WITH_AUDIO");

    EXPECT_GT(longName.sizeHint().width(), shortName.sizeHint().width());
    EXPECT_GT(shortName.sizeHint().height(), 0);
    const int before = shortName.sizeHint().width();
    shortName.SetPresetName("FULL_HD_60_FPS_WITH_AUDIO");
    EXPECT_EQ(shortName.sizeHint().width(), longName.sizeHint().width());
    EXPECT_GT(shortName.sizeHint().width(), before);
}

}  // namespace
