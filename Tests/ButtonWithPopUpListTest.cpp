#include "UI/ButtonWithPopUpList.h"

#include <gtest/gtest.h>

#include <QListWidget>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

using Velkor::KT::ButtonWithPopUpList;

namespace
{

std::vector<int> Indexes(const QSignalSpy& spy)
{
    std::vector<int> indexes;
    for (const QList<QVariant>& arguments : spy)
    {
        indexes.push_back(arguments.at(0).toInt());
    }
    return indexes;
}

void OpenList(ButtonWithPopUpList& button)
{
    QTest::mouseClick(&button, Qt::LeftButton);
    ASSERT_TRUE(button.IsPopUpVisible());
}

// Clicks an entry of the open list where a person would: in the middle of its row.
void ClickEntry(ButtonWithPopUpList& button, int row)
{
    QListWidget* list = button.PopUp();
    ASSERT_NE(list, nullptr);
    ASSERT_TRUE(list->isVisible());
    const QRect rect = list->visualItemRect(list->item(row));
    ASSERT_FALSE(rect.isEmpty());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, rect.center());
}

void PressKey(ButtonWithPopUpList& button, Qt::Key key)
{
    ASSERT_NE(button.PopUp(), nullptr);
    QTest::keyClick(button.PopUp(), key);
}

struct PickRow
{
    const char* label;
    QStringList items;
    std::function<void(ButtonWithPopUpList&)> act;
    std::vector<int> expectedSignals;
    int expectedIndex;
    const char* expectedText;  // what the button shows afterwards
};

void PrintTo(const PickRow& row, std::ostream* out)
{
    *out << row.label;
}

class ButtonWithPopUpListPickTest : public testing::TestWithParam<PickRow>
{
};

TEST_P(ButtonWithPopUpListPickTest, ReportsEachChangeOfTheCurrentEntryOnce)
{
    const PickRow& row = GetParam();
    ButtonWithPopUpList button;
    button.SetItems(row.items);
    button.resize(button.sizeHint());
    button.show();
    QSignalSpy changes(&button, &ButtonWithPopUpList::CurrentIndexChanged);

    row.act(button);

    EXPECT_EQ(Indexes(changes), row.expectedSignals);
    EXPECT_EQ(button.CurrentIndex(), row.expectedIndex);
    EXPECT_EQ(button.CurrentText(), QString::fromUtf8(row.expectedText));
    EXPECT_FALSE(button.IsPopUpVisible());
}

const QStringList kMicrophones{"Default", "USB Headset", "Webcam Microphone"};

void ClickThird(ButtonWithPopUpList& b)
{
    OpenList(b);
    ClickEntry(b, 2);
}
void ClickThirdThenSecond(ButtonWithPopUpList& b)
{
    ClickThird(b);
    OpenList(b);
    ClickEntry(b, 1);
}
void ClickFirst(ButtonWithPopUpList& b)
{
    OpenList(b);
    ClickEntry(b, 0);
}
void DownDownEnter(ButtonWithPopUpList& b)
{
    OpenList(b);
    PressKey(b, Qt::Key_Down);
    PressKey(b, Qt::Key_Down);
    PressKey(b, Qt::Key_Return);
}
void DownEscape(ButtonWithPopUpList& b)
{
    OpenList(b);
    PressKey(b, Qt::Key_Down);
    PressKey(b, Qt::Key_Escape);
}
void SetThirdThenUpEnter(ButtonWithPopUpList& b)
{
    b.SetCurrentIndex(2);
    OpenList(b);
    EXPECT_EQ(b.PopUp()->currentRow(), 2);
    PressKey(b, Qt::Key_Up);
    PressKey(b, Qt::Key_Enter);
}
void ClickEmpty(ButtonWithPopUpList& b)
{
    QTest::mouseClick(&b, Qt::LeftButton);
    EXPECT_FALSE(b.IsPopUpVisible());
}
void Clear(ButtonWithPopUpList& b)
{
    b.Clear();
}
void AddTwo(ButtonWithPopUpList& b)
{
    b.AddItem("Default");
    b.AddItem("USB Headset");
}

INSTANTIATE_TEST_SUITE_P(
    PersonDriven, ButtonWithPopUpListPickTest,
    testing::Values(
        PickRow{"ClickThirdEntry", kMicrophones, ClickThird, {2}, 2, "Webcam Microphone"},
        PickRow{"TwoPicksInOrder", kMicrophones, ClickThirdThenSecond, {2, 1}, 1, "USB Headset"},
        PickRow{"PickingTheCurrentEntryIsNoChange", kMicrophones, ClickFirst, {}, 0, "Default"},
        PickRow{"KeysDownDownEnter", kMicrophones, DownDownEnter, {2}, 2, "Webcam Microphone"},
        PickRow{"EscapeLeavesTheEntry", kMicrophones, DownEscape, {}, 0, "Default"},
        PickRow{"ListOpensAtTheCurrentEntry",
                kMicrophones,
                SetThirdThenUpEnter,
                {2, 1},
                1,
                "USB Headset"},
        PickRow{"EmptyButtonOpensNoList", {}, ClickEmpty, {}, -1, ""},
        PickRow{"ClearedReportsMinusOne", kMicrophones, Clear, {-1}, -1, ""},
        PickRow{"FirstAddedEntryBecomesCurrent", {}, AddTwo, {0}, 0, "Default"}),
    [](const testing::TestParamInfo<PickRow>& info) { return std::string(info.param.label); });

TEST(ButtonWithPopUpListTest, ListOpensBelowTheButtonWithEveryEntry)
{
    QWidget window;
    window.resize(300, 200);
    ButtonWithPopUpList button(&window);
    button.SetItems(kMicrophones);
    button.move(20, 30);
    button.resize(button.sizeHint());
    window.show();

    QTest::mouseClick(&button, Qt::LeftButton);

    QListWidget* list = button.PopUp();
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->isVisible());
    EXPECT_TRUE(list->isWindow());
    ASSERT_EQ(list->count(), kMicrophones.size());
    for (int row = 0; row < list->count(); ++row)
    {
        EXPECT_EQ(list->item(row)->text(), kMicrophones.at(row));
    }
    EXPECT_EQ(list->geometry().topLeft(), button.mapToGlobal(button.rect().bottomLeft()));
    EXPECT_GE(list->width(), button.width());
}

}  // namespace
