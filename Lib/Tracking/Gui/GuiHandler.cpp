#include "Tracking/Gui/GuiHandler.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Events/IKtTracker.h"
#include "Tracking/Events/NotNull_p.h"
#include "Tracking/Gui/AttachedMarker_p.h"
#include "Tracking/Gui/EntryTable_p.h"
#include "Tracking/Gui/GuiElementAutoAttacher_p.h"
#include "Tracking/Gui/HookLedger_p.h"
#include "Tracking/Gui/LiveObjectTree_p.h"
#include "Tracking/Gui/ParseContext_p.h"
#include "Tracking/Gui/QtEventHandler_p.h"
#include "Tracking/Gui/ReportLog_p.h"
#include "Tracking/Gui/ReportRecorder_p.h"
#include "Tracking/Gui/SectionHooks_p.h"
#include "Tracking/Gui/SectionLints_p.h"

#include <glog/logging.h>

#include <QAction>
#include <QApplication>
#include <QWidget>

#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace Velkor::KT::Tracking
{

class GuiHandler::Private
{
public:
    using Recorder = Gui::ReportRecorder<LiveObjectTree>;

    Private(GuiHandler* owner, const std::shared_ptr<IKtTracker>& tracker)
        : tracker(tracker),
          autoAttacher([owner](QWidget* window) { owner->Attach(window, nullptr); })
    {
    }

    Gui::ParseContext Context(QObject* target)
    {
        return Gui::ParseContext{tracker.get(), &eventHandler, target};
    }

    // Reports are made for a sink, or for the verbose log.
    bool Reporting() const { return sink || VLOG_IS_ON(1); }

    // The table of the section's entries, made once per section: when the section is set or a
    // sink is installed, if reports are wanted then, so that attaches do not pay for it, else
    // for the first report.
    void PrepareTable()
    {
        if (!table)
        {
            table.emplace(config, lines);
            sectionEntries = table->Entries();
            Gui::AddSectionProblems(*table, sectionEntries);
        }
    }

    // The entries of the section as the next report starts them: with the problems the section
    // shows by itself in the first report after SetConfig(), without them afterwards.
    QVector<AttachReport::Entry> Entries()
    {
        PrepareTable();
        if (!sectionProblemsSaid)
        {
            sectionProblemsSaid = true;
            return sectionEntries;
        }
        return table->Entries();
    }

    // One report over the walks `walk` makes with the recorder, through the trees of `roots`.
    template <class Walk>
    void Report(const QString& attachedTo, const std::vector<QObject*>& roots, const Walk& walk)
    {
        ledger.Prune();
        QVector<AttachReport::Entry> entries = Entries();
        Recorder recorder(*table, entries, ledger);
        walk(recorder);
        recorder.Finish(roots, false);
        AttachReport report;
        report.SetAttachedTo(attachedTo);
        report.SetEntries(entries);
        Publish(report, false);
    }

    void Publish(const AttachReport& report, bool everyWindow) const
    {
        Log(report, everyWindow);
        if (sink)
        {
            sink(report);
        }
    }

    void Log(const AttachReport& report, bool everyWindow) const
    {
        if (!VLOG_IS_ON(1))
        {
            return;
        }
        const QString name =
            documentName.isEmpty() ? QStringLiteral("main document") : documentName;
        const QString text = VLOG_IS_ON(2) ? name + QStringLiteral(": ") + report.ToText(name)
                                           : Gui::LogSummary(report, name, everyWindow);
        LOG(WARNING) << "GUI " << text.trimmed().toStdString();
    }

    void AttachTree(QObject* root, QObject* target, Recorder* recorder)
    {
        const Gui::ParseContext context = Context(target);
        if (recorder)
        {
            recorder->Begin(QLatin1Char('\'') + ObjectPath(root) + QLatin1Char('\''), root, target);
            HookSection(context, root, config, *recorder);
        }
        else
        {
            HookSection(context, root, config);
        }
        MarkAttached(target ? target : root);
    }

    void AttachAction(QAction* action, Recorder* recorder)
    {
        const Gui::ParseContext context = Context(nullptr);
        if (recorder)
        {
            recorder->Begin(QStringLiteral("action '") + ObjectPath(action) + QLatin1Char('\''),
                            action, nullptr);
            HookActionEntries(context, action, config, *recorder);
        }
        else
        {
            HookActionEntries(context, action, config);
        }
        MarkAttached(action);
    }

    // The attach of all top-level windows while it runs: its attaches write one report.
    struct Group
    {
        Recorder* recorder = nullptr;
        std::vector<QObject*> roots;
        int windows = 0;
        int actions = 0;
    };
    std::optional<Group> group;

    Config::Gui config;
    Config::GuiLines lines;
    QString documentName;
    const NotNull<IKtTracker> tracker;
    QtEventHandler eventHandler;
    GuiElementAutoAttacher autoAttacher;
    AttachReportSink sink;
    std::optional<Gui::EntryTable> table;
    QVector<AttachReport::Entry> sectionEntries;  // the table's, with the section's problems
    bool sectionProblemsSaid = false;
    Gui::HookLedger<QObject*> ledger;
};

GuiHandler::GuiHandler(const std::shared_ptr<IKtTracker>& tracker)
    : d(std::make_unique<Private>(this, tracker))
{
}

GuiHandler::~GuiHandler() = default;

void GuiHandler::SetConfig(const Config::Gui& config)
{
    SetConfig(config, Config::GuiLines{});
}

void GuiHandler::SetConfig(const Config::Gui& config, const std::vector<int>& entryLines)
{
    SetConfig(config, Config::GuiLines{entryLines, {}});
}

void GuiHandler::SetConfig(const Config::Gui& config, const Config::GuiLines& lines,
                           const QString& documentName)
{
    d->table.reset();
    d->sectionProblemsSaid = false;
    d->ledger.Clear();
    d->config = config;
    d->lines = lines;
    d->documentName = documentName;
    if (d->Reporting())
    {
        d->PrepareTable();
    }
}

void GuiHandler::SetAttachReportSink(AttachReportSink sink)
{
    d->sink = std::move(sink);
    if (d->sink)
    {
        d->PrepareTable();
    }
}

void GuiHandler::Attach(QObject* root, QObject* target)
{
    QObject* const marked = target ? target : root;
    if (!root || IsAttached(marked))
    {
        return;
    }
    if (d->group)
    {
        d->group->roots.push_back(root);
        ++d->group->windows;
        d->AttachTree(root, target, d->group->recorder);
        return;
    }
    if (!d->Reporting())
    {
        d->AttachTree(root, target, nullptr);
        return;
    }
    QString attachedTo = QLatin1Char('\'') + ObjectPath(root) + QLatin1Char('\'');
    if (target)
    {
        attachedTo += QStringLiteral(", target '") + ObjectPath(target) + QLatin1Char('\'');
    }
    d->Report(attachedTo, {root},
              [&](Private::Recorder& recorder) { d->AttachTree(root, target, &recorder); });
}

void GuiHandler::Attach(QObject* root)
{
    Attach(root, nullptr);
}

void GuiHandler::Attach(QAction* action)
{
    if (!action || IsAttached(action))
    {
        return;
    }
    if (d->group)
    {
        d->group->roots.push_back(action);
        ++d->group->actions;
        d->AttachAction(action, d->group->recorder);
        return;
    }
    if (!d->Reporting())
    {
        d->AttachAction(action, nullptr);
        return;
    }
    d->Report(QStringLiteral("action '") + ObjectPath(action) + QLatin1Char('\''), {action},
              [&](Private::Recorder& recorder) { d->AttachAction(action, &recorder); });
}

void GuiHandler::AttachAllTopLevelWindows(const std::function<void(QWidget*)>& attachWindow)
{
    const auto attachAll = [&]
    {
        std::set<QAction*> actions;
        for (QWidget* widget : QApplication::topLevelWidgets())
        {
            if (attachWindow)
            {
                attachWindow(widget);
            }
            else
            {
                Attach(widget);
            }
            const auto widgetActions = widget->actions();
            actions.insert(widgetActions.begin(), widgetActions.end());
        }
        for (QAction* action : actions)
        {
            Attach(action);
        }
    };
    if (!d->Reporting() || d->group)
    {
        attachAll();
        return;
    }
    // Made before the first attach: the section's own problems go to this report.
    QVector<AttachReport::Entry> entries = d->Entries();
    d->ledger.Prune();
    Private::Recorder recorder(*d->table, entries, d->ledger);
    d->group = Private::Group{};
    d->group->recorder = &recorder;
    attachAll();
    const Private::Group group = *d->group;
    d->group.reset();
    if (group.roots.empty())
    {
        return;
    }
    recorder.Finish(group.roots, true);
    AttachReport report;
    report.SetAttachedTo(Gui::AllWindowsName(group.windows, group.actions));
    report.SetEntries(entries);
    d->Publish(report, true);
}

}  // namespace Velkor::KT::Tracking
