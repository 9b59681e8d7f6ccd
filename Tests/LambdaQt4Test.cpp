// The three string-connect slot objects: LambdaQt4, LambdaQt4WithIntParameter (host utility
// library) and LambdaQt4WithStringParameter (this library) share one contract, tested together.

#include "Tracking/LambdaQt4WithStringParameter.h"
#include "Util/LambdaQt4.h"
#include "Util/LambdaQt4WithIntParameter.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

using Velkor::KT::Tracking::LambdaQt4WithStringParameter;
using Velkor::Util::LambdaQt4;
using Velkor::Util::LambdaQt4WithIntParameter;

namespace
{

enum class Slot
{
    None,    // "1execute()"
    Int,     // "1execute(int)"
    String,  // "1execute(QString)"
};

const char* SlotText(Slot slot)
{
    static const char* const texts[] = {"1execute()", "1execute(int)", "1execute(QString)"};
    return texts[static_cast<int>(slot)];
}

// Each call as "senderName" or "senderName:argument".
using Calls = std::vector<std::string>;

// Makes the slot object of one kind, recording into `calls`; with `empty`, its function is empty.
QObject* MakeSlot(Slot slot, Calls& calls, QObject* parent, bool empty = false)
{
    const auto name = [](QObject* sender) { return sender->objectName().toStdString(); };
    switch (slot)
    {
        case Slot::None:
            return new LambdaQt4(
                empty ? LambdaQt4::Function()
                      : [&calls, name](QObject* sender) { calls.push_back(name(sender)); },
                parent);
        case Slot::Int:
            return new LambdaQt4WithIntParameter(
                empty ? LambdaQt4WithIntParameter::Function()
                      : [&calls, name](QObject* sender, int value)
                    { calls.push_back(name(sender) + ":" + std::to_string(value)); },
                parent);
        case Slot::String:
            return new LambdaQt4WithStringParameter(
                empty ? LambdaQt4WithStringParameter::Function()
                      : [&calls, name](QObject* sender, const QString& value)
                    { calls.push_back(name(sender) + ":" + value.toUtf8().toStdString()); },
                parent);
    }
    return nullptr;
}

QWidget* Named(QWidget* widget, const char* name)
{
    widget->setObjectName(name);
    widget->resize(120, 30);
    widget->show();
    return widget;
}

QWidget* MakeButton()
{
    return Named(new QPushButton("OK"), "okButton");
}

QWidget* MakeCheckBox()
{
    return Named(new QCheckBox("Audio"), "audioCheckBox");
}

QWidget* MakeComboBox()
{
    auto* combo = new QComboBox();
    combo->addItems({"Game", "Desktop", "Webcam"});
    return Named(combo, "captureModeComboBox");
}

QWidget* MakeLineEdit()
{
    return Named(new QLineEdit(), "fileNameEdit");
}

// A widget driven by a person, its signal connected by text to one slot object.
struct ConnectRow
{
    const char* label;
    std::function<QWidget*()> make;
    const char* signal;
    Slot slot;
    std::function<void(QWidget*)> act;
    Calls expected;
};

void PrintTo(const ConnectRow& row, std::ostream* out)
{
    *out << row.label;
}

class LambdaQt4ConnectTest : public testing::TestWithParam<ConnectRow>
{
protected:
    QObject owner;
    Calls calls;
};

TEST_P(LambdaQt4ConnectTest, CallsWithSenderAndArgumentPerEmission)
{
    const ConnectRow& row = GetParam();
    std::unique_ptr<QWidget> widget(row.make());
    QObject* slot = MakeSlot(row.slot, calls, &owner);

    ASSERT_TRUE(QObject::connect(widget.get(), row.signal, slot, SlotText(row.slot)));
    row.act(widget.get());

    EXPECT_EQ(calls, row.expected);
}

void ClickTwice(QWidget* w)
{
    QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(6, w->height() / 2));
    QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(6, w->height() / 2));
}
void DownDownUp(QWidget* w)
{
    QTest::keyClick(w, Qt::Key_Down);
    QTest::keyClick(w, Qt::Key_Down);
    QTest::keyClick(w, Qt::Key_Up);
}
void TypeAb(QWidget* w)
{
    QTest::keyClicks(w, "ab");
}
void TypeEAcute(QWidget* w)
{
    QTest::sendKeyEvent(QTest::Click, w, Qt::Key_Eacute, QString::fromUtf8("\xC3\xA9"), {});
}

INSTANTIATE_TEST_SUITE_P(PersonDriven, LambdaQt4ConnectTest,
                         testing::Values(ConnectRow{"ButtonClicked",
                                                    MakeButton,
                                                    "2clicked(bool)",
                                                    Slot::None,
                                                    ClickTwice,
                                                    {"okButton", "okButton"}},
                                         ConnectRow{"CheckBoxStateTwice",
                                                    MakeCheckBox,
                                                    "2stateChanged(int)",
                                                    Slot::Int,
                                                    ClickTwice,
                                                    {"audioCheckBox:2", "audioCheckBox:0"}},
                                         ConnectRow{
                                             "ComboKeysInOrder",
                                             MakeComboBox,
                                             "2currentIndexChanged(int)",
                                             Slot::Int,
                                             DownDownUp,
                                             {"captureModeComboBox:1", "captureModeComboBox:2",
                                              "captureModeComboBox:1"}},
                                         ConnectRow{"TypedText",
                                                    MakeLineEdit,
                                                    "2textEdited(QString)",
                                                    Slot::String,
                                                    TypeAb,
                                                    {"fileNameEdit:a", "fileNameEdit:ab"}},
                                         ConnectRow{"TypedTextAsUtf8",
                                                    MakeLineEdit,
                                                    "2textEdited(QString)",
                                                    Slot::String,
                                                    TypeEAcute,
                                                    {"fileNameEdit:\xC3\xA9"}}),
                         [](const testing::TestParamInfo<ConnectRow>& info)
                         { return std::string(info.param.label); });

// Signal texts that the sender lacks or that do not fit the slot: connect fails inside Qt and
// nothing else happens, the slot object stays with its owner.
struct MismatchRow
{
    const char* label;
    const char* signal;
    Slot slot;
};

void PrintTo(const MismatchRow& row, std::ostream* out)
{
    *out << row.label;
}

class LambdaQt4MismatchTest : public testing::TestWithParam<MismatchRow>
{
protected:
    QObject owner;
    Calls calls;
};

TEST_P(LambdaQt4MismatchTest, ConnectFailsAndSlotStays)
{
    const MismatchRow& row = GetParam();
    std::unique_ptr<QWidget> button(MakeButton());
    QPointer<QObject> slot = MakeSlot(row.slot, calls, &owner);

    const QMetaObject::Connection connection =
        QObject::connect(button.get(), row.signal, slot, SlotText(row.slot));
    QTest::mouseClick(button.get(), Qt::LeftButton);

    EXPECT_FALSE(connection);
    EXPECT_TRUE(calls.empty());
    ASSERT_FALSE(slot.isNull());
    EXPECT_EQ(slot->parent(), &owner);
}

INSTANTIATE_TEST_SUITE_P(
    BadSignalTexts, LambdaQt4MismatchTest,
    testing::Values(MismatchRow{"NoSuchSignal", "2CloseRequested()", Slot::None},

                    MismatchRow{"WrongArgumentType", "2clicked(QString)", Slot::String},
                    MismatchRow{"SignalWithoutTheSlotsArgument", "2clicked()", Slot::Int},

                    MismatchRow{"MissingSignalPrefix", "clicked()", Slot::None}),
    [](const testing::TestParamInfo<MismatchRow>& info) { return std::string(info.param.label); });

// A signal of a line edit that fits the slot of each kind.
const char* LineEditSignalFor(Slot slot)
{
    return slot == Slot::Int ? "2cursorPositionChanged(int,int)" : "2textEdited(QString)";
}

class LambdaQt4KindTest : public testing::TestWithParam<Slot>
{
protected:
    QObject owner;
    Calls calls;
};

TEST_P(LambdaQt4KindTest, EmptyFunctionDoesNotStopDelivery)
{
    std::unique_ptr<QWidget> edit(MakeLineEdit());
    QObject* silent = MakeSlot(GetParam(), calls, &owner, true);
    QObject* recorder = MakeSlot(Slot::String, calls, &owner);
    ASSERT_TRUE(
        QObject::connect(edit.get(), LineEditSignalFor(GetParam()), silent, SlotText(GetParam())));
    ASSERT_TRUE(
        QObject::connect(edit.get(), "2textEdited(QString)", recorder, "1execute(QString)"));

    QTest::keyClicks(edit.get(), "a");

    EXPECT_EQ(calls, Calls{"fileNameEdit:a"});
}

INSTANTIATE_TEST_SUITE_P(AllKinds, LambdaQt4KindTest,
                         testing::Values(Slot::None, Slot::Int, Slot::String),
                         [](const testing::TestParamInfo<Slot>& info)
                         {
                             return std::string(info.param == Slot::None  ? "Plain"
                                                : info.param == Slot::Int ? "Int"
                                                                          : "String");
                         });

// Code that finds hook objects through Qt's meta-object system names them fully qualified.
TEST(LambdaQt4WithStringParameterTest, MetaObjectNameIsQualified)
{
    EXPECT_STREQ(LambdaQt4WithStringParameter::staticMetaObject.className(),
                 "Velkor::KT::Tracking::LambdaQt4WithStringParameter");
}

}  // namespace
