// The host's widgets that the gui section hooks: the preset button and the button with a pop-up
// list, driven as a person would.

#include "UI/AbstractPresetButton.h"
#include "UI/ButtonWithPopUpList.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QListWidget>
#include <QSignalSpy>
#include <QTest>

#include <map>
#include <string>
#include <vector>

using Velkor::KT::ButtonWithPopUpList;
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

// What a person does, one character a step: o opens the list with a click, 0-9 clicks that
// entry in the middle of its row, d/u/e/x press Down, Up, Return and Escape in the list, S sets
// the third entry current, C clears, A adds two entries.
struct PickRow
{
    const char* label;
    QStringList items;
    const char* steps;
    std::vector<int> expectedSignals;
    int expectedIndex;
    const char* expectedText;  // what the button shows afterwards
};
using ButtonWithPopUpListPickTest = KtTest::Table<PickRow>;

TEST_P(ButtonWithPopUpListPickTest, ReportsEachChangeOfTheCurrentEntryOnce)
{
    const PickRow& row = GetParam();
    ButtonWithPopUpList button;
    button.SetItems(row.items);
    button.resize(button.sizeHint());
    button.show();
    QSignalSpy changes(&button, &ButtonWithPopUpList::CurrentIndexChanged);

    for (const char* step = row.steps; *step; ++step)
    {
        QListWidget* list = button.PopUp();
        const std::map<char, Qt::Key> keys{
            {'d', Qt::Key_Down}, {'u', Qt::Key_Up}, {'e', Qt::Key_Return}, {'x', Qt::Key_Escape}};
        if (*step == 'o')
        {
            QTest::mouseClick(&button, Qt::LeftButton);
            EXPECT_EQ(button.IsPopUpVisible(), !row.items.isEmpty());
        }
        else if (*step >= '0' && *step <= '9')
        {
            ASSERT_TRUE(list && list->isVisible());
            const QRect rect = list->visualItemRect(list->item(*step - '0'));
            ASSERT_FALSE(rect.isEmpty());
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, rect.center());
        }
        else if (keys.count(*step))
        {
            ASSERT_TRUE(list && list->isVisible());
            QTest::keyClick(list, keys.at(*step));
        }
        else if (*step == 'S')
        {
            button.SetCurrentIndex(2);
        }
        else if (*step == 'C')
        {
            button.Clear();
        }
        else if (*step == 'A')
        {
            button.AddItem("Default");
            button.AddItem("USB Headset");
        }
    }

    EXPECT_EQ(changes.size(), int(row.expectedSignals.size()));
    for (int i = 0; i < changes.size(); ++i)
    {
        EXPECT_EQ(changes.at(i).at(0).toInt(), row.expectedSignals.at(i));
    }
    EXPECT_EQ(button.CurrentIndex(), row.expectedIndex);
    EXPECT_EQ(button.CurrentText(), QString::fromUtf8(row.expectedText));
    EXPECT_FALSE(button.IsPopUpVisible());
}

const QStringList kMicrophones{"Default", "USB Headset", "Webcam Microphone"};

KT_ROWS(ButtonWithPopUpListPickTest,
        {{"ClickThirdEntry", kMicrophones, "o2", {2}, 2, "Webcam Microphone"},
         {"TwoPicksInOrder", kMicrophones, "o2o1", {2, 1}, 1, "USB Headset"},
         {"PickingTheCurrentEntryIsNoChange", kMicrophones, "o0", {}, 0, "Default"},
         {"KeysDownDownEnter", kMicrophones, "odde", {2}, 2, "Webcam Microphone"},
         {"EscapeLeavesTheEntry", kMicrophones, "odx", {}, 0, "Default"},
         {"ListOpensAtTheCurrentEntry", kMicrophones, "Soue", {2, 1}, 1, "USB Headset"},
         {"EmptyButtonOpensNoList", {}, "o", {}, -1, ""},
         {"ClearedReportsMinusOne", kMicrophones, "C", {-1}, -1, ""},
         {"FirstAddedEntryBecomesCurrent", {}, "A", {0}, 0, "Default"}});

}  // namespace
