// The three string-connect slot objects: LambdaQt4, LambdaQt4WithIntParameter (host utility
// library) and LambdaQt4WithStringParameter (this library) share one contract, tested together.

#include "Tracking/LambdaQt4WithStringParameter.h"
#include "Util/LambdaQt4.h"
#include "Util/LambdaQt4WithIntParameter.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <functional>
#include <memory>
#include <string>
#include <vector>

using Velkor::KT::Tracking::LambdaQt4WithStringParameter;
using Velkor::Util::LambdaQt4;
using Velkor::Util::LambdaQt4WithIntParameter;

namespace
{

// Each call as "senderName" or "senderName:argument".
using Calls = std::vector<std::string>;

std::string Name(QObject* sender)
{
    return sender->objectName().toStdString();
}

// The slot object for `slot` ("1execute()", "1execute(int)" or "1execute(QString)"), recording
// into `calls`; with `empty`, its function is empty.
QObject* MakeSlot(const std::string& slot, Calls& calls, QObject* parent, bool empty = false)
{
    if (slot == "1execute()")
    {
        return new LambdaQt4(
            empty ? LambdaQt4::Function()
                  : [&calls](QObject* sender) { calls.push_back(Name(sender)); },
            parent);
    }
    if (slot == "1execute(int)")
    {
        return new LambdaQt4WithIntParameter(
            empty ? LambdaQt4WithIntParameter::Function()
                  : [&calls](QObject* sender, int value)
                { calls.push_back(Name(sender) + ":" + std::to_string(value)); },
            parent);
    }
    return new LambdaQt4WithStringParameter(
        empty ? LambdaQt4WithStringParameter::Function()
              : [&calls](QObject* sender, const QString& value)
            { calls.push_back(Name(sender) + ":" + value.toUtf8().toStdString()); },
        parent);
}

// A widget driven by a person, its signal connected by text to one slot object.
struct ConnectRow
{
    const char* label;
    std::function<QWidget*()> make;
    const char* signal;
    const char* slot;
    std::function<void(QWidget*)> act;
    Calls expected;
};

using LambdaQt4ConnectTest = KtTest::Table<ConnectRow>;

TEST_P(LambdaQt4ConnectTest, CallsWithSenderAndArgumentPerEmission)
{
    const ConnectRow& row = GetParam();
    QObject owner;
    Calls calls;
    std::unique_ptr<QWidget> widget(row.make());
    widget->resize(120, 30);
    widget->show();
    ASSERT_TRUE(
        QObject::connect(widget.get(), row.signal, MakeSlot(row.slot, calls, &owner), row.slot));
    row.act(widget.get());
    EXPECT_EQ(calls, row.expected);
}

QWidget* Named(QWidget* widget, const char* name)
{
    widget->setObjectName(name);
    return widget;
}

void ClickTwice(QWidget* w)
{
    QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(6, w->height() / 2));
    QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(6, w->height() / 2));
}

KT_ROWS(LambdaQt4ConnectTest, {{"ButtonClicked",
                                [] { return Named(new QPushButton("OK"), "ok"); },
                                "2clicked(bool)",
                                "1execute()",
                                ClickTwice,
                                {"ok", "ok"}},
                               {"CheckBoxStateTwice",
                                [] { return Named(new QCheckBox("Audio"), "audio"); },
                                "2stateChanged(int)",
                                "1execute(int)",
                                ClickTwice,
                                {"audio:2", "audio:0"}},
                               {"ComboKeysInOrder",
                                []
                                {
                                    auto* combo = new QComboBox();
                                    combo->addItems({"Game", "Desktop", "Webcam"});
                                    return Named(combo, "mode");
                                },
                                "2currentIndexChanged(int)",
                                "1execute(int)",
                                [](QWidget* w)
                                {
                                    QTest::keyClick(w, Qt::Key_Down);
                                    QTest::keyClick(w, Qt::Key_Down);
                                    QTest::keyClick(w, Qt::Key_Up);
                                },
                                {"mode:1", "mode:2", "mode:1"}},
                               {"TypedTextAsUtf8",
                                [] { return Named(new QLineEdit(), "file"); },
                                "2textEdited(QString)",
                                "1execute(QString)",
                                [](QWidget* w)
                                {
                                    QTest::keyClicks(w, "a");
                                    QTest::sendKeyEvent(QTest::Click, w, Qt::Key_Eacute,
                                                        QString::fromUtf8("\xC3\xA9"), {});
                                },
                                {"file:a", "file:a\xC3\xA9"}}});

// A slot object with an empty function ignores its signal, and the other slots still get it.
TEST(LambdaQt4Test, EmptyFunctionDoesNotStopDelivery)
{
    QObject owner;
    Calls calls;
    QLineEdit edit;
    edit.setObjectName("file");
    for (const char* slot : {"1execute()", "1execute(int)", "1execute(QString)"})
    {
        const char* signal = std::string(slot) == "1execute(int)"
                                 ? "2cursorPositionChanged(int,int)"
                                 : "2textEdited(QString)";
        ASSERT_TRUE(QObject::connect(&edit, signal, MakeSlot(slot, calls, &owner, true), slot));
    }
    ASSERT_TRUE(QObject::connect(&edit, "2textEdited(QString)",
                                 MakeSlot("1execute(QString)", calls, &owner),
                                 "1execute(QString)"));
    QTest::keyClicks(&edit, "a");
    EXPECT_EQ(calls, Calls{"file:a"});
}

// Code that finds hook objects through Qt's meta-object system names them fully qualified.
TEST(LambdaQt4WithStringParameterTest, MetaObjectNameIsQualified)
{
    EXPECT_STREQ(LambdaQt4WithStringParameter::staticMetaObject.className(),
                 "Velkor::KT::Tracking::LambdaQt4WithStringParameter");
}

}  // namespace
