#include "UI/AbstractPresetButton.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include <string>
#include <vector>

using Velkor::KT::UI::AbstractPresetButton;

namespace
{

// What a person does, one character a step: c clicks, k presses Space, o presses and releases
// outside the button, r renames the preset to "DESKTOP", t makes the button checkable.
struct ClickRow
{
    const char* label;
    const char* presetName;
    const char* steps;
    std::vector<std::string> expected;  // the names Clicked carried, in order
};
using AbstractPresetButtonClickTest = KtTest::Table<ClickRow>;

TEST_P(AbstractPresetButtonClickTest, EmitsItsPresetNameWithEveryClick)
{
    const ClickRow& row = GetParam();
    AbstractPresetButton button(QString::fromUtf8(row.presetName));
    button.resize(button.sizeHint());
    button.show();
    QSignalSpy presets(&button, &AbstractPresetButton::Clicked);
    QSignalSpy clicks(&button, &QAbstractButton::clicked);

    for (const char* step = row.steps; *step; ++step)
    {
        switch (*step)
        {
            case 'c':
                QTest::mouseClick(&button, Qt::LeftButton);
                break;
            case 'k':
                QTest::keyClick(&button, Qt::Key_Space);
                break;
            case 'o':
                QTest::mousePress(&button, Qt::LeftButton);
                QTest::mouseRelease(&button, Qt::LeftButton, {}, QPoint(-20, -20));
                break;
            case 'r':
                button.SetPresetName("DESKTOP");
                break;
            case 't':
                button.setCheckable(true);
                break;
        }
    }

    std::vector<std::string> names;
    for (const QList<QVariant>& arguments : presets)
    {
        names.push_back(arguments.at(0).toString().toStdString());
    }
    EXPECT_EQ(names, row.expected);
    // One Clicked per clicked, never more or fewer.
    EXPECT_EQ(clicks.size(), presets.size());
}

KT_ROWS(AbstractPresetButtonClickTest,
        {{"TwoClicksTwoEmissions", "FULL_HD", "cc", {"FULL_HD", "FULL_HD"}},
         {"SpaceKey", "GAME", "k", {"GAME"}},
         {"ReleasedOutsideCancels", "GAME", "o", {}},
         {"RenamedBetweenClicks", "GAME", "crc", {"GAME", "DESKTOP"}},
         {"EmptyNameStillEmits", "", "c", {""}},
         {"NonAsciiName", "4K \xE2\x80\x93 60", "c", {"4K \xE2\x80\x93 60"}},
         {"CheckableEmitsOnUncheckToo", "WEBCAM", "tcc", {"WEBCAM", "WEBCAM"}}});

}  // namespace
