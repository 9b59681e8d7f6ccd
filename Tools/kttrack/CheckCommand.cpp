#include "CheckCommand.h"

#include "GuiChecks.h"
#include "Report.h"
#include "RuleChecks.h"
#include "RuleDocument.h"
#include "Schemas.h"

#include <map>
#include <memory>
#include <ostream>

namespace Velkor::KT::KtTrack
{

namespace
{

// The documents of one set, by kind; null where the set has none.
struct Set
{
    const RuleDocument* main = nullptr;
    const RuleDocument* filter = nullptr;
    const RuleDocument* aggregator = nullptr;
};

}  // namespace

int RunCheck(const std::vector<std::string>& args, std::ostream& out, std::ostream& err)
{
    bool werror = false;
    std::vector<std::vector<std::string>> sets(1);
    for (const std::string& arg : args)
    {
        if (arg == "--werror")
        {
            werror = true;
        }
        else if (arg == "+")
        {
            if (sets.back().empty())
            {
                err << "check: '+' must stand between two sets of documents\n";
                return 2;
            }
            sets.emplace_back();
        }
        else if (arg.size() > 1 && arg[0] == '-')
        {
            err << "check: unknown option " << arg << '\n';
            return 2;
        }
        else
        {
            sets.back().push_back(arg);
        }
    }
    if (sets.back().empty())
    {
        err << "check: no documents\n";
        return 2;
    }

    Report report(err);
    Schemas schemas;
    // Each file is read and checked once, however many sets name it. Null: unusable.
    std::map<std::string, std::unique_ptr<RuleDocument>> documents;
    for (const auto& set : sets)
    {
        for (const std::string& path : set)
        {
            if (documents.count(path))
            {
                continue;
            }
            std::unique_ptr<RuleDocument> document = ReadRuleDocument(path, schemas, report);
            if (document && !ValidateRuleDocument(*document, schemas, report))
            {
                document.reset();
            }
            if (document && document->kind == DocumentKind::Main)
            {
                CheckGuiSection(*document, report);
            }
            if (document && document->kind == DocumentKind::Filter)
            {
                CheckFilterRanges(*document, report);
            }
            if (document && document->kind == DocumentKind::Aggregator)
            {
                CheckAggregatorRoles(*document, report);
            }
            documents[path] = std::move(document);
        }
    }

    for (const auto& paths : sets)
    {
        Set set;
        bool usable = true;
        std::string twice;
        for (const std::string& path : paths)
        {
            const RuleDocument* document = documents[path].get();
            if (!document)
            {
                usable = false;
                continue;
            }
            const RuleDocument*& slot = document->kind == DocumentKind::Main     ? set.main
                                        : document->kind == DocumentKind::Filter ? set.filter
                                                                                 : set.aggregator;
            if (slot && slot != document)
            {
                twice = KindName(document->kind);
            }
            slot = document;
        }
        if (!usable || !set.main)
        {
            continue;
        }
        if (!twice.empty())
        {
            report.Note(set.main->path,
                        "not checked against the rule documents: its set has more "
                        "than one " +
                            twice + " document (separate sets with '+')");
            continue;
        }
        CrossCheck(*set.main, set.filter, set.aggregator, report);
    }

    out << documents.size() << (documents.size() == 1 ? " document" : " documents")
        << " checked: " << report.Errors() << " errors, " << report.Warnings() << " warnings\n";
    if (report.Errors() > 0)
    {
        return 2;
    }
    return werror && report.Warnings() > 0 ? 1 : 0;
}

}  // namespace Velkor::KT::KtTrack
