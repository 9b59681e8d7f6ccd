#pragma once

// What each element of a `gui` section is: the Qt class its objects must have, its kind in the
// attach report, and its triggers. One place for the search, the hooks' report and the checks.

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/AttachReport.h"
#include "Tracking/Gui/SignalText_p.h"

#include "UI/AbstractPresetButton.h"
#include "UI/ButtonWithPopUpList.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QWidget>

namespace Velkor::KT::Tracking::Gui
{

template <class Entry>
struct ElementOf;

#define KT_GUI_ELEMENT(ENTRY, QT_CLASS, KIND)                                              \
    template <>                                                                            \
    struct ElementOf<Config::ENTRY>                                                        \
    {                                                                                      \
        using QtClass = QT_CLASS;                                                          \
        static constexpr AttachReport::ElementKind kind = AttachReport::ElementKind::KIND; \
    };

KT_GUI_ELEMENT(Widget, QWidget, Widget)
KT_GUI_ELEMENT(Button, QAbstractButton, Button)
KT_GUI_ELEMENT(Label, QLabel, Label)
KT_GUI_ELEMENT(ComboBox, QComboBox, ComboBox)
KT_GUI_ELEMENT(Object, QObject, Object)
KT_GUI_ELEMENT(AbstractPresetButton, KT::UI::AbstractPresetButton, AbstractPresetButton)
KT_GUI_ELEMENT(ButtonWithPopUpList, KT::ButtonWithPopUpList, ButtonWithPopUpList)
KT_GUI_ELEMENT(Action, QAction, Action)

#undef KT_GUI_ELEMENT

// Calls visit(trigger element name, its Config::Event) for each trigger an entry hooks on its
// own objects, in document order; `signal` triggers are left to ForEachSignal().
template <class Visit>
void ForEachOwnTrigger(const Config::Object&, const Visit&)
{
}

template <class Visit>
void ForEachOwnTrigger(const Config::Widget& entry, const Visit& visit)
{
    if (entry.show_event())
    {
        visit("show-event", *entry.show_event());
    }
    if (entry.close_event())
    {
        visit("close-event", *entry.close_event());
    }
}

template <class Visit>
void ForEachOwnTrigger(const Config::Button& entry, const Visit& visit)
{
    if (entry.clicked_event())
    {
        visit("clicked-event", *entry.clicked_event());
    }
    if (entry.toggled_event())
    {
        visit("toggled-event", *entry.toggled_event());
    }
    if (entry.mouse_release_event())
    {
        visit("mouse-release-event", *entry.mouse_release_event());
    }
}

template <class Visit>
void ForEachOwnTrigger(const Config::AbstractPresetButton& entry, const Visit& visit)
{
    ForEachOwnTrigger(static_cast<const Config::Button&>(entry), visit);
    if (entry.choosePreset())
    {
        visit("choosePreset", *entry.choosePreset());
    }
}

template <class Visit>
void ForEachOwnTrigger(const Config::ButtonWithPopUpList& entry, const Visit& visit)
{
    ForEachOwnTrigger(static_cast<const Config::Button&>(entry), visit);
    if (entry.item_selected())
    {
        visit("item-selected", *entry.item_selected());
    }
}

template <class Visit>
void ForEachOwnTrigger(const Config::Label& entry, const Visit& visit)
{
    if (entry.link_activated_event())
    {
        visit("link-activated-event", *entry.link_activated_event());
    }
}

template <class Visit>
void ForEachOwnTrigger(const Config::ComboBox& entry, const Visit& visit)
{
    if (entry.current_index_changed_event())
    {
        visit("current-index-changed-event", *entry.current_index_changed_event());
    }
}

template <class Visit>
void ForEachOwnTrigger(const Config::Action& entry, const Visit& visit)
{
    if (entry.triggered_event())
    {
        visit("triggered-event", *entry.triggered_event());
    }
}

// Calls visit(SignalTrigger, const Config::Signal&) for each `signal`, `intSignal` and
// `stringSignal` child, in document order. Only `object` entries hook them.
template <class Visit>
void ForEachSignal(const Config::Object& entry, const Visit& visit)
{
    for (const Config::Signal& signal : entry.signal())
    {
        visit(SignalTrigger::Signal, signal);
    }
    for (const Config::SignalWithParam& signal : entry.intSignal())
    {
        visit(SignalTrigger::IntSignal, signal);
    }
    for (const Config::SignalWithParam& signal : entry.stringSignal())
    {
        visit(SignalTrigger::StringSignal, signal);
    }
}

// Calls visit(entry as its own type) for an entry known by its kind.
template <class Visit>
void WithElementType(AttachReport::ElementKind kind, const Config::Object& entry,
                     const Visit& visit)
{
    using Kind = AttachReport::ElementKind;
    switch (kind)
    {
        case Kind::Widget:
            return visit(static_cast<const Config::Widget&>(entry));
        case Kind::Button:
            return visit(static_cast<const Config::Button&>(entry));
        case Kind::Label:
            return visit(static_cast<const Config::Label&>(entry));
        case Kind::ComboBox:
            return visit(static_cast<const Config::ComboBox&>(entry));
        case Kind::Object:
            return visit(entry);
        case Kind::AbstractPresetButton:
            return visit(static_cast<const Config::AbstractPresetButton&>(entry));
        case Kind::ButtonWithPopUpList:
            return visit(static_cast<const Config::ButtonWithPopUpList&>(entry));
        case Kind::Action:
            return visit(static_cast<const Config::Action&>(entry));
    }
}

}  // namespace Velkor::KT::Tracking::Gui
