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
#include "Tracking/Gui/ReportRecorder_p.h"
#include "Tracking/Gui/SectionHooks_p.h"
#include "Tracking/Gui/SectionLints_p.h"

#include <glog/logging.h>

#include <QAction>
#include <QStringList>

#include <optional>
#include <utility>

namespace Velkor::KT::Tracking
{

class GuiHandler::Private
{
public:
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

    // The entries of the section, with the problems it shows by itself; made for the first
    // report after each SetConfig().
    const Gui::EntryTable& Table()
    {
        if (!table)
        {
            table.emplace(config, lines);
            sectionEntries = table->Entries();
            Gui::AddSectionProblems(*table, sectionEntries);
        }
        return *table;
    }

    template <class Walk>
    void Report(const QString& attachedTo, QObject* root, QObject* target, const Walk& walk)
    {
        ledger.Prune();
        const Gui::EntryTable& entryTable = Table();
        QVector<AttachReport::Entry> entries = sectionEntries;
        Gui::ReportRecorder<LiveObjectTree> recorder(entryTable, entries, ledger, attachedTo, root,
                                                     target);
        walk(recorder);
        AttachReport report;
        report.SetAttachedTo(attachedTo);
        report.SetEntries(entries);
        Log(report);
        if (sink)
        {
            sink(report);
        }
    }

    static void Log(const AttachReport& report)
    {
        if (!VLOG_IS_ON(1))
        {
            return;
        }
        if (VLOG_IS_ON(2))
        {
            VLOG(2) << "GUI " << report.ToText().toStdString();
            return;
        }
        // The summary and the problems.
        const QStringList lines = report.ToText().split(QLatin1Char('\n'));
        QString text = lines.first();
        for (const QString& line : lines)
        {
            if (line.contains(QStringLiteral(": warning: ")))
            {
                text += QLatin1Char('\n') + line;
            }
        }
        VLOG(1) << "GUI " << text.toStdString();
    }

    Config::Gui config;
    std::vector<int> lines;
    const NotNull<IKtTracker> tracker;
    QtEventHandler eventHandler;
    GuiElementAutoAttacher autoAttacher;
    AttachReportSink sink;
    std::optional<Gui::EntryTable> table;
    QVector<AttachReport::Entry> sectionEntries;
    Gui::HookLedger<QObject*> ledger;
};

GuiHandler::GuiHandler(const std::shared_ptr<IKtTracker>& tracker)
    : d(std::make_unique<Private>(this, tracker))
{
}

GuiHandler::~GuiHandler() = default;

void GuiHandler::SetConfig(const Config::Gui& config)
{
    SetConfig(config, {});
}

void GuiHandler::SetConfig(const Config::Gui& config, const std::vector<int>& entryLines)
{
    d->table.reset();
    d->ledger.Clear();
    d->config = config;
    d->lines = entryLines;
}

void GuiHandler::SetAttachReportSink(AttachReportSink sink)
{
    d->sink = std::move(sink);
}

void GuiHandler::Attach(QObject* root, QObject* target)
{
    QObject* const marked = target ? target : root;
    if (!root || IsAttached(marked))
    {
        return;
    }
    const Gui::ParseContext context = d->Context(target);
    if (!d->Reporting())
    {
        HookSection(context, root, d->config);
        MarkAttached(marked);
        return;
    }
    QString attachedTo = QLatin1Char('\'') + ObjectPath(root) + QLatin1Char('\'');
    if (target)
    {
        attachedTo += QStringLiteral(", target '") + ObjectPath(target) + QLatin1Char('\'');
    }
    d->Report(attachedTo, root, target,
              [&](Gui::ReportRecorder<LiveObjectTree>& recorder)
              {
                  HookSection(context, root, d->config, recorder);
                  MarkAttached(marked);
              });
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
    const Gui::ParseContext context = d->Context(nullptr);
    if (!d->Reporting())
    {
        HookActionEntries(context, action, d->config);
        MarkAttached(action);
        return;
    }
    d->Report(QStringLiteral("action '") + ObjectPath(action) + QLatin1Char('\''), action, nullptr,
              [&](Gui::ReportRecorder<LiveObjectTree>& recorder)
              {
                  HookActionEntries(context, action, d->config, recorder);
                  MarkAttached(action);
              });
}

}  // namespace Velkor::KT::Tracking
