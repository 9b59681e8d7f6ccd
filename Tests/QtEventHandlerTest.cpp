#include "Tracking/Gui/QtEventHandler_p.h"

#include "Support/QtPump.h"

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

// The filter never consumes an event: a top-level button still sees its click and its close
// request, and each registration is called once per event of its type.
TEST_F(QtEventHandlerTest, CallsOncePerMatchingEventAndPassesItOn)
{
    QPushButton button("Stop");
    QSignalSpy clicks(&button, &QPushButton::clicked);
    handler->Register(QEvent::MouseButtonRelease, &button, Record("release"));
    handler->Register(QEvent::Close, &button, Record("close"));
    button.show();
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_TRUE(button.close());
    EXPECT_EQ(clicks.size(), 1);
    EXPECT_FALSE(button.isVisible());
    EXPECT_EQ(calls, (std::vector<Call>{{"release", &button}, {"close", &button}}));
}

TEST_F(QtEventHandlerTest, RoutesByTypeAndObjectTogether)
{
    QWidget first;
    QWidget second;
    handler->Register(QEvent::Show, &first, Record("first-show"));
    handler->Register(QEvent::Show, &first, Record("never"));  // a pair's first registration runs
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

TEST_F(QtEventHandlerTest, DeletedObjectsAreForgotten)
{
    auto parent = std::make_unique<QWidget>();
    auto* button = new QPushButton("Stop", parent.get());
    handler->Register(QEvent::MouseButtonRelease, button, Record("button"));
    handler->Register(QEvent::Show, parent.get(), Record("parent"));
    handler->Register(QEvent::Show, parent.get(), Record("parent"));  // every registration goes
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
