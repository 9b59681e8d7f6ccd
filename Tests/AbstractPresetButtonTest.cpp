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

void ClickTwice(AbstractPresetButton& b)
{
    Click(b);
    Click(b);
}
void SpaceKey(AbstractPresetButton& b)
{
    QTest::keyClick(&b, Qt::Key_Space);
}
void ReleaseOutside(AbstractPresetButton& b)
{
    QTest::mousePress(&b, Qt::LeftButton);
    QTest::mouseRelease(&b, Qt::LeftButton, {}, QPoint(-20, -20));
}
void RenameBetweenClicks(AbstractPresetButton& b)
{
    Click(b);
    b.SetPresetName("DESKTOP");
    Click(b);
}
void CheckAndUncheck(AbstractPresetButton& b)
{
    b.setCheckable(true);
    ClickTwice(b);
    EXPECT_FALSE(b.isChecked());
}

INSTANTIATE_TEST_SUITE_P(
    PersonDriven, AbstractPresetButtonClickTest,
    testing::Values(
        ClickRow{"TwoClicksTwoEmissions", "FULL_HD", ClickTwice, {"FULL_HD", "FULL_HD"}},
        ClickRow{"SpaceKey", "GAME", SpaceKey, {"GAME"}},
        ClickRow{"ReleasedOutsideCancels", "GAME", ReleaseOutside, {}},
        ClickRow{"RenamedBetweenClicks", "GAME", RenameBetweenClicks, {"GAME", "DESKTOP"}},
        ClickRow{"EmptyNameStillEmits", "", Click, {""}},
        ClickRow{"NonAsciiName", "4K \xE2\x80\x93 60", Click, {"4K \xE2\x80\x93 60"}},
        ClickRow{"CheckableEmitsOnUncheckToo", "WEBCAM", CheckAndUncheck, {"WEBCAM", "WEBCAM"}}),
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

TEST(AbstractPresetButtonTest, SizeHintFollowsThePresetName)
{
    AbstractPresetButton button("HD");
    const int before = button.sizeHint().width();
    button.SetPresetName("FULL_HD_60_FPS_WITH_AUDIO");
    EXPECT_GT(button.sizeHint().width(),
              before + button.fontMetrics().horizontalAdvance("FULL_HD_60"));
}

}  // namespace
