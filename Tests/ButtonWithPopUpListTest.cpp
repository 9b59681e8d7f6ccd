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

namespace
{

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
