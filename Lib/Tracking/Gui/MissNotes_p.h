#pragma once

#include "Tracking/Gui/AttachReport.h"
#include "Tracking/Gui/NearMisses_p.h"

#include <QStringList>
#include <QVector>

#include <algorithm>
#include <utility>
#include <vector>

namespace Velkor::KT::Tracking::Gui
{

// What the searches of one entry saw in an attach: whether there was one, the class the entry
// takes, the first two objects it was searched from, the objects of its name of another class.
template <class Tree>
struct EntrySearches
{
    bool searched = false;
    typename Tree::Class wanted{};
    const char* qtClass = nullptr;
    std::vector<typename Tree::Node> starts;
    std::vector<typename Tree::Node> wrongClass;
};

// The notes that explain an entry that matched nothing (ReportRecorder::Finish()): where objects
// of its name and class are when its search did not reach them, or else the names nearly its
// (and so for each part of a path that names nothing); when the attach covered every window, a
// name found nowhere.
template <class Tree>
class MissNotes
{
public:
    using Node = typename Tree::Node;
    using Class = typename Tree::Class;

    static void Explain(AttachReport::Entry& entry, const QVector<AttachReport::Entry>& entries,
                        const EntrySearches<Tree>& miss, const NameIndex<Tree>& index,
                        bool everyWindow)
    {
        QStringList parts = entry.id.split(QLatin1Char(':'));
        parts.removeAll(QString());
        if (parts.isEmpty())
        {
            return;  // the section's own problems say why
        }
        const QString name = parts.last();
        // Objects of its name and class that the search did not reach.
        QStringList elsewhere;
        for (const Node node : index.Named(name))
        {
            if (Tree::IsA(node, miss.wanted))
            {
                elsewhere.append(QLatin1Char('\'') + Tree::Path(node) + QLatin1Char('\''));
            }
        }
        if (!elsewhere.isEmpty())
        {
            entry.notes.append(QStringLiteral("%1 %2 named '%3', where the entry does not look: %4")
                                   .arg(Objects(elsewhere.size()), Plainly(elsewhere), name,
                                        Reach(entry, entries, miss, parts)));
        }
        bool explained = !elsewhere.isEmpty() || !miss.wrongClass.empty();
        for (int p = 0; p < parts.size(); ++p)
        {
            const bool last = p + 1 == parts.size();
            if ((last && explained) || (!last && !index.Named(parts[p]).empty()))
            {
                continue;
            }
            const QStringList near = NearNames(index, parts[p], last ? &miss.wanted : nullptr);
            if (!near.isEmpty())
            {
                entry.notes.append(QStringLiteral("no object is named '%1'; nearly so: %2")
                                       .arg(parts[p], near.join(QStringLiteral(", "))));
                explained = true;
            }
        }
        if (!explained && everyWindow && index.Named(name).empty())
        {
            entry.notes.append(
                QStringLiteral("no object of these windows is named '%1': a window created "
                               "later is attached when it gets its native window")
                    .arg(name));
        }
    }

    // Where the entry looked, for a note on objects it did not reach.
private:
    static QString Reach(const AttachReport::Entry& entry,
                         const QVector<AttachReport::Entry>& entries,
                         const EntrySearches<Tree>& miss, const QStringList& parts)
    {
        if (entry.idIsRoot)
        {
            return QStringLiteral("with idIsRoot only the object a search starts from counts");
        }
        if (parts.size() > 1)
        {
            return QStringLiteral("its id looks for it below an object named '%1'")
                .arg(parts[parts.size() - 2]);
        }
        if (entry.parent >= 0)
        {
            QStringList starts;
            for (const Node start : miss.starts)
            {
                starts.append(QLatin1Char('\'') + Tree::Path(start) + QLatin1Char('\''));
            }
            return QStringLiteral("it looks below what its widget entry (line %1) found: %2")
                .arg(entries[entry.parent].line)
                .arg(starts.join(QStringLiteral(", ")));
        }
        return QStringLiteral("the attach started elsewhere");
    }

    // Up to three names of the index nearly `name`, nearest first, each with the path of its
    // first object; only objects of class `wanted` when given.
    static QStringList NearNames(const NameIndex<Tree>& index, const QString& name,
                                 const Class* wanted)
    {
        const int limit = NearNameLimit(name);
        std::vector<std::pair<int, QString>> near;
        index.ForEachName(
            [&](const QString& candidate, const std::vector<Node>& nodes)
            {
                if (candidate.isEmpty() || candidate == name)
                {
                    return;
                }
                const int distance = NameDistance(name, candidate, limit);
                if (distance > limit)
                {
                    return;
                }
                for (const Node node : nodes)
                {
                    if (!wanted || Tree::IsA(node, *wanted))
                    {
                        near.emplace_back(
                            distance, QStringLiteral("'%1' (%2)").arg(candidate, Tree::Path(node)));
                        return;
                    }
                }
            });
        std::sort(near.begin(), near.end());
        QStringList names;
        for (std::size_t i = 0; i < near.size() && i < 3; ++i)
        {
            names.append(near[i].second);
        }
        return names;
    }

    static QString Objects(int count)
    {
        return count == 1 ? QStringLiteral("the object") : QStringLiteral("the objects");
    }

    static QString Plainly(const QStringList& paths)
    {
        return paths.mid(0, 3).join(QStringLiteral(", ")) +
               (paths.size() > 3 ? QStringLiteral(" and %1 more").arg(paths.size() - 3)
                                 : QString());
    }
};

}  // namespace Velkor::KT::Tracking::Gui
