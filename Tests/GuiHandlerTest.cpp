#include "Tracking/Gui/GuiHandler.h"

#include "Tracking/Config/KtmStat.h"

#include "UI/AbstractPresetButton.h"
#include "UI/ButtonWithPopUpList.h"

#include "Support/EventText.h"
#include "Support/FilterProbe.h"
#include "Support/Named.h"
#include "Support/RecordingTracker.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidget>

#include <functional>
#include <map>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <vector>

namespace Config = Velkor::KT::Tracking::Config;
using KtTest::FilterProbe;
using KtTest::Filters;
using KtTest::Named;
using Velkor::KT::ButtonWithPopUpList;
using Velkor::KT::Tracking::GuiHandler;
using Velkor::KT::UI::AbstractPresetButton;

namespace
{

const char* const Marker = "GuiElementAutoAttacher_isAttached";

Config::Gui ParseGui(const std::string& gui)
{
    std::istringstream input("<ktmstat><gui>" + gui + "</gui></ktmstat>");
    const auto model = Config::ktmstat(input, ::xml_schema::flags::dont_validate);
    return model->gui() ? *model->gui() : Config::Gui();
}

// One of each widget kind the section can name, in a window named "MainWindow".
class Window : public QWidget
{
public:
    Window()
    {
        setObjectName("MainWindow");
        auto* layout = new QVBoxLayout(this);
        auto add = [&](QWidget* widget, const char* name)
        {
            widget->setObjectName(name);
            layout->addWidget(widget);
        };
        add(stop = new QPushButton("Stop"), "stopButton");
        add(brush = new QPushButton("Brush"), "brushButton");
        brush->setCheckable(true);
        add(link = new QLabel("<a href=\"https://example.org/home\">Home page</a>"),
            "homePageLabel");
        add(mode = new QComboBox(), "modeBox");
        mode->addItem("Game", "game-data");
        mode->addItem("Desktop", "desktop-data");
        add(preset = new AbstractPresetButton("1080p"), "presetButton");
        add(emptyPreset = new AbstractPresetButton(QString()), "emptyPresetButton");
        emptyPreset->setText("No preset");
        add(recent = new ButtonWithPopUpList(), "recentButton");
        recent->SetItems({"a.mkv", "b.mkv", "c.mkv"});
        stopAction = new QAction("Stop recording", this);
        stopAction->setObjectName("ActionStopRecord");
        auto* tool = new QToolButton();
        tool->setDefaultAction(stopAction);
        add(tool, "stopToolButton");
    }

    QPushButton* stop;
    QPushButton* brush;
    QLabel* link;
    QComboBox* mode;
    AbstractPresetButton* preset;
    AbstractPresetButton* emptyPreset;
    ButtonWithPopUpList* recent;
    QAction* stopAction;
};

// The handler's events so far, blank-separated: NAME{KEY=value,...}.
class GuiHandlerTest : public testing::Test
{
protected:
    void SetConfig(const std::string& gui) { handler->SetConfig(ParseGui(gui)); }
    std::string Events() const { return KtTest::EventsText(tracker->Events()); }

    std::shared_ptr<KtTest::RecordingTracker> tracker =
        std::make_shared<KtTest::RecordingTracker>();
    std::unique_ptr<GuiHandler> handler = std::make_unique<GuiHandler>(tracker);
};

// A table whose rows run with a handler of their own.
template <class Row>
class GuiHandlerTable : public GuiHandlerTest, public testing::WithParamInterface<Row>
{
};

// --- Every trigger, driven on a real window ---------------------------------------------------

// What is done, one character a step: a attaches the window, t attaches it with the stop button
// as its target; S shows it (and waits until it is exposed), h and c hide and close it; n makes
// the brush a native child; T and E set the marker on the window to true and an empty text, X
// takes it away. b, s, p, e and l click the brush, stop, preset, empty preset and link; u
// unchecks the brush; k presses Space on stop, P and R press and release the mouse on it; r picks
// the third recent entry; d and U press Down and Up on the mode box, x clears it.
struct TriggerRow
{
    const char* label;
    const char* steps;
    const char* marked;    // what carries the marker at the end: w the window, s stop, b the brush
    std::string expected;  // the events, blank-separated
    std::string gui;       // inside <widget id="MainWindow">
};

void Click(QWidget* widget)
{
    QTest::mouseClick(widget, Qt::LeftButton);
}

void PickThirdRecent(GuiHandler&, Window& w)
{
    Click(w.recent);
    QListWidget* list = w.recent->PopUp();
    ASSERT_TRUE(list && list->isVisible());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(list->item(2)).center());
}

void Show(GuiHandler&, Window& w)
{
    w.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
}

using Step = std::function<void(GuiHandler&, Window&)>;
const std::map<char, Step> kSteps = {
    {'a', [](GuiHandler& h, Window& w) { h.Attach(&w); }},
    {'t', [](GuiHandler& h, Window& w) { h.Attach(&w, w.stop); }},
    {'S', Show},
    {'h', [](GuiHandler&, Window& w) { w.hide(); }},
    {'c', [](GuiHandler&, Window& w) { w.close(); }},
    {'n', [](GuiHandler&, Window& w) { w.brush->setAttribute(Qt::WA_NativeWindow); }},
    {'T', [](GuiHandler&, Window& w) { w.setProperty(Marker, QVariant(true)); }},
    {'E', [](GuiHandler&, Window& w) { w.setProperty(Marker, QVariant(QString())); }},
    {'X', [](GuiHandler&, Window& w) { w.setProperty(Marker, QVariant()); }},
    {'b', [](GuiHandler&, Window& w) { Click(w.brush); }},
    {'s', [](GuiHandler&, Window& w) { Click(w.stop); }},
    {'p', [](GuiHandler&, Window& w) { Click(w.preset); }},
    {'e', [](GuiHandler&, Window& w) { Click(w.emptyPreset); }},
    {'l', [](GuiHandler&, Window& w)
     { QTest::mouseClick(w.link, Qt::LeftButton, {}, QPoint(4, w.link->height() / 2)); }},
    {'u', [](GuiHandler&, Window& w) { w.brush->setChecked(false); }},
    {'k', [](GuiHandler&, Window& w) { QTest::keyClick(w.stop, Qt::Key_Space); }},
    {'P', [](GuiHandler&, Window& w) { QTest::mousePress(w.stop, Qt::LeftButton); }},
    {'R', [](GuiHandler&, Window& w) { QTest::mouseRelease(w.stop, Qt::LeftButton); }},
    {'d', [](GuiHandler&, Window& w) { QTest::keyClick(w.mode, Qt::Key_Down); }},
    {'U', [](GuiHandler&, Window& w) { QTest::keyClick(w.mode, Qt::Key_Up); }},
    {'x', [](GuiHandler&, Window& w) { w.mode->clear(); }},
    {'r', PickThirdRecent}};

using GuiHandlerTriggerTest = GuiHandlerTable<TriggerRow>;

TEST_P(GuiHandlerTriggerTest, EmitsWhatTheEntrySays)
{
    const TriggerRow& row = GetParam();
    SetConfig("<widget id=\"MainWindow\">" + row.gui + "</widget>");
    Window window;
    for (const char* step = row.steps; *step; ++step)
    {
        kSteps.at (*step)(*handler, window);
    }

    EXPECT_EQ(Events(), row.expected);
    std::string marked;
    for (const auto& [name, object] :
         {std::pair<char, QObject*>{'w', &window}, {'s', window.stop}, {'b', window.brush}})
    {
        marked += object->property(Marker).isValid() ? std::string(1, name) : "";
    }
    EXPECT_EQ(marked, row.marked);
}

const char* const StopButton =
    R"gui(<button id="stopButton"><clicked-event event="STOP"/></button>)gui";

KT_ROWS(GuiHandlerTriggerTest,
        {{"ClickedAssignsCheckedStateOverParam", "aSbb", "w",
          "DRAW{ON=YES,SRC=BUTTON} DRAW{ON=NO,SRC=BUTTON}",
          R"gui(<button id="brushButton"><clicked-event event="DRAW" value="ON">
                        <param key="ON" value="param"/><param key="SRC" value="BUTTON"/>
                      </clicked-event></button>)gui"},
         {"ToggledWithoutValueKeepsOnlyParams", "aSbsu", "w", "DRAW{SRC=first} DRAW{SRC=first}",
          R"gui(<button id="brushButton"><toggled-event event="DRAW">
                        <param key="SRC" value="first"/><param key="SRC" value="second"/>
                      </toggled-event></button>)gui"},
         {"MouseReleaseOnlyForTheMouse", "aSkPR", "w", "STOP{METHOD=BUTTON}",
          R"gui(<button id="stopButton"><mouse-release-event event="STOP">
                        <param key="METHOD" value="BUTTON"/></mouse-release-event></button>)gui"},
         {"ShowAndCloseOfTheWindow", "aShSc", "w", "SHOWN{} SHOWN{} CLOSED{}",
          R"gui(<show-event event="SHOWN"/><close-event event="CLOSED"/>)gui"},
         {"ChoosePresetInsertsTheName", "aSp", "w", "PRESET{NAME=1080p} CLICK{}",
          R"gui(<abstractPresetButton id="presetButton">
                        <clicked-event event="CLICK"/>
                        <choosePreset event="PRESET" id="NAME"/></abstractPresetButton>)gui"},
         {"ChoosePresetKeepsAParamOfTheSameKey", "aSp", "w", "PRESET{NAME=fixed}",
          R"gui(<abstractPresetButton id="presetButton"><choosePreset event="PRESET" id="NAME">
                        <param key="NAME" value="fixed"/></choosePreset></abstractPresetButton>)gui"},
         {"ChoosePresetWithoutNameEmitsNothing", "aSe", "w", "",
          R"gui(<abstractPresetButton id="emptyPresetButton">
                        <choosePreset event="PRESET" id="NAME"/></abstractPresetButton>)gui"},
         {"ItemSelectedOncePerChange", "aSrr", "w", "OPEN{} RECENT{} OPEN{}",
          R"gui(<buttonWithPopUpList id="recentButton"><mouse-release-event event="OPEN"/>
                        <item-selected event="RECENT"/></buttonWithPopUpList>)gui"},
         {"LinkActivatedAssignsTheLink", "aSl", "w", "LINK{URL=https://example.org/home}",
          R"gui(<label id="homePageLabel"><link-activated-event event="LINK" value="URL">
                        <param key="URL" value="param"/></link-activated-event></label>)gui"},
         {"IndexChangeReportsEveryFact", "aSdU", "w",
          "MODE{DATA=desktop-data,INDEX=1,MAPPED=DESKTOP,NAME=Desktop} "
          "MODE{DATA=game-data,INDEX=0,MAPPED=GAME,NAME=Game}",
          R"gui(<combobox id="modeBox"><current-index-changed-event event="MODE"
                        index="INDEX" name="NAME" mapped="MAPPED" dataName="DATA">
                        <map key="0" value="GAME"/><map key="1" value="DESKTOP"/>
                        <map key="1" value="SHADOWED"/>
                      </current-index-changed-event></combobox>)gui"},
         {"IndexChangeKeepsParamsOfTheSameKeys", "aSd", "w", "MODE{DATA=p,IDX=p,MAP=p,NAME=p}",
          R"gui(<combobox id="modeBox"><current-index-changed-event event="MODE"
                        index="IDX" name="NAME" mapped="MAP" dataName="DATA">
                        <param key="IDX" value="p"/><param key="NAME" value="p"/>
                        <param key="MAP" value="p"/><param key="DATA" value="p"/>
                        <map key="1" value="DESKTOP"/>
                      </current-index-changed-event></combobox>)gui"},
         {"IndexChangeEarlierFactWins", "aSd", "w", "MODE{K=1,M=DESKTOP}",
          R"gui(<combobox id="modeBox"><current-index-changed-event event="MODE"
                        index="K" name="K" mapped="M" dataName="M" data="0">
                        <map key="1" value="DESKTOP"/>
                      </current-index-changed-event></combobox>)gui"},
         {"ClearedComboBoxReportsMinusOne", "aSx", "w", "MODE{INDEX=-1,MAPPED=NONE,NAME=}",
          R"gui(<combobox id="modeBox"><current-index-changed-event event="MODE"
                        index="INDEX" name="NAME" mapped="MAPPED">
                        <map key="1" value="DESKTOP"/><map key="-1" value="NONE"/>
                      </current-index-changed-event></combobox>)gui"},
         {"SignalsOfAnObjectBySignature", "aSd", "w", "INDEX{I=1} TEXT{T=Desktop} ACTIVATED{}",
          R"gui(<object id="modeBox">
                        <signal event="ACTIVATED" signal="2activated(int)"/>
                        <signal event="NEVER" signal="2NoSuchSignal()"/>
                        <intSignal event="INDEX" signal="2currentIndexChanged(int)" key="I">
                          <param key="I" value="param"/></intSignal>
                        <stringSignal event="TEXT" signal="2currentTextChanged(QString)" key="T"/>
                      </object>)gui"},
         // Attaching twice hooks once, whether by Attach() or by the window's first native window.
         {"AttachingTwiceHooksOnce", "aaSas", "w", "STOP{}", StopButton},
         // With a target, the target carries the marker: the root stays open to a later attach,
         // and the target is not attached again through another root.
         {"AttachWithATargetMarksTheTarget", "tts", "s", "STOP{}", StopButton},
         // Shown after SetConfig(), a window is attached by itself once; its children, a native
         // one too, get no marker.
         {"ShownWindowAttachedByItselfOnce", "nSshSs", "w", "STOP{} STOP{}", StopButton},
         // A host may set the marker itself, to keep the handler off a window: its presence
         // counts, whatever its value (the handler's own is true: AttachingTwiceHooksOnce); a
         // marker taken away again does not.
         {"MarkerEmptyText", "ESas", "w", "", StopButton},
         {"MarkerTakenAway", "TXSas", "w", "STOP{}", StopButton}});

// --- Which objects an entry finds -------------------------------------------------------------

// root
//   topFrame
//     inner
//       settingsButton (A)
//   settingsButton (B)
//   okButton1 (C)
//   otherFrame
//     okButton2 (D)
class SearchTree
{
public:
    SearchTree()
    {
        root.setObjectName("root");
        auto* top = Named<QWidget>("topFrame", &root);
        A = Named<QPushButton>("settingsButton", Named<QWidget>("inner", top));
        B = Named<QPushButton>("settingsButton", &root);
        C = Named<QPushButton>("okButton1", &root);
        D = Named<QPushButton>("okButton2", Named<QWidget>("otherFrame", &root));
    }

    QWidget root;
    QPushButton* A;
    QPushButton* B;
    QPushButton* C;
    QPushButton* D;
};

struct SearchRow
{
    const char* label;
    std::string gui;
    char target;  // 0: none
    std::string expected;
};

using GuiHandlerSearchTest = GuiHandlerTable<SearchRow>;

// Each button is pressed once; the result counts the events each press produced.
TEST_P(GuiHandlerSearchTest, HooksEachMatchOnce)
{
    const SearchRow& row = GetParam();
    SearchTree tree;
    const std::map<char, QPushButton*> buttons{
        {'A', tree.A}, {'B', tree.B}, {'C', tree.C}, {'D', tree.D}};
    SetConfig(row.gui);
    handler->Attach(&tree.root, row.target ? buttons.at(row.target) : nullptr);
    // The root gets its native window when shown, and is attached with whatever section is
    // current then; an empty one only marks it.
    SetConfig("");
    tree.root.show();

    std::string counts;
    for (const auto& [name, button] : buttons)
    {
        const std::size_t before = tracker->Events().size();
        Click(button);
        counts += std::string(1, name) + std::to_string(tracker->Events().size() - before);
    }
    EXPECT_EQ(counts, row.expected);
}

#define BUTTON(id, attrs)                              \
    "<widget id=\"root\"><button id=\"" id "\" " attrs \
    "><clicked-event event=\"E\"/></button></widget>"

KT_ROWS(
    GuiHandlerSearchTest,
    {{"NameAtAnyDepth", BUTTON("settingsButton", ""), 0, "A1B1C0D0"},
     {"PathThroughTwoLevels", BUTTON("topFrame:settingsButton", ""), 0, "A1B0C0D0"},
     {"PathStartingAtTheRoot", BUTTON("root:topFrame:inner:settingsButton", ""), 0, "A1B0C0D0"},
     {"NamesAreCaseSensitive", BUTTON("SettingsButton", ""), 0, "A0B0C0D0"},
     {"IdIsRootIgnoresDescendants", BUTTON("settingsButton", "idIsRoot=\"true\""), 0, "A0B0C0D0"},
     {"IdIsRootMatchesTheStart",
      R"gui(<widget id="root" idIsRoot="true"><button id="okButton2">
                       <clicked-event event="E"/></button></widget>
                     <widget id="otherFrame" idIsRoot="true"><button id="okButton1">
                       <clicked-event event="E"/></button></widget>)gui",
      0, "A0B0C0D1"},
     {"FoundTwoWaysHookedTwice", BUTTON("o:settingsButton", "idIsRegExp=\"true\""), 0, "A2B1C0D0"},
     {"TargetAloneGetsHooks", BUTTON("Button", "idIsRegExp=\"true\""), 'B', "A0B1C0D0"},
     {"ObjectEntriesIgnoreTheTarget",
      R"gui(<object id="Button" idIsRegExp="true">
                       <signal event="E" signal="2pressed()"/></object>)gui",
      'B', "A1B1C1D1"}});

// --- Conditions of actions --------------------------------------------------------------------

struct ActionRow
{
    const char* label;
    QVariant state;  // invalid: no such property
    std::string expected;
};

using GuiHandlerActionTest = GuiHandlerTable<ActionRow>;

// An action of a tray menu, attached on its own and triggered through a tool button.
TEST_P(GuiHandlerActionTest, EmitsOnlyWhenThePropertyFits)
{
    const ActionRow& row = GetParam();
    SetConfig(R"gui(
        <action id="ActionQuit" propertyName="state" propertyValue="AudioConfiguring">
          <triggered-event event="QUIT_AUDIO"/></action>
        <action id="ActionQuit" propertyName="state" propertyValue="Configuring">
          <triggered-event event="QUIT_CONFIGURING"/></action>
        <action id="ActionQuit" propertyName="state">
          <triggered-event event="QUIT_IN_ANY_STATE"/></action>
        <action id="ActionQuit"><triggered-event event="QUIT"/></action>)gui");
    QAction quit("Quit");
    quit.setObjectName("ActionQuit");
    handler->Attach(&quit);
    handler->Attach(&quit);
    QToolButton button;
    button.setDefaultAction(&quit);
    button.show();

    quit.setProperty("state", row.state);
    Click(&button);

    EXPECT_EQ(Events(), row.expected);
}

KT_ROWS(GuiHandlerActionTest,
        {{"NoProperty", QVariant(), "QUIT{}"},
         {"OtherValue", QVariant("AudioConfiguring"), "QUIT_AUDIO{} QUIT_IN_ANY_STATE{} QUIT{}"},
         {"ExactValue", QVariant("Configuring"), "QUIT_CONFIGURING{} QUIT_IN_ANY_STATE{} QUIT{}"},
         {"ValueDiffersInCase", QVariant("configuring"), "QUIT_IN_ANY_STATE{} QUIT{}"},
         {"EmptyValueIsStillAProperty", QVariant(QString()), "QUIT_IN_ANY_STATE{} QUIT{}"},
         {"NumberComparedAsText", QVariant(5), "QUIT_IN_ANY_STATE{} QUIT{}"}});

// --- Life cycle ---------------------------------------------------------------------------------

// A window keeps the section it was attached with: one shown before any section is attached with
// none, and marked; SetConfig() changes nothing of the windows attached before.
TEST_F(GuiHandlerTest, SetConfigLeavesAttachedWindowsAsTheyWere)
{
    Window before;
    before.show();
    SetConfig(std::string("<widget id=\"MainWindow\">") + StopButton + "</widget>");
    handler->Attach(&before);
    Window first;
    first.show();
    SetConfig(R"gui(<widget id="MainWindow"><button id="brushButton">
                   <clicked-event event="BRUSH"/></button></widget>)gui");
    Window second;
    second.show();

    for (Window* window : {&before, &first, &second})
    {
        Click(window->stop);
        Click(window->brush);
    }

    EXPECT_EQ(Events(), "STOP{} BRUSH{}");
}

TEST_F(GuiHandlerTest, NewObjectAtTheAddressOfADeletedOneGetsNoOldHooks)
{
    SetConfig(R"gui(<widget id="MainWindow"><widget id="panel"><show-event event="OLD_SHOWN"/>
                 </widget></widget>)gui");
    Window window;
    alignas(QWidget) unsigned char storage[sizeof(QWidget)];
    auto* panel = new (storage) QWidget(&window);
    panel->setObjectName("panel");
    handler->Attach(&window);
    window.show();
    panel->~QWidget();

    SetConfig(R"gui(<widget id="MainWindow"><widget id="panel"><close-event event="NEW_CLOSED"/>
                 </widget></widget>)gui");
    auto* reborn = new (storage) QWidget(&window);
    ASSERT_EQ(static_cast<void*>(reborn), static_cast<void*>(panel));
    reborn->setObjectName("panel");
    handler->Attach(&window, reborn);
    reborn->hide();
    reborn->show();
    reborn->close();
    reborn->~QWidget();

    EXPECT_EQ(Events(), "OLD_SHOWN{} NEW_CLOSED{}");
}

// Also the event handler's own filter (the event hook): it must leave no filter list behind.
TEST_F(GuiHandlerTest, DestroyedHandlerLeavesNoFilterAndNoReferenceBehind)
{
    // The probe itself must see a filter that is destroyed without being removed.
    {
        QWidget plain;
        auto* filter = new QObject();
        plain.installEventFilter(filter);
        FilterProbe probe(filter);
        delete filter;
        ASSERT_EQ(probe.LeftOverReferences(), 1);
    }
    handler.reset();
    const std::vector<QObject*> applicationFilters = Filters(qApp);
    handler = std::make_unique<GuiHandler>(tracker);
    const std::vector<QObject*> withHandler = Filters(qApp);
    ASSERT_EQ(withHandler.size(), applicationFilters.size() + 1);
    FilterProbe autoAttacher(withHandler.front());

    SetConfig(R"gui(<widget id="MainWindow"><show-event event="SHOWN"/><close-event event="CLOSED"/>
                 <button id="stopButton"><mouse-release-event event="STOP"/></button>
                 <object id="modeBox"><intSignal event="I" signal="2activated(int)" key="I"/>
                 </object></widget>)gui");
    Window window;
    window.show();
    ASSERT_EQ(Filters(&window).size(), 1u);
    ASSERT_EQ(Filters(window.stop), Filters(&window));
    FilterProbe eventHook(Filters(&window).front());

    handler.reset();

    EXPECT_EQ(autoAttacher.LeftOverReferences(), 0);
    EXPECT_EQ(eventHook.LeftOverReferences(), 0);
    EXPECT_EQ(Filters(qApp), applicationFilters);
    EXPECT_EQ(tracker.use_count(), 1);
    Click(window.stop);
    QTest::keyClick(window.mode, Qt::Key_Down);
    window.close();
    Window later;
    later.show();
    EXPECT_FALSE(later.property(Marker).isValid());
    EXPECT_EQ(Events(), "SHOWN{}");
}

}  // namespace
