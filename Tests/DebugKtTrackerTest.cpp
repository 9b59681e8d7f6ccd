#include "Tracking/Tracking.h"

#include "Support/LogCapture.h"
#include "Support/QtPump.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QListWidget>
#include <QPointer>
#include <QScrollBar>
#include <QTimer>

#include <memory>
#include <string>
#include <thread>
#include <vector>

using Velkor::KT::Tracking::DebugKtTracker;
using Velkor::KT::Tracking::Event;

namespace
{

// Viewers are found the way a person finds them: among the application's top-level windows.
std::vector<QListWidget*> Viewers()
{
    std::vector<QListWidget*> viewers;
    for (QWidget* widget : QApplication::topLevelWidgets())
    {
        if (auto* list = qobject_cast<QListWidget*>(widget))
        {
            viewers.push_back(list);
        }
    }
    return viewers;
}

QListWidget* OnlyViewer()
{
    const auto viewers = Viewers();
    return viewers.size() == 1 ? viewers.front() : nullptr;
}

std::vector<std::string> Items(const QListWidget& list)
{
    std::vector<std::string> items;
    for (int row = 0; row < list.count(); ++row)
    {
        items.push_back(list.item(row)->text().toStdString());
    }
    return items;
}

class DebugKtTrackerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        KtTest::RunDeferredDeletes();
        ASSERT_TRUE(Viewers().empty()) << "a viewer of an earlier test is still alive";
    }

    void TearDown() override
    {
        tracker.reset();
        KtTest::RunDeferredDeletes();
        EXPECT_TRUE(Viewers().empty()) << "the viewer must be deleted after the tracker";
    }

    std::unique_ptr<DebugKtTracker> tracker = std::make_unique<DebugKtTracker>();
};

// A later event shows the same window again, with every item, after the user closed it.
TEST_F(DebugKtTrackerTest, FirstEventShowsThePlainWindowLaterOnesReuseIt)
{
    tracker->Track(Event{"EMAIL_DIALOG_SHOWN", {{"LANG", "en"}}});
    KtTest::Pump();
    QPointer<QListWidget> viewer = OnlyViewer();
    ASSERT_TRUE(viewer);
    EXPECT_TRUE(viewer->isVisible());
    EXPECT_EQ(viewer->parent(), nullptr);
    EXPECT_EQ(viewer->windowType(), Qt::Window);
    EXPECT_EQ(viewer->styleSheet().toStdString(),
              "color: black; background: white; font-family: \"Courier\"; font-size: 12px;");
    EXPECT_EQ(viewer->size(), QSize(640, 480));
    EXPECT_TRUE(viewer->windowTitle().isEmpty());
    ASSERT_TRUE(viewer->close());
    KtTest::Pump();
    ASSERT_TRUE(viewer) << "closing must only hide the window";
    tracker->Track(Event{"B", {}});
    KtTest::Pump();
    EXPECT_EQ(OnlyViewer(), viewer.data());
    EXPECT_TRUE(viewer->isVisible());
    EXPECT_EQ(Items(*viewer), (std::vector<std::string>{"EMAIL_DIALOG_SHOWN\n\tLANG=en\n", "B\n"}));
}

// Each event is one item; its text is also the "Stat:" log line (glog drops the final line end).
TEST_F(DebugKtTrackerTest, ItemAndLogLineShowTheEvent)
{
    const std::vector<std::pair<Event, std::string>> rows{
        {{"APP_EXIT", {}}, "APP_EXIT\n"},
        {{"E", {{"b", "2"}, {"A", "1"}}}, "E\n\tA=1\n\tb=2\n"},
        {{"E", {{"K", "one\ntwo"}}}, "E\n\tK=one\ntwo\n"},
        {{"E", {{"K", ""}, {"Q", "a=b"}}}, "E\n\tK=\n\tQ=a=b\n"},
        {{"E", {{"NAME", "\xC3\xA9t\xC3\xA9"}}}, "E\n\tNAME=\xC3\xA9t\xC3\xA9\n"}};
    KtTest::LogCapture log;
    std::vector<std::string> items;
    std::vector<std::string> statLines;
    for (const auto& [event, item] : rows)
    {
        tracker->Track(event);
        items.push_back(item);
        statLines.push_back("Stat:" + item.substr(0, item.size() - 1));
    }
    KtTest::Pump();
    QListWidget* viewer = OnlyViewer();
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(Items(*viewer), items);
    std::vector<std::string> logged;
    for (const auto& line : log.Lines())
    {
        if (line.message.rfind("Stat:", 0) == 0)
        {
            logged.push_back(line.message);
            EXPECT_EQ(line.severity, google::GLOG_INFO);
            EXPECT_EQ(line.file, "DebugKtTracker.cpp");
        }
    }
    EXPECT_EQ(logged, statLines);
}

// Every line of an event stays readable (an item is as tall as its text), and the list scrolls
// to the newest event.
TEST_F(DebugKtTrackerTest, ItemsAreTallEnoughAndTheNewestIsShown)
{
    tracker->Track(Event{"A", {}});
    tracker->Track(Event{"B", {{"K1", "1"}, {"K2", "2"}, {"K3", "3"}}});
    for (int i = 2; i < 200; ++i)
    {
        tracker->Track(Event{"E" + std::to_string(i), {{"K", "v"}}});
    }
    KtTest::Pump();
    QListWidget* viewer = OnlyViewer();
    ASSERT_NE(viewer, nullptr);
    ASSERT_EQ(viewer->count(), 200);
    const QRect last = viewer->visualItemRect(viewer->item(199));
    EXPECT_TRUE(viewer->viewport()->rect().intersects(last));
    QScrollBar* bar = viewer->verticalScrollBar();
    EXPECT_GT(bar->maximum(), 0);
    EXPECT_EQ(bar->value(), bar->maximum());
    bar->setValue(0);
    const int lineSpacing = viewer->fontMetrics().lineSpacing();
    const QRect one = viewer->visualItemRect(viewer->item(0));
    const QRect four = viewer->visualItemRect(viewer->item(1));
    EXPECT_GE(one.height(), lineSpacing);
    EXPECT_GE(four.height(), 4 * lineSpacing);
    EXPECT_GE(four.top(), one.bottom()) << "items must not overlap";
}

// Qt ends the event loop when the last window that counts is closed; the viewer does not count.
TEST_F(DebugKtTrackerTest, ClosingTheHostsLastWindowQuitsWhileTheViewerIsShown)
{
    ASSERT_TRUE(QApplication::quitOnLastWindowClosed());
    QWidget hostWindow;
    hostWindow.show();
    tracker->Track(Event{"A", {}});
    KtTest::Pump();
    QPointer<QListWidget> viewer = OnlyViewer();
    ASSERT_TRUE(viewer && viewer->isVisible());

    bool timedOut = false;
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout,
                     [&]
                     {
                         timedOut = true;
                         QCoreApplication::quit();
                     });
    guard.start(10000);
    QTimer::singleShot(0, &hostWindow, &QWidget::close);
    QApplication::exec();
    EXPECT_FALSE(timedOut) << "the viewer kept the event loop running";
}

// Track only queues the display; an event still queued when the tracker is destroyed is never
// shown, and the window is deleted later, by the event loop.
TEST_F(DebugKtTrackerTest, DestroyingDropsQueuedEventsAndDefersTheWindowDeletion)
{
    KtTest::Pump();
    EXPECT_TRUE(Viewers().empty()) << "no window before the first event";
    tracker->Track(Event{"A", {}});
    EXPECT_TRUE(Viewers().empty());
    KtTest::Pump();
    QPointer<QListWidget> viewer = OnlyViewer();
    ASSERT_TRUE(viewer);
    tracker->Track(Event{"B", {}});
    tracker.reset();
    ASSERT_TRUE(viewer) << "the window must outlive the tracker until the event loop runs";
    KtTest::RunDeferredDeletes();
    EXPECT_FALSE(viewer);
    KtTest::Pump();
    EXPECT_TRUE(Viewers().empty()) << "an event queued before the destruction was shown";
}

// Four threads track 10,000 events each while the GUI thread shows them: every event appears
// exactly once, and the events of each thread appear in that thread's call order.
TEST_F(DebugKtTrackerTest, ConcurrentTrackingLosesAndDoublesNothing)
{
    constexpr int kThreads = 4;
    constexpr int kPerThread = 10000;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
    {
        threads.emplace_back(
            [this, t]
            {
                for (int i = 0; i < kPerThread; ++i)
                {
                    tracker->Track(Event{"T" + std::to_string(t), {{"SEQ", std::to_string(i)}}});
                }
            });
    }
    // The GUI thread keeps displaying while the threads are still tracking.
    QPointer<QListWidget> viewer;
    ASSERT_TRUE(KtTest::PumpUntil(
        [&]
        {
            if (!viewer)
            {
                viewer = OnlyViewer();
            }
            return viewer && viewer->count() >= kThreads * kPerThread;
        }));
    for (auto& thread : threads)
    {
        thread.join();
    }
    KtTest::Pump();
    ASSERT_EQ(viewer->count(), kThreads * kPerThread);

    std::vector<int> next(kThreads, 0);
    for (int row = 0; row < viewer->count(); ++row)
    {
        const std::string text = viewer->item(row)->text().toStdString();
        int t = -1;
        int seq = -1;
        ASSERT_EQ(std::sscanf(text.c_str(), "T%d\n\tSEQ=%d\n", &t, &seq), 2) << text;
        ASSERT_TRUE(t >= 0 && t < kThreads) << text;
        ASSERT_EQ(seq, next[t]) << "row " << row << ": thread " << t
                                << " lost, doubled or reordered";
        ++next[t];
    }
    EXPECT_EQ(next, std::vector<int>(kThreads, kPerThread));
}

}  // namespace
