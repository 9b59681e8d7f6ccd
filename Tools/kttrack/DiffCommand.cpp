#include "DiffCommand.h"

#include "Report.h"
#include "RuleText.h"
#include "Schemas.h"
#include "SessionTrace.h"
#include "ToolError.h"

#include <algorithm>
#include <map>
#include <optional>
#include <ostream>

namespace Velkor::KT::KtTrack
{

namespace
{

using Tracking::Event;

struct DiffOptions
{
    std::vector<std::string> oldPaths;
    std::vector<std::string> newPaths;
    std::string session;
    bool changedOnly = false;
};

DiffOptions ParseOptions(const std::vector<std::string>& args)
{
    DiffOptions options;
    if (args.empty() || (args.back().size() > 1 && args.back()[0] == '-'))
    {
        throw ToolError("diff: the last argument must be the session file");
    }
    options.session = args.back();
    std::vector<std::string>* side = nullptr;
    for (std::size_t i = 0; i + 1 < args.size(); ++i)
    {
        const std::string& arg = args[i];
        if (arg == "--old" || arg == "--new")
        {
            side = arg == "--old" ? &options.oldPaths : &options.newPaths;
        }
        else if (arg == "--changed-only")
        {
            options.changedOnly = true;
        }
        else if (arg.size() > 1 && arg[0] == '-')
        {
            throw ToolError("diff: unknown option " + arg);
        }
        else if (!side)
        {
            throw ToolError("diff: " + arg + " must follow --old or --new");
        }
        else
        {
            side->push_back(arg);
        }
    }
    for (const auto* paths : {&options.oldPaths, &options.newPaths})
    {
        if (paths->empty() || paths->size() > 2)
        {
            throw ToolError(std::string("diff: ") +
                            (paths == &options.oldPaths ? "--old" : "--new") +
                            " takes one or two documents (a filter, an aggregator)");
        }
    }
    return options;
}

// A copy of `document`, read again.
std::unique_ptr<RuleDocument> Copy(const RuleDocument& document, Schemas& schemas,
                                   std::ostream& err)
{
    Report report(err);
    return ParseRuleDocument(document.path, document.text, schemas, report);
}

std::string Names(const StageRules& rules)
{
    return rules.filter->path + ", " + rules.aggregator->path;
}

std::string Value(const std::optional<std::string>& value)
{
    return value ? Quoted(*value) : "absent";
}

// The keys whose values differ between `older` and `newer`, each with both values.
std::map<std::string, std::pair<std::optional<std::string>, std::optional<std::string>>>
ChangedProperties(const Event::Params& older, const Event::Params& newer)
{
    std::map<std::string, std::pair<std::optional<std::string>, std::optional<std::string>>>
        changed;
    for (const auto& [key, value] : older)
    {
        const auto other = newer.find(key);
        if (other == newer.end() || other->second != value)
        {
            changed[key].first = value;
        }
    }
    for (const auto& [key, value] : newer)
    {
        const auto other = older.find(key);
        if (other == older.end() || other->second != value)
        {
            changed[key].second = value;
        }
    }
    return changed;
}

std::string Counted(const std::map<std::string, int>& counts)
{
    int all = 0;
    std::string list;
    for (const auto& [what, count] : counts)
    {
        all += count;
        list += (list.empty() ? "" : ", ") + what + " " + std::to_string(count);
    }
    return all == 0 ? "none" : std::to_string(all) + " (" + list + ")";
}

class SideBySide
{
public:
    SideBySide(const std::string& session, std::size_t width, bool changedOnly, std::ostream& out)
        : m_session(session), m_width(width), m_changedOnly(changedOnly), m_out(out)
    {
    }

    void Pair(int line, const std::optional<Event>& older, const std::optional<Event>& newer)
    {
        if (!older && !newer)
        {
            return;
        }
        m_olderCount += older.has_value();
        m_newerCount += newer.has_value();
        if (!older || !newer)
        {
            ++m_differing;
            const Event& only = older ? *older : *newer;
            ++(older ? m_lost : m_gained)[only.name];
            Row(line, older ? older->name : "-", older ? '<' : '>', newer ? newer->name : "-");
            m_out << "      " << ParamsJson(only.params) << '\n';
            return;
        }
        const auto changed = ChangedProperties(older->params, newer->params);
        const bool renamed = older->name != newer->name;
        if (!renamed && changed.empty())
        {
            if (!m_changedOnly)
            {
                Row(line, older->name, ' ', newer->name);
            }
            return;
        }
        ++m_differing;
        if (renamed)
        {
            ++m_renamed[older->name + " -> " + newer->name];
        }
        Row(line, older->name, '|', newer->name);
        for (const auto& [key, values] : changed)
        {
            ++m_properties[Quoted(key)];
            m_out << "      " << Quoted(key) << ": " << Value(values.first) << " -> "
                  << Value(values.second) << '\n';
        }
    }

    void Summary(std::size_t events)
    {
        m_out << '\n'
              << m_differing << " of " << events << " session events are delivered differently"
              << " (old delivers " << m_olderCount << " events, new " << m_newerCount << ")\n"
              << "gained: " << Counted(m_gained) << '\n'
              << "lost: " << Counted(m_lost) << '\n'
              << "renamed: " << Counted(m_renamed) << '\n'
              << "properties changed: " << Counted(m_properties) << '\n';
    }

    bool Differ() const { return m_differing > 0; }

private:
    void Row(int line, const std::string& older, char mark, const std::string& newer)
    {
        const std::string at = m_session + ":" + std::to_string(line);
        m_out << at << std::string(at.size() < 24 ? 24 - at.size() : 1, ' ') << older
              << std::string(older.size() < m_width ? m_width - older.size() : 0, ' ') << ' '
              << mark << ' ' << newer << '\n';
    }

    std::string m_session;
    std::size_t m_width;
    bool m_changedOnly;
    std::ostream& m_out;
    int m_differing = 0;
    int m_olderCount = 0;
    int m_newerCount = 0;
    std::map<std::string, int> m_gained;
    std::map<std::string, int> m_lost;
    std::map<std::string, int> m_renamed;
    std::map<std::string, int> m_properties;
};

}  // namespace

int RunDiff(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
            std::ostream& err)
{
    try
    {
        const DiffOptions options = ParseOptions(args);
        Schemas schemas;
        StageRules older;
        ReadStageDocuments("diff", options.oldPaths, older, schemas, err);
        StageRules newer;
        ReadStageDocuments("diff", options.newPaths, newer, schemas, err);
        if (!older.filter)
        {
            older.Set(StageDocument("diff", "", DocumentKind::Filter, schemas, err));
        }
        if (!older.aggregator)
        {
            older.Set(StageDocument("diff", "", DocumentKind::Aggregator, schemas, err));
        }
        if (!newer.filter)
        {
            newer.Set(Copy(*older.filter, schemas, err));
        }
        if (!newer.aggregator)
        {
            newer.Set(Copy(*older.aggregator, schemas, err));
        }
        const std::vector<NumberedEvent> events = ReadSession(options.session, in);
        const std::vector<EventRoad> olderRoads = TraceSession(events, older);
        const std::vector<EventRoad> newerRoads = TraceSession(events, newer);

        std::size_t width = 0;
        for (const auto* roads : {&olderRoads, &newerRoads})
        {
            for (const EventRoad& road : *roads)
            {
                width = std::max(width, road.delivered ? road.delivered->name.size() : 0);
            }
        }
        out << "old: " << Names(older) << "\nnew: " << Names(newer) << "\n\n";
        SideBySide sides(SessionName(options.session), std::min<std::size_t>(width, 40),
                         options.changedOnly, out);
        for (std::size_t i = 0; i < events.size(); ++i)
        {
            sides.Pair(events[i].line, olderRoads[i].delivered, newerRoads[i].delivered);
        }
        sides.Summary(events.size());
        return sides.Differ() ? 1 : 0;
    }
    catch (const ToolError& error)
    {
        err << error.what() << '\n';
        return 2;
    }
}

}  // namespace Velkor::KT::KtTrack
