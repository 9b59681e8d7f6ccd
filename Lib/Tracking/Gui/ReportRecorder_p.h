#pragma once

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/AttachReport.h"
#include "Tracking/Gui/ElementKinds_p.h"
#include "Tracking/Gui/EntryTable_p.h"
#include "Tracking/Gui/HookLedger_p.h"
#include "Tracking/Gui/MissNotes_p.h"
#include "Tracking/Gui/ObjectSearch_p.h"
#include "Tracking/Gui/SectionLints_p.h"
#include "Tracking/Gui/SignalText_p.h"

#include <QStringList>
#include <QVector>

#include <algorithm>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace Velkor::KT::Tracking::Gui
{

// The visitor of section walks (SectionWalk.h) that writes one attach report, which may cover
// several walks (the attach of all top-level windows: each window, then each action): for each
// search of an entry, the objects it found with the hooks each gets and, for a condition, how it
// stands; the signals an object lacks; the objects the entry hooks more than once (through
// `ledger`, also across attaches). Once the walks are done, Finish() explains the entries that
// matched nothing in any of them: objects of the name with a class the entry does not take, and
// near misses (see Finish()). Works on any tree that ObjectSearch works on and that also
// provides
//   static QObject* Object(Node);     // the live object, or null
//   static QString Path(Node);        // see ObjectPath()
//   static QString ClassName(Node);
//   static bool HasSignal(Node, const QByteArray& normalisedSignature);
//   static std::optional<QString> Property(Node, const QByteArray& name);  // as text; none: unset
// Hooks are made by another visitor; this one only tells what they are.
template <class Tree>
class ReportRecorder
{
public:
    using Node = typename Tree::Node;
    using Class = typename Tree::Class;
    static constexpr bool kTraced = true;

    // `entries`: the report's entries, in the order of `table`.
    ReportRecorder(const EntryTable& table, QVector<AttachReport::Entry>& entries,
                   HookLedger<Node>& ledger)
        : m_table(table), m_entries(entries), m_ledger(ledger), m_misses(entries.size())
    {
    }

    // The walk that follows: `attach` names it in the ways of the hooked-twice problems
    // ("'MainWindow'"); `root` is where it starts; with a `target`, other objects get no hooks
    // of their own (object entries excepted).
    void Begin(const QString& attach, Node root, Node target)
    {
        m_attach = attach;
        m_root = root;
        m_target = target;
    }

    template <class Entry>
    void Found(const Entry& element, Node start, const std::vector<Node>& matches,
               const SearchTrace<Node>* trace)
    {
        const int index = m_table.IndexOf(element);
        if (index < 0)
        {
            return;
        }
        AttachReport::Entry& entry = m_entries[index];
        Miss& miss = m_misses[std::size_t(index)];
        if (!miss.searched)
        {
            miss.searched = true;
            entry.searched = true;
            miss.wanted = Tree::ClassOf(ElementOf<Entry>::QtClass::staticMetaObject);
            miss.qtClass = ElementOf<Entry>::QtClass::staticMetaObject.className();
        }
        if (miss.starts.size() < 2 &&
            std::find(miss.starts.begin(), miss.starts.end(), start) == miss.starts.end())
        {
            miss.starts.push_back(start);
        }
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
            if constexpr (std::is_same_v<Entry, Config::Action>)
            {
                Condition(element, match, record);
            }
            if (!record.hooks.isEmpty())
            {
                NoteHooked(match, index, entry, record, trace->from[i]);
            }
            entry.matches.append(record);
        }
        // An expression matches the start of any search it likes; that the start is of another
        // class says nothing of the entry.
        for (const Node other : trace->wrongClass)
        {
            if (!(entry.idIsRegExp && other == start))
            {
                miss.wrongClass.push_back(other);
            }
        }
    }

    template <class Entry>
    void Apply(Node, const Entry&)
    {
    }

    // Explains what the walks leave unexplained, over the trees of `roots` (those of the walks).
    // For each entry that was searched and matched nothing (its widget entry having matched
    // something): the objects of its name whose class it does not take, as problems; as notes,
    // where objects of its name and class are when the entry did not reach them, or else the
    // objects of that class whose names are nearly its (and so for each part of a path that
    // names nothing). When `everyWindow`, the walks covered all windows there are: a name found
    // nowhere is said to be missing. For each action entry whose condition holds on none of its
    // objects, a note.
    void Finish(const std::vector<Node>& roots, bool everyWindow)
    {
        std::optional<NameIndex<Tree>> index;
        for (int i = 0; i < m_entries.size(); ++i)
        {
            AttachReport::Entry& entry = m_entries[i];
            const Miss& miss = m_misses[std::size_t(i)];
            if (!entry.MatchedNothing())
            {
                ConditionNote(entry);
                continue;
            }
            if (!miss.searched || (entry.parent >= 0 && m_entries[entry.parent].MatchedNothing()))
            {
                continue;
            }
            for (const Node other : miss.wrongClass)
            {
                AddProblem(
                    entry, AttachReport::ProblemKind::WrongClass,
                    QStringLiteral("'%1' is a %2, which a %3 entry does not take (it "
                                   "takes %4)")
                        .arg(Tree::Path(other), Tree::ClassName(other),
                             AttachReport::ElementName(entry.kind), QLatin1String(miss.qtClass)));
            }
            if (entry.idIsRegExp)
            {
                continue;
            }
            if (!index)
            {
                index.emplace(roots);
            }
            MissNotes<Tree>::Explain(entry, m_entries, miss, *index, everyWindow);
        }
    }

private:
    using Miss = EntrySearches<Tree>;

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
                           .arg(className, QString::fromLatin1(signal.signature)),
                       signal.line);
        }
        return hooks;
    }

    // How the condition of an action entry stands on `match`, checked as the hook checks it.
    static void Condition(const Config::Action& element, Node match, AttachReport::Match& record)
    {
        if (!element.propertyName())
        {
            return;
        }
        const QString name = QString::fromStdString(*element.propertyName());
        const std::optional<QString> value =
            Tree::Property(match, QByteArray::fromStdString(*element.propertyName()));
        if (!value)
        {
            record.condition = QStringLiteral("'%1' is missing").arg(name);
            return;
        }
        if (!element.propertyValue())
        {
            record.condition = QStringLiteral("'%1' is set: holds").arg(name);
            record.conditionHolds = true;
            return;
        }
        const QString wanted = QString::fromStdString(*element.propertyValue());
        record.conditionHolds = value->toUtf8() == wanted.toUtf8();
        record.condition =
            record.conditionHolds
                ? QStringLiteral("'%1' is \"%2\": holds").arg(name, *value)
                : QStringLiteral("'%1' is \"%2\", not \"%3\"").arg(name, *value, wanted);
    }

    static void ConditionNote(AttachReport::Entry& entry)
    {
        if (entry.matches.first().condition.isEmpty())
        {
            return;
        }
        for (const AttachReport::Match& match : entry.matches)
        {
            if (match.conditionHolds)
            {
                return;
            }
        }
        entry.notes.append(
            QStringLiteral("its condition holds on none of its objects now (%1): it sends "
                           "nothing unless that changes before the action fires")
                .arg(entry.matches.first().condition));
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
    std::vector<Miss> m_misses;
    QString m_attach;
    Node m_root{};
    Node m_target{};
};

}  // namespace Velkor::KT::Tracking::Gui
