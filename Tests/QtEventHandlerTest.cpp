#include "Tracking/QtEventHandler.h"

#include "Support/QtPump.h"

#include <gtest/gtest.h>

#include <QtCore/private/qobject_p.h>

#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <ostream>
#include <string>
#include <vector>

// Counting global allocator: every operator new of this program (Qt and the library included)
// comes through here, so a test can prove that a piece of code allocates nothing.
namespace
{

thread_local bool countAllocations = false;
thread_local std::size_t allocations = 0;

void* Allocate(std::size_t size) noexcept
{
    if (countAllocations)
    {
        ++allocations;
    }
    return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

void* operator new(std::size_t size)
{
    if (void* memory = Allocate(size))
    {
        return memory;
    }
    throw std::bad_alloc();
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

using Velkor::KT::Tracking::QtEventHandler;

namespace
{

// Counts the allocations made on this thread while it lives.
class AllocationCounter
{
public:
    AllocationCounter()
    {
        allocations = 0;
        countAllocations = true;
    }
    ~AllocationCounter() { countAllocations = false; }
    std::size_t Count() const { return allocations; }
};

// The number of references to `object`'s guard (the block behind every QPointer to it) that
// outlive it, beyond the one `probe` holds. Qt's event filter lists keep such a reference for
// every filter that was destroyed without being removed.
class DanglingFilterProbe
{
public:
    explicit DanglingFilterProbe(QObject* object) : keep(object)
    {
        guard = QObjectPrivate::get(object)->sharedRefcount.loadRelaxed();
    }

    // Valid after the object is destroyed.
    int LeftOverReferences() const { return guard->weakref.loadRelaxed() - 1; }

private:
    QPointer<QObject> keep;
    QtSharedPointer::ExternalRefCountData* guard = nullptr;
};

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
    std::function<void(QPushButton&)> act;
    int expectedCalls;
    int expectedClicks;
    bool expectedVisible;
};

void PrintTo(const DispatchRow& row, std::ostream* out)
{
    *out << row.label;
}

void ShowHideShow(QPushButton& b)
{
    b.show();
    b.hide();
    b.show();
}
void ShowThenClose(QPushButton& b)
{
    b.show();
    EXPECT_TRUE(b.close());
}
void ShowThenHide(QPushButton& b)
{
    b.show();
    b.hide();
}
void MouseClick(QPushButton& b)
{
    b.show();
    QTest::mouseClick(&b, Qt::LeftButton);
}
void MousePress(QPushButton& b)
{
    b.show();
    QTest::mousePress(&b, Qt::LeftButton);
}
void SpaceKey(QPushButton& b)
{
    b.show();
    QTest::keyClick(&b, Qt::Key_Space);
}

class QtEventHandlerDispatchTest : public QtEventHandlerTest,
                                   public testing::WithParamInterface<DispatchRow>
{
};

TEST_P(QtEventHandlerDispatchTest, CallsOncePerMatchingEventAndPassesItOn)
{
    const DispatchRow& row = GetParam();
    QPushButton button("Stop");
    QSignalSpy clicks(&button, &QPushButton::clicked);
    handler->Register(row.type, &button, Record("hook"));

    row.act(button);

    EXPECT_EQ(calls, std::vector<Call>(row.expectedCalls, Call{"hook", &button}));
    EXPECT_EQ(clicks.size(), row.expectedClicks);
    EXPECT_EQ(button.isVisible(), row.expectedVisible);
}

INSTANTIATE_TEST_SUITE_P(
    RealWidgets, QtEventHandlerDispatchTest,
    testing::Values(
        DispatchRow{"ShownTwiceCallsTwice", QEvent::Show, ShowHideShow, 2, 0, true},
        DispatchRow{"CloseStillCloses", QEvent::Close, ShowThenClose, 1, 0, false},
        DispatchRow{"HideIsNotClose", QEvent::Close, ShowThenHide, 0, 0, false},
        DispatchRow{"ReleaseStillClicks", QEvent::MouseButtonRelease, MouseClick, 1, 1, true},
        DispatchRow{"PressIsNoRelease", QEvent::MouseButtonRelease, MousePress, 0, 0, true},
        DispatchRow{"KeyClickIsNoRelease", QEvent::MouseButtonRelease, SpaceKey, 0, 1, true},
        DispatchRow{"NativeWindowOnFirstShowOnly", QEvent::WinIdChange, ShowHideShow, 1, 0, true}),
    [](const testing::TestParamInfo<DispatchRow>& info) { return std::string(info.param.label); });

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

TEST_F(QtEventHandlerTest, NewObjectAtAddressOfDeletedOneIsNotMistakenForIt)
{
    // Construct both widgets in the same storage, so the second one surely reuses the address.
    alignas(QWidget) unsigned char storage[sizeof(QWidget)];
    auto* old = new (storage) QWidget();
    handler->Register(QEvent::Show, old, Record("old-show"));
    old->~QWidget();
    EXPECT_EQ(handler->RegistrationCount(), 0u);

    auto* reborn = new (storage) QWidget();
    ASSERT_EQ(static_cast<void*>(reborn), static_cast<void*>(old));
    // A registration of another type puts the handler's filter on the new widget, so its show
    // event does reach the handler; only the stale entry could make it call "old-show".
    handler->Register(QEvent::Close, reborn, Record("reborn-close"));
    reborn->show();
    reborn->close();

    EXPECT_EQ(calls, (std::vector<Call>{{"reborn-close", reborn}}));
    reborn->~QWidget();
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

TEST_F(QtEventHandlerTest, DestroyedHandlerLeavesNoFilterBehind)
{
    // The probe itself must see a filter that is destroyed without being removed.
    {
        QWidget window;
        auto* plainFilter = new QObject();
        window.installEventFilter(plainFilter);
        DanglingFilterProbe probe(plainFilter);
        delete plainFilter;
        ASSERT_EQ(probe.LeftOverReferences(), 1);
    }

    QWidget window;
    QPushButton button("Stop", &window);
    QWidget other;
    handler->Register(QEvent::Show, &window, Record("show"));
    handler->Register(QEvent::Close, &window, Record("close"));
    handler->Register(QEvent::MouseButtonRelease, &button, Record("release"));
    handler->Register(QEvent::Show, &other, Record("other"));
    DanglingFilterProbe probe(handler.get());

    handler.reset();

    EXPECT_EQ(probe.LeftOverReferences(), 0);
    window.show();
    QTest::mouseClick(&button, Qt::LeftButton);
    window.close();
    EXPECT_TRUE(calls.empty());
}

// Lookups for events the handler does not handle, and for one it does, with a filled registry.
struct LookupRow
{
    const char* label;
    QEvent::Type type;
    int objectIndex;  // into the watched objects; -1: an object that was never registered
    bool handled;
};

void PrintTo(const LookupRow& row, std::ostream* out)
{
    *out << row.label;
}

class QtEventHandlerLookupTest : public QtEventHandlerTest,
                                 public testing::WithParamInterface<LookupRow>
{
protected:
    void SetUp() override
    {
        for (int i = 0; i < 50; ++i)
        {
            objects.push_back(std::make_unique<QObject>());
            // The callback counts without allocating.
            handler->Register(QEvent::Show, objects.back().get(), [this](QObject*) { ++handled; });
            handler->Register(QEvent::Close, objects.back().get(), [this](QObject*) { ++handled; });
        }
    }

    std::vector<std::unique_ptr<QObject>> objects;
    QObject unregistered;
    int handled = 0;
};

TEST_P(QtEventHandlerLookupTest, AllocatesNothing)
{
    const LookupRow& row = GetParam();
    QObject* watched = row.objectIndex < 0 ? &unregistered : objects.at(row.objectIndex).get();
    QEvent event(row.type);

    std::size_t counted = 0;
    bool consumed = true;
    {
        AllocationCounter counter;
        consumed = handler->eventFilter(watched, &event);
        counted = counter.Count();
    }

    EXPECT_EQ(counted, 0u);
    EXPECT_FALSE(consumed);
    EXPECT_EQ(handled, row.handled ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    FilledRegistry, QtEventHandlerLookupTest,
    testing::Values(LookupRow{"PaintOfWatchedObject", QEvent::Paint, 7, false},
                    LookupRow{"TimerOfWatchedObject", QEvent::Timer, 0, false},
                    LookupRow{"MoveOfLastWatchedObject", QEvent::Move, 49, false},
                    LookupRow{"TypeBelowAllRegistered", QEvent::None, 3, false},
                    LookupRow{"TypeAboveAllRegistered", QEvent::User, 3, false},
                    LookupRow{"RegisteredTypeOfUnwatchedObject", QEvent::Show, -1, false},
                    LookupRow{"HandledShow", QEvent::Show, 25, true},
                    LookupRow{"HandledClose", QEvent::Close, 49, true}),
    [](const testing::TestParamInfo<LookupRow>& info) { return std::string(info.param.label); });

TEST(AllocationCounterTest, SeesAllocationsOfThisProgram)
{
    AllocationCounter counter;
    auto value = std::make_unique<int>(1);
    QObject object;
    EXPECT_GE(counter.Count(), 2u);
}

}  // namespace
