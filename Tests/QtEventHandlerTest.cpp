#include "Tracking/Gui/QtEventHandler_p.h"

#include "Support/QtPump.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

using Velkor::KT::Tracking::QtEventHandler;

// A new object at the address of a deleted one, and the filter a destroyed handler must not leave
// behind, are shown through the GUI handler (GuiHandlerTest), which registers here.

namespace
{

struct Call
{
    std::string tag;
    QObject* object;

    bool operator==(const Call& other) const { return tag == other.tag && object == other.object; }
};

void PrintTo(const Call& call, std::ostream* out)
{
    *out << call.tag << '@' << call.object;
}

class QtEventHandlerTest : public testing::Test
{
protected:
    QtEventHandler::Callback Record(const std::string& tag)
    {
        return [this, tag](QObject* object) { calls.push_back({tag, object}); };
    }

    std::unique_ptr<QtEventHandler> handler = std::make_unique<QtEventHandler>();
    std::vector<Call> calls;
};

// One registration on a real top-level button, driven by the user or the window system. The
// filter never consumes an event: the button must still see its clicks and close requests.
struct DispatchRow
{
    const char* label;
    QEvent::Type type;
    const char* steps;  // s: show, h: hide, c: close, m: mouse click, p: mouse press, k: space
    int expectedCalls;
    int expectedClicks;
    bool expectedVisible;
};
using QtEventHandlerDispatchTest = KtTest::Table<DispatchRow>;

TEST_P(QtEventHandlerDispatchTest, CallsOncePerMatchingEventAndPassesItOn)
{
    const DispatchRow& row = GetParam();
    QPushButton button("Stop");
    QSignalSpy clicks(&button, &QPushButton::clicked);
    std::vector<QObject*> calls;
    QtEventHandler handler;
    handler.Register(row.type, &button, [&](QObject* object) { calls.push_back(object); });

    for (const char* step = row.steps; *step; ++step)
    {
        switch (*step)
        {
            case 's':
                button.show();
                break;
            case 'h':
                button.hide();
                break;
            case 'c':
                EXPECT_TRUE(button.close());
                break;
            case 'm':
                QTest::mouseClick(&button, Qt::LeftButton);
                break;
            case 'p':
                QTest::mousePress(&button, Qt::LeftButton);
                break;
            case 'k':
                QTest::keyClick(&button, Qt::Key_Space);
                break;
        }
    }

    EXPECT_EQ(calls, std::vector<QObject*>(row.expectedCalls, &button));
    EXPECT_EQ(clicks.size(), row.expectedClicks);
    EXPECT_EQ(button.isVisible(), row.expectedVisible);
}

KT_ROWS(QtEventHandlerDispatchTest,
        {{"ShownTwiceCallsTwice", QEvent::Show, "shs", 2, 0, true},
         {"CloseStillCloses", QEvent::Close, "sc", 1, 0, false},
         {"HideIsNotClose", QEvent::Close, "sh", 0, 0, false},
         {"ReleaseStillClicks", QEvent::MouseButtonRelease, "sm", 1, 1, true},
         {"PressIsNoRelease", QEvent::MouseButtonRelease, "sp", 0, 0, true},
         {"KeyClickIsNoRelease", QEvent::MouseButtonRelease, "sk", 0, 1, true},
         {"NativeWindowOnFirstShowOnly", QEvent::WinIdChange, "shs", 1, 0, true}});

TEST_F(QtEventHandlerTest, RoutesByTypeAndObjectTogether)
{
    QWidget first;
    QWidget second;
    handler->Register(QEvent::Show, &first, Record("first-show"));
    handler->Register(QEvent::Close, &second, Record("second-close"));
    handler->Register(QEvent::Show, &second, Record("second-show"));

    first.show();
    second.show();
    first.close();  // Close is registered, but for the other window
    second.close();
    first.show();

    EXPECT_EQ(calls, (std::vector<Call>{{"first-show", &first},
                                        {"second-show", &second},
                                        {"second-close", &second},
                                        {"first-show", &first}}));
}

TEST_F(QtEventHandlerTest, FirstOfTwoRegistrationsOfAPairRunsAlone)
{
    auto window = std::make_unique<QWidget>();
    handler->Register(QEvent::Show, window.get(), Record("first"));
    handler->Register(QEvent::Show, window.get(), Record("second"));
    handler->Register(QEvent::Close, window.get(), Record("close"));

    window->show();
    window->hide();
    window->show();
    window->close();

    EXPECT_EQ(calls,
              (std::vector<Call>{
                  {"first", window.get()}, {"first", window.get()}, {"close", window.get()}}));

    window.reset();
    EXPECT_EQ(handler->RegistrationCount(), 0u);
}

TEST_F(QtEventHandlerTest, DeletedObjectsAreForgotten)
{
    auto parent = std::make_unique<QWidget>();
    auto* button = new QPushButton("Stop", parent.get());
    handler->Register(QEvent::MouseButtonRelease, button, Record("button"));
    handler->Register(QEvent::Show, parent.get(), Record("parent"));
    QPointer<QWidget> dialog = new QWidget();
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    handler->Register(QEvent::Close, dialog, Record("dialog"));
    QWidget* const dialogAddress = dialog;

    parent.reset();
    dialog->show();
    dialog->close();
    KtTest::RunDeferredDeletes();

    ASSERT_TRUE(dialog.isNull());
    EXPECT_EQ(calls, (std::vector<Call>{{"dialog", dialogAddress}}));
    EXPECT_EQ(handler->RegistrationCount(), 0u);
    // The handler's destructor touches the object of every remaining entry: under the address
    // sanitizer a forgotten entry shows up here as a use after free.
    handler.reset();
}

}  // namespace
