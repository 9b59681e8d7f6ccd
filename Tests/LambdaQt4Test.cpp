// The library's string-connect slot object. Its siblings of the host utility library, and the
// hooks of all three, are exercised through the GUI handler's signal hooks (GuiHandlerTest).

#include "Tracking/Gui/LambdaQt4WithStringParameter_p.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTest>

#include <string>
#include <vector>

using Velkor::KT::Tracking::LambdaQt4WithStringParameter;

namespace
{

// Connected by text, it is called once per emission with the sender and the text as UTF-8.
TEST(LambdaQt4WithStringParameterTest, CallsWithSenderAndUtf8TextPerEmission)
{
    QObject owner;
    std::vector<std::string> calls;
    QLineEdit edit;
    edit.setObjectName("file");
    auto* slot = new LambdaQt4WithStringParameter(
        [&calls](QObject* sender, const QString& value) {
            calls.push_back(sender->objectName().toStdString() + ":" +
                            value.toUtf8().toStdString());
        },
        &owner);
    ASSERT_TRUE(QObject::connect(&edit, "2textEdited(QString)", slot, "1execute(QString)"));
    QTest::keyClicks(&edit, "a");
    QTest::sendKeyEvent(QTest::Click, &edit, Qt::Key_Eacute, QString::fromUtf8("\xC3\xA9"), {});
    EXPECT_EQ(calls, (std::vector<std::string>{"file:a", "file:a\xC3\xA9"}));
}

// Code that finds hook objects through Qt's meta-object system names them fully qualified.
TEST(LambdaQt4WithStringParameterTest, MetaObjectNameIsQualified)
{
    EXPECT_STREQ(LambdaQt4WithStringParameter::staticMetaObject.className(),
                 "Velkor::KT::Tracking::LambdaQt4WithStringParameter");
}

}  // namespace
