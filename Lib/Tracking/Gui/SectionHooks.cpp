#include "Tracking/Gui/SectionHooks.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/ActionHooks.h"
#include "Tracking/Gui/ButtonHooks.h"
#include "Tracking/Gui/ComboBoxHooks.h"
#include "Tracking/Gui/LabelHooks.h"
#include "Tracking/Gui/LiveObjectTree.h"
#include "Tracking/Gui/ParseContext.h"
#include "Tracking/Gui/SignalHooks.h"
#include "Tracking/Gui/WidgetEventHooks.h"

#include "UI/AbstractPresetButton.h"
#include "UI/ButtonWithPopUpList.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QWidget>

namespace Velkor::KT::Tracking
{

namespace
{

template <typename T, typename Entries, typename Apply>
void ApplyAll(const Gui::ParseContext& context, QObject* start, const Entries& entries, Apply apply)
{
    for (const auto& entry : entries)
    {
        for (T* match : FindObjects<T>(start, entry))
        {
            apply(context, match, entry);
        }
    }
}

void ApplyWidget(const Gui::ParseContext& context, QWidget* widget, const Config::Widget& entry)
{
    ApplyAll<QAbstractButton>(context, widget, entry.button(), ApplyButton);
    ApplyAll<QLabel>(context, widget, entry.label(), ApplyLabel);
    ApplyAll<QComboBox>(context, widget, entry.combobox(), ApplyComboBox);
    ApplyAll<QWidget>(context, widget, entry.widget(), ApplyWidget);
    ApplyAll<QObject>(context, widget, entry.object(), ApplyObject);
    ApplyAll<KT::UI::AbstractPresetButton>(context, widget, entry.abstractPresetButton(),
                                           ApplyPresetButton);
    ApplyAll<KT::ButtonWithPopUpList>(context, widget, entry.buttonWithPopUpList(),
                                      ApplyPopUpListButton);
    ApplyWidgetEvents(context, widget, entry);
}

}  // namespace

void HookSection(const Gui::ParseContext& context, QObject* root, const Config::Gui& section)
{
    ApplyAll<QWidget>(context, root, section.widget(), ApplyWidget);
    ApplyAll<QObject>(context, root, section.object(), ApplyObject);
    ApplyAll<QAction>(context, root, section.action(), ApplyAction);
}

void HookActionEntries(const Gui::ParseContext& context, QAction* action,
                       const Config::Gui& section)
{
    ApplyAll<QAction>(context, action, section.action(), ApplyAction);
}

}  // namespace Velkor::KT::Tracking
