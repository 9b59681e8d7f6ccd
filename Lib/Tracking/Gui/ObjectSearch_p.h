#pragma once

#include <QRegExp>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

namespace Velkor::KT::Tracking
{

namespace Config
{
class Object;
}

// What the `id` of a `gui` entry names: a path of object names separated by ":" (empty segments
// are dropped), each an exact name or, with `idIsRegExp`, a regular expression; with `idIsRoot`
// each part may match only the object the search is at, never one of its descendants.
struct IdPath
{
    QStringList parts;
    bool isRegExp = false;
    bool rootOnly = false;

    static IdPath Of(const Config::Object& entry);
};

// One part of an id path, tried against object names. The object the search is at must match
// the part whole; a descendant's name must equal the part, or contain a match of the expression.
class IdPart
{
public:
    IdPart(const QString& part, bool isRegExp);

    bool IsExpression() const { return m_expression.has_value(); }
    bool MatchesStart(const QString& name) const;
    bool MatchesDescendant(const QString& name) const;

private:
    QString m_part;
    std::optional<QRegExp> m_expression;
};

// What a traced search finds out besides its matches, for the attach report.
template <class Node>
struct SearchTrace
{
    // For each match, the object whose tree the path's last part was matched in: the start, or
    // an object that an earlier part found.
    std::vector<Node> from;
    // Objects whose names the last part matches but whose class the search does not take (for a
    // regular expression, only the start object is tried).
    std::vector<Node> wrongClass;
};

// The search of the objects an id path names, over any tree of named objects: the live QObject
// tree (LiveObjectTree.h), or a dumped one (DumpedObjectTree.h). A tree type provides
//   using Node = ...;   // a cheap handle of one object
//   using Class = ...;  // what IsA() tests against
//   static QString Name(Node);
//   static bool IsA(Node, Class);  // the object is of this class or inherits it
//   static void ForEachDescendant(Node, F visit);  // depth first, in QObject::findChildren order
//
// For each part in turn, every object found so far is replaced by itself when its name matches
// the part whole, followed (unless the path is root-only) by each descendant whose name matches,
// in tree order. Objects reached along two ways are listed twice. Only the last part requires
// `wanted`; the others take any object of `any` class. A traced search also fills `trace`; an
// untraced one does exactly the work of the search alone.
template <class Tree>
class ObjectSearch
{
public:
    using Node = typename Tree::Node;
    using Class = typename Tree::Class;

    static std::vector<Node> Find(Node start, const IdPath& path, Class any, Class wanted)
    {
        return Search<false>(start, path, any, wanted, nullptr);
    }

    static std::vector<Node> Find(Node start, const IdPath& path, Class any, Class wanted,
                                  SearchTrace<Node>& trace)
    {
        return Search<true>(start, path, any, wanted, &trace);
    }

private:
    template <bool kTraced>
    static std::vector<Node> Search(Node start, const IdPath& path, Class any, Class wanted,
                                    SearchTrace<Node>* trace)
    {
        if (path.parts.isEmpty())
        {
            return {};
        }
        std::vector<Node> current{start};
        for (int i = 0; i < path.parts.size(); ++i)
        {
            const IdPart part(path.parts.at(i), path.isRegExp);
            const bool last = i + 1 == path.parts.size();
            std::vector<Node> next;
            for (Node node : current)
            {
                AppendPartMatches<kTraced>(node, part, path.rootOnly, last ? wanted : any, next,
                                           last ? trace : nullptr);
            }
            current = std::move(next);
        }
        return current;
    }

    template <bool kTraced>
    static void AppendPartMatches(Node from, const IdPart& part, bool rootOnly, Class required,
                                  std::vector<Node>& out, SearchTrace<Node>* trace)
    {
        const auto found = [&](Node node)
        {
            out.push_back(node);
            if constexpr (kTraced)
            {
                if (trace)
                {
                    trace->from.push_back(from);
                }
            }
        };
        if (part.MatchesStart(Tree::Name(from)))
        {
            if (Tree::IsA(from, required))
            {
                found(from);
            }
            else if constexpr (kTraced)
            {
                if (trace)
                {
                    trace->wrongClass.push_back(from);
                }
            }
        }
        if (rootOnly)
        {
            return;
        }
        if constexpr (kTraced)
        {
            // Names first: the objects of a name that have another class are wanted too. An
            // expression is costlier than a class test, so expressions are tried on the
            // objects of the class only, and find no others.
            if (trace && !part.IsExpression())
            {
                Tree::ForEachDescendant(from,
                                        [&](Node descendant)
                                        {
                                            if (part.MatchesDescendant(Tree::Name(descendant)))
                                            {
                                                if (Tree::IsA(descendant, required))
                                                {
                                                    found(descendant);
                                                }
                                                else
                                                {
                                                    trace->wrongClass.push_back(descendant);
                                                }
                                            }
                                        });
                return;
            }
        }
        Tree::ForEachDescendant(from,
                                [&](Node descendant)
                                {
                                    if (Tree::IsA(descendant, required) &&
                                        part.MatchesDescendant(Tree::Name(descendant)))
                                    {
                                        found(descendant);
                                    }
                                });
    }
};

}  // namespace Velkor::KT::Tracking
