// The highlight of hooked widgets: what it outlines, taken from real attach reports, and, under
// Xvfb, what it draws on the screen and that the host's widgets and event loop are left alone.

#include "Tracking/Gui/HookHighlight.h"

#include "Tracking/Gui/HighlightMarks_p.h"
#include "Tracking/Gui/HighlightOverlay_p.h"

#include "Support/Named.h"
#include "Support/QtPump.h"
#include "Support/ReportingHandler.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QDebug>
#include <QImage>
#include <QLabel>
#include <QMetaProperty>
#include <QPushButton>
#include <QScreen>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using KtTest::Named;
using Velkor::KT::Tracking::AttachReport;
using Velkor::KT::Tracking::HookHighlight;
using Velkor::KT::Tracking::Gui::HighlightMarks;
using Velkor::KT::Tracking::Gui::Outline;
using Velkor::KT::Tracking::Gui::OutlineColor;
using Style = Velkor::KT::Tracking::Gui::OutlineStyle;

namespace
{

// One element a line: the lines are what the outlines' texts name.
const std::string kDocument = KtTest::GuiDocument(R"(<widget id="MainWindow">
<button id="twiceButton"><mouse-release-event event="TWICE_TOP"/></button>
<button id="okButton"><clicked-event event="OK_CLICKED"/></button>
<widget id="panel">
<button id="twiceButton"><clicked-event event="TWICE_NESTED"/></button>
</widget>
</widget>
<action id="actionQuit" propertyName="state"><triggered-event event="QUIT"/></action>
)");

// A window with one widget of each kind the highlight tells apart, well apart from each other.
struct Host
{
    Host()
    {
        window.setObjectName("MainWindow");
        window.addAction(quit);
        tool->setDefaultAction(quit);
        (new QVBoxLayout(panel))->addWidget(twice);
        auto* layout = new QVBoxLayout(&window);
        layout->setSpacing(12);
        for (QWidget* widget : std::initializer_list<QWidget*>{panel, tool, label, plain, ok})
        {
            layout->addWidget(widget);
        }
        hidden->hide();
        window.setGeometry(100, 100, 320, 300);
    }

    QWidget window;
    QWidget* panel = Named<QWidget>("panel", &window);
    QPushButton* twice = Named<QPushButton>("twiceButton", "Twice", panel);
    QToolButton* tool = new QToolButton(&window);
    QLabel* label = Named<QLabel>("namedLabel", "Named", &window);
    QPushButton* plain = new QPushButton("Plain", &window);
    QPushButton* ok = Named<QPushButton>("okButton", "OK", &window);
    QPushButton* hidden = Named<QPushButton>("hiddenButton", "Hidden", &window);
    QAction* quit = Named<QAction>("actionQuit", "Quit", &window);
};

// Attaches the host the way the statistics manager attaches all windows (the window, then each
// action of its list: the action is reached twice), every report going to `sink`.
struct Attached : KtTest::ReportingHandler
{
    Attached(Host& host, Velkor::KT::Tracking::AttachReportSink sink) : ReportingHandler(kDocument)
    {
        handler.SetAttachReportSink(std::move(sink));
        handler.Attach(&host.window);
        handler.Attach(host.quit);
    }
};

QRect GlobalRect(const QWidget* widget)
{
    return QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size());
}

struct OutlineRow
{
    const char* label;
    std::function<QWidget*(Host&)> widget;
    std::optional<Style> style;  // none: not outlined
    std::vector<std::string> says;
};

const std::vector<OutlineRow> kOutlineRows = {
    {"HookedOnce",
     [](Host& h) { return h.ok; },
     Style::Hooked,
     {"okButton (QPushButton)\nline 4: button \"okButton\": clicked-event OK_CLICKED"}},
    {"HookedByTwoEntries",
     [](Host& h) { return h.twice; },
     Style::HookedTwice,
     {"twiceButton (QPushButton), hooked 2 times: each event is sent once per hook\n",
      "line 3: button \"twiceButton\": mouse-release-event TWICE_TOP",
      "line 6: button \"twiceButton\": clicked-event TWICE_NESTED"}},
    // With how its condition stands.
    {"ActionReachedTwiceOnItsToolButton",
     [](Host& h) { return h.tool; },
     Style::HookedTwice,
     {"actionQuit (QAction), hooked 2 times: each event is sent once per hook\n"
      "line 9: action \"actionQuit\": triggered-event QUIT; condition: 'state' is missing\n"
      "line 9: action \"actionQuit\": triggered-event QUIT; condition: 'state' is missing"}},
    {"FoundWithoutHooks",
     [](Host& h) { return h.panel; },
     Style::Found,
     {"panel (QWidget)\nline 5: widget \"panel\": found, no hooks of its own"}},
    {"NamedButFoundByNone",
     [](Host& h) { return h.label; },
     Style::Unhooked,
     {"namedLabel (QLabel): no entry found it"}},
    {"Unnamed", [](Host& h) { return h.plain; }, std::nullopt, {}},
    {"NamedButHidden", [](Host& h) { return h.hidden; }, std::nullopt, {}},
};

using HookHighlightOutlineTest = KtTest::Table<OutlineRow>;

// The outlines the overlays draw, from the reports of a real attach (any platform).
TEST_P(HookHighlightOutlineTest, OutlinesWhatTheReportsSaid)
{
    Host host;
    HighlightMarks marks;
    Attached attached(host, [&](const AttachReport& report) { marks.Add(report); });
    host.window.show();
    KtTest::Pump();

    QWidget* const widget = GetParam().widget(host);
    const auto byWindow = marks.OutlinesByWindow(true);
    ASSERT_EQ(byWindow.size(), 1u);
    ASSERT_EQ(byWindow.begin()->first, &host.window);
    std::vector<Outline> found;
    for (const Outline& outline : byWindow.begin()->second)
    {
        if (outline.rect == GlobalRect(widget))
        {
            found.push_back(outline);
        }
    }
    if (!GetParam().style)
    {
        EXPECT_TRUE(found.empty()) << found.front().text.toStdString();
        return;
    }
    ASSERT_EQ(found.size(), 1u) << "one outline per widget, however often it was hooked";
    EXPECT_EQ(found[0].style, *GetParam().style);
    for (const std::string& says : GetParam().says)
    {
        EXPECT_NE(found[0].text.toStdString().find(says), std::string::npos)
            << found[0].text.toStdString();
    }
}

KT_ROWS(HookHighlightOutlineTest, kOutlineRows);

// Every property, dynamic property, attribute, window flag and child of the window's widgets.
std::vector<std::string> Snapshot(QWidget* window)
{
    std::vector<std::string> lines;
    QList<QWidget*> widgets = window->findChildren<QWidget*>();
    widgets.prepend(window);
    for (QWidget* widget : widgets)
    {
        QString text;
        QDebug out(&text);
        out << widget << widget->parent() << widget->children() << widget->windowFlags();
        const QMetaObject* meta = widget->metaObject();
        for (int i = 0; i < meta->propertyCount(); ++i)
        {
            out << meta->property(i).name() << meta->property(i).read(widget);
        }
        for (const QByteArray& name : widget->dynamicPropertyNames())
        {
            out << name << widget->property(name);
        }
        for (int attribute = 0; attribute < Qt::WA_AttributeCount; ++attribute)
        {
            out << widget->testAttribute(Qt::WidgetAttribute(attribute));
        }
        lines.push_back(text.toStdString());
    }
    return lines;
}

std::vector<QWidget*> ToolTipWindows()
{
    std::vector<QWidget*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets())
    {
        if (widget->windowType() == Qt::ToolTip && widget->isVisible())
        {
            windows.push_back(widget);
        }
    }
    return windows;
}

QImage GrabScreen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage();
}

bool IsOutlineColour(QRgb pixel)
{
    for (Style style : {Style::Unhooked, Style::Found, Style::Hooked, Style::HookedTwice})
    {
        if (QColor(pixel) == OutlineColor(style))
        {
            return true;
        }
    }
    return false;
}

// On the X server, through the highlight's public face: the outlines are on the screen around
// the hooked widgets only, hovering tells the entries, and the host is left as it was.
TEST(HookHighlightScreenTest, OutlinesHookedWidgetsAndLeavesTheHostAlone)
{
    if (QGuiApplication::platformName() != "xcb")
    {
        GTEST_SKIP() << "needs an X server (ctest runs it under xvfb-run)";
    }
    Host host;
    HookHighlight highlight;
    int reports = 0;
    Attached attached(host, highlight.ReportSink([&](const AttachReport&) { ++reports; }));
    ASSERT_EQ(reports, 2);
    host.window.show();
    host.window.activateWindow();
    ASSERT_TRUE(KtTest::PumpUntil([&] { return host.window.isActiveWindow(); }));
    // The pointer rests on the left edge of the hooked button, where its outline will be.
    const QRect okRect = GlobalRect(host.ok);
    const QPoint pointer(okRect.left(), okRect.center().y());
    QCursor::setPos(pointer);
    ASSERT_TRUE(KtTest::PumpUntil([&] { return host.ok->underMouse(); }));
    KtTest::Pump();
    const QImage before = GrabScreen();
    const std::vector<std::string> hostBefore = Snapshot(&host.window);

    highlight.SetShown(true);
    const QColor hooked = OutlineColor(Style::Hooked);
    ASSERT_TRUE(KtTest::PumpUntil(
        [&] { return QColor(GrabScreen().pixel(okRect.right(), okRect.center().y())) == hooked; },
        std::chrono::seconds(10)))
        << "no outline drawn around the hooked button";
    QLabel* info = nullptr;
    ASSERT_TRUE(KtTest::PumpUntil(
        [&]
        {
            const auto windows = ToolTipWindows();
            const auto label = std::find_if(windows.begin(), windows.end(),
                                            [](QWidget* window)
                                            { return qobject_cast<QLabel*>(window) != nullptr; });
            info = label != windows.end() ? static_cast<QLabel*>(*label) : nullptr;
            return info != nullptr;
        },
        std::chrono::seconds(10)));
    EXPECT_TRUE(info->text().startsWith(
        "okButton (QPushButton)\nline 4: button \"okButton\": clicked-event OK_CLICKED"))
        << info->text().toStdString();
    KtTest::Pump();
    const QImage shown = GrabScreen();
    const QRect infoRect = info->geometry();

    // Solid outlines: the middle of each edge; dashed ones start with a dash at the top left.
    for (const OutlineRow& row : kOutlineRows)
    {
        SCOPED_TRACE(row.label);
        QWidget* const widget = row.widget(host);
        const QRect r = GlobalRect(widget);
        if (!widget->isVisible())
        {
            continue;
        }
        if (!row.style)
        {
            for (int x = r.left(); x <= r.right(); ++x)
            {
                for (int y : {r.top(), r.bottom()})
                {
                    EXPECT_FALSE(IsOutlineColour(shown.pixel(x, y))) << x << "," << y;
                }
            }
            continue;
        }
        const bool solid = *row.style == Style::Hooked || *row.style == Style::HookedTwice;
        const std::vector<QPoint> edge =
            solid ? std::vector<QPoint>{{r.left(), r.center().y()},
                                        {r.right() - 1, r.center().y()},
                                        {r.center().x(), r.top() + 1},
                                        {r.center().x(), r.bottom()}}
                  : std::vector<QPoint>{r.topLeft(), r.topLeft() + QPoint(3, 0),
                                        r.topLeft() + QPoint(0, 3)};
        for (const QPoint& point : edge)
        {
            if (!infoRect.contains(point))
            {
                EXPECT_EQ(QColor(shown.pixel(point)), OutlineColor(*row.style))
                    << point.x() << "," << point.y();
            }
        }
        if (solid && !infoRect.contains(r.center()))
        {
            EXPECT_EQ(shown.pixel(r.center()), before.pixel(r.center()))
                << "the widget itself must stay visible";
        }
    }

    EXPECT_EQ(Snapshot(&host.window), hostBefore);
    EXPECT_TRUE(host.ok->underMouse()) << "the outline took the pointer from the host";
    EXPECT_TRUE(host.window.isActiveWindow());
    EXPECT_EQ(reports, 2) << "a window of the highlight was attached as a host window";

    // A window brought to the front hides the outlines behind it, and only those.
    QWidget front;
    front.setGeometry(okRect.center().x(), okRect.top() - 20, 200, okRect.height() + 40);
    front.show();
    front.activateWindow();
    ASSERT_TRUE(KtTest::PumpUntil([&] { return front.isActiveWindow(); }));
    // Long enough for the outlines to be raised over the window that became active.
    KtTest::PumpUntil([] { return false; }, std::chrono::milliseconds(600));
    const QImage behind = GrabScreen();
    EXPECT_NE(QColor(behind.pixel(okRect.right() - 1, okRect.center().y())), hooked)
        << "the outline of a window behind is drawn over the window in front";
    EXPECT_EQ(QColor(behind.pixel(pointer)), hooked);
    front.close();

    highlight.SetShown(false);
    EXPECT_TRUE(ToolTipWindows().empty()) << "hidden, the highlight keeps no window";
}

}  // namespace
