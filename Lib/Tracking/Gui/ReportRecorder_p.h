#pragma once

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/AttachReport.h"
#include "Tracking/Gui/ElementKinds_p.h"
#include "Tracking/Gui/EntryTable_p.h"
#include "Tracking/Gui/HookLedger_p.h"
#include "Tracking/Gui/ObjectSearch_p.h"
#include "Tracking/Gui/SectionLints_p.h"
#include "Tracking/Gui/SignalText_p.h"

#include <QStringList>
#include <QVector>

#include <vector>

namespace Velkor::KT::Tracking::Gui
{

// The visitor of a section walk (SectionWalk.h) that writes the attach report: for each search
// of an entry, the objects it found with the hooks each gets, the signals an object lacks, the
// objects of a name whose class the entry does not take, and the objects the entry hooks more
// than once (through `ledger`, also across attaches). Works on any tree that ObjectSearch works
// on and that also provides
//   static QObject* Object(Node);     // the live object, or null
//   static QString Path(Node);        // see ObjectPath()
//   static QString ClassName(Node);
//   static bool HasSignal(Node, const QByteArray& normalisedSignature);
// Hooks are made by another visitor; this one only tells what they are.
template <class Tree>
class ReportRecorder
{
public:
    using Node = typename Tree::Node;
    static constexpr bool kTraced = true;

    // `entries`: the report's entries, in the order of `table`. `attach` names the attach in the
    // ways of the hooked-twice problems ("'MainWindow'"); `root` is where it started; with a
    // `target`, other objects get no hooks of their own (object entries excepted).
    ReportRecorder(const EntryTable& table, QVector<AttachReport::Entry>& entries,
                   HookLedger<Node>& ledger, const QString& attach, Node root, Node target)
        : m_table(table),
          m_entries(entries),
          m_ledger(ledger),
          m_attach(attach),
          m_root(root),
          m_target(target)
    {
    }

    template <class Entry>
    void Found(const Entry& element, Node, const std::vector<Node>& matches,
               const SearchTrace<Node>* trace)
    {
        const int index = m_table.IndexOf(element);
        if (index < 0)
        {
            return;
        }
        AttachReport::Entry& entry = m_entries[index];
        for (std::size_t i = 0; i < matches.size(); ++i)
        {
            const Node match = matches[i];
            AttachReport::Match record;
            record.object = Tree::Object(match);
            record.path = Tree::Path(match);
            record.className = Tree::ClassName(match);
            if (entry.kind == AttachReport::ElementKind::Object || !m_target || match == m_target)
            {
                record.hooks = Hooks(match, index, record.className, entry);
            }
            if (!record.hooks.isEmpty())
            {
                NoteHooked(match, index, entry, record, trace->from[i]);
            }
            entry.matches.append(record);
        }
        if (matches.empty())
        {
            for (const Node other : trace->wrongClass)
            {
                AddProblem(entry, AttachReport::ProblemKind::WrongClass,
                           QStringLiteral("'%1' is a %2, which a %3 entry does not take (it "
                                          "takes %4)")
                               .arg(Tree::Path(other), Tree::ClassName(other),
                                    AttachReport::ElementName(entry.kind),
                                    QLatin1String(
                                        ElementOf<Entry>::QtClass::staticMetaObject.className())));
            }
        }
    }

    template <class Entry>
    void Apply(Node, const Entry&)
    {
    }

private:
    QVector<AttachReport::Hook> Hooks(Node match, int index, const QString& className,
                                      AttachReport::Entry& entry)
    {
        const EntryTable::Triggers& triggers = m_table.TriggersOf(index);
        if (entry.kind != AttachReport::ElementKind::Object)
        {
            return triggers.own;
        }
        QVector<AttachReport::Hook> hooks;
        for (const EntryTable::SignalHook& signal : triggers.signalHooks)
        {
            if (!signal.Connectable())
            {
                continue;  // the section's own problems say why
            }
            if (Tree::HasSignal(match, signal.signature))
            {
                hooks.append(signal.hook);
                continue;
            }
            AddProblem(entry, AttachReport::ProblemKind::MissingSignal,
                       QStringLiteral("%1 has no signal %2")
                           .arg(className, QString::fromLatin1(signal.signature)));
        }
        return hooks;
    }

    void NoteHooked(Node match, int index, AttachReport::Entry& entry,
                    const AttachReport::Match& record, Node from)
    {
        typename HookLedger<Node>::Way way{m_attach, from, nullptr, from == m_root};
        if (!way.fromStart)
        {
            way.fromObject = Tree::Object(from);
        }
        const auto& ways = m_ledger.Record(match, Tree::Object(match), index, std::move(way));
        if (ways.size() < 2)
        {
            return;
        }
        QStringList texts;
        for (const auto& earlier : ways)
        {
            QString text = QStringLiteral("the attach of ") + earlier.attach;
            if (!earlier.fromStart)
            {
                const bool gone = Tree::Object(earlier.from) && earlier.fromObject.isNull();
                text +=
                    gone ? QStringLiteral(" from an object destroyed since")
                         : QStringLiteral(" from '") + Tree::Path(earlier.from) + QLatin1Char('\'');
            }
            texts.append(text);
        }
        QStringList triggers;
        for (const AttachReport::Hook& hook : record.hooks)
        {
            triggers.append(hook.trigger);
        }
        AddHookedTwice(entry, QLatin1Char('\'') + record.path + QStringLiteral("' hooked ") +
                                  QString::number(texts.size()) + QStringLiteral(" times: by ") +
                                  texts.join(QStringLiteral(" and by ")) +
                                  RepeatedHooksEffect(triggers, texts.size()));
    }

    const EntryTable& m_table;
    QVector<AttachReport::Entry>& m_entries;
    HookLedger<Node>& m_ledger;
    const QString m_attach;
    const Node m_root;
    const Node m_target;
};

}  // namespace Velkor::KT::Tracking::Gui
