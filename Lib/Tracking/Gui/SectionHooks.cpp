#include "Tracking/Gui/SectionHooks_p.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/ActionHooks_p.h"
#include "Tracking/Gui/ButtonHooks_p.h"
#include "Tracking/Gui/ComboBoxHooks_p.h"
#include "Tracking/Gui/LabelHooks_p.h"
#include "Tracking/Gui/LiveObjectTree_p.h"
#include "Tracking/Gui/ParseContext_p.h"
#include "Tracking/Gui/ReportRecorder_p.h"
#include "Tracking/Gui/SectionWalk_p.h"
#include "Tracking/Gui/SignalHooks_p.h"
#include "Tracking/Gui/WidgetEventHooks_p.h"

#include "UI/AbstractPresetButton.h"
#include "UI/ButtonWithPopUpList.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QWidget>

#include <vector>

namespace Velkor::KT::Tracking
{

namespace
{

// Makes the hooks of each object an entry finds, as the entry's element prescribes.
class LiveHooks
{
public:
    static constexpr bool kTraced = false;

    explicit LiveHooks(const Gui::ParseContext& context) : m_context(context) {}

    template <class Entry>
    void Found(const Entry&, QObject*, const std::vector<QObject*>&, const SearchTrace<QObject*>*)
    {
    }

    void Apply(QObject* match, const Config::Widget& entry)
    {
        ApplyWidgetEvents(m_context, static_cast<QWidget*>(match), entry);
    }
    void Apply(QObject* match, const Config::Button& entry)
    {
        ApplyButton(m_context, static_cast<QAbstractButton*>(match), entry);
    }
    void Apply(QObject* match, const Config::Label& entry)
    {
        ApplyLabel(m_context, static_cast<QLabel*>(match), entry);
    }
    void Apply(QObject* match, const Config::ComboBox& entry)
    {
        ApplyComboBox(m_context, static_cast<QComboBox*>(match), entry);
    }
    void Apply(QObject* match, const Config::Object& entry)
    {
        ApplyObject(m_context, match, entry);
    }
    void Apply(QObject* match, const Config::AbstractPresetButton& entry)
    {
        ApplyPresetButton(m_context, static_cast<KT::UI::AbstractPresetButton*>(match), entry);
    }
    void Apply(QObject* match, const Config::ButtonWithPopUpList& entry)
    {
        ApplyPopUpListButton(m_context, static_cast<KT::ButtonWithPopUpList*>(match), entry);
    }
    void Apply(QObject* match, const Config::Action& entry)
    {
        ApplyAction(m_context, static_cast<QAction*>(match), entry);
    }

private:
    const Gui::ParseContext& m_context;
};

// The hooks, and the attach report of the same walk.
class ReportedHooks
{
public:
    static constexpr bool kTraced = true;

    ReportedHooks(const Gui::ParseContext& context, Gui::ReportRecorder<LiveObjectTree>& recorder)
        : m_hooks(context), m_recorder(recorder)
    {
    }

    template <class Entry>
    void Found(const Entry& entry, QObject* start, const std::vector<QObject*>& matches,
               const SearchTrace<QObject*>* trace)
    {
        m_recorder.Found(entry, start, matches, trace);
    }

    template <class Entry>
    void Apply(QObject* match, const Entry& entry)
    {
        m_hooks.Apply(match, entry);
    }

private:
    LiveHooks m_hooks;
    Gui::ReportRecorder<LiveObjectTree>& m_recorder;
};

}  // namespace

void HookSection(const Gui::ParseContext& context, QObject* root, const Config::Gui& section)
{
    LiveHooks hooks(context);
    Gui::SectionWalk<LiveObjectTree, LiveHooks>(hooks).Section(root, section);
}

void HookSection(const Gui::ParseContext& context, QObject* root, const Config::Gui& section,
                 Gui::ReportRecorder<LiveObjectTree>& recorder)
{
    ReportedHooks hooks(context, recorder);
    Gui::SectionWalk<LiveObjectTree, ReportedHooks>(hooks).Section(root, section);
}

void HookActionEntries(const Gui::ParseContext& context, QAction* action,
                       const Config::Gui& section)
{
    LiveHooks hooks(context);
    Gui::SectionWalk<LiveObjectTree, LiveHooks>(hooks).Actions(action, section);
}

void HookActionEntries(const Gui::ParseContext& context, QAction* action,
                       const Config::Gui& section, Gui::ReportRecorder<LiveObjectTree>& recorder)
{
    ReportedHooks hooks(context, recorder);
    Gui::SectionWalk<LiveObjectTree, ReportedHooks>(hooks).Actions(action, section);
}

}  // namespace Velkor::KT::Tracking
