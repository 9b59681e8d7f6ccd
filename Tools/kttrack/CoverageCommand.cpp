#include "CoverageCommand.h"

#include "RuleText.h"
#include "Schemas.h"
#include "SessionTrace.h"
#include "ToolError.h"

#include <array>
#include <iomanip>
#include <map>
#include <ostream>
#include <set>

namespace Velkor::KT::KtTrack
{

namespace
{

namespace F = Tracking::Config::Filter;
using Tracking::FilterMatcherKind;
using Kind = TraceStep::Kind;

// How often each element of a filter document fired: a block when its name matched, a matcher
// when it won its rule, a rule when one of its matchers did.
struct FilterCounts
{
    explicit FilterCounts(const F::Filter& filter)
    {
        for (const auto& block : filter.event())
        {
            blocks.push_back(0);
            rules.emplace_back(block.param().size(), 0);
            auto& blockMatchers = matchers.emplace_back();
            for (const auto& rule : block.param())
            {
                auto& ruleMatchers = blockMatchers.emplace_back();
                for (std::size_t kind = 0; kind < kMatcherKinds; ++kind)
                {
                    ruleMatchers[kind].assign(
                        MatcherCount(rule, static_cast<FilterMatcherKind>(kind)), 0);
                }
            }
        }
    }

    void Add(const TraceStep& step)
    {
        if (step.kind == Kind::FilterBlock)
        {
            ++blocks[step.block];
        }
        else if (step.kind == Kind::FilterMatcher)
        {
            const auto& m = step.matcher;
            ++rules[m.block][m.rule];
            ++matchers[m.block][m.rule][static_cast<std::size_t>(m.kind)][m.matcher];
        }
    }

    std::vector<int> blocks;
    std::vector<std::vector<int>> rules;
    std::vector<std::vector<std::array<std::vector<int>, kMatcherKinds>>> matchers;
};

// How often each main event arrived (and merged a cause), and each affecting event was held.
struct AggregatorCounts
{
    explicit AggregatorCounts(const Tracking::Config::Aggregator::Aggregator& aggregator)
    {
        for (const auto& block : aggregator.event())
        {
            mains.push_back(0);
            merges.push_back(0);
            affecting.emplace_back(block.affectingEventName().size(), 0);
        }
    }

    void Add(const TraceStep& step)
    {
        if (step.kind == Kind::AggregatorMain)
        {
            ++mains[step.block];
            merges[step.block] += step.merging;
        }
        else if (step.kind == Kind::AggregatorHold)
        {
            ++affecting[step.block][step.index];
        }
    }

    std::vector<int> mains;
    std::vector<int> merges;
    std::vector<std::vector<int>> affecting;
};

// What the report has counted: elements, and those that fired.
struct Tally
{
    int all = 0;
    int fired = 0;

    void Count(int times)
    {
        ++all;
        fired += times > 0;
    }
    std::string Of(const char* what) const
    {
        return std::to_string(fired) + " of " + std::to_string(all) + " " + what;
    }
};

class Coverage
{
public:
    Coverage(const StageRules& rules, std::ostream& out) : m_rules(rules), m_out(out) {}

    // Writes the table of the filter; returns its summary.
    std::string WriteFilter(const FilterCounts& counts)
    {
        const RuleDocument& document = *m_rules.filter;
        const FilterLines& lines = m_rules.filterLines;
        Tally blocks;
        Tally rules;
        Tally matchers;
        for (std::size_t b = 0; b < counts.blocks.size(); ++b)
        {
            const auto& block = document.filter->event()[b];
            const std::string blockText = "block " + Quoted(block.event());
            Row(document.path, lines.BlockLine(int(b)), counts.blocks[b], 0, blockText, true, "");
            blocks.Count(counts.blocks[b]);
            for (std::size_t r = 0; r < counts.rules[b].size(); ++r)
            {
                const F::Param& rule = block.param()[r];
                const std::string ruleText = "param " + Quoted(rule.key());
                const int ruleLine = lines.RuleLine(int(b), int(r));
                Row(document.path, ruleLine, counts.rules[b][r], 1, ruleText, counts.blocks[b] > 0,
                    " of " + blockText);
                rules.Count(counts.rules[b][r]);
                for (std::size_t kind = 0; kind < kMatcherKinds; ++kind)
                {
                    const auto& fired = counts.matchers[b][r][kind];
                    for (std::size_t i = 0; i < fired.size(); ++i)
                    {
                        const auto k = static_cast<FilterMatcherKind>(kind);
                        Row(document.path, lines.MatcherLine({int(b), int(r), k, int(i)}), fired[i],
                            2, MatcherText(rule, k, i), counts.rules[b][r] > 0,
                            " of " + ruleText + " of " + blockText);
                        matchers.Count(fired[i]);
                    }
                }
            }
        }
        return document.path + ": " + blocks.Of("blocks") + ", " + rules.Of("params") + ", " +
               matchers.Of("matchers") + " fired";
    }

    // Writes the table of the aggregator; returns its summary.
    std::string WriteAggregator(const AggregatorCounts& counts)
    {
        const RuleDocument& document = *m_rules.aggregator;
        const AggregatorLines& lines = m_rules.aggregatorLines;
        Tally mains;
        Tally affecting;
        for (std::size_t b = 0; b < counts.mains.size(); ++b)
        {
            const auto& block = document.aggregator->event()[b];
            const std::string main = "main event " + Quoted(block.event());
            Row(document.path, lines.BlockLine(int(b)), counts.mains[b], 0, main, true, "",
                " (merged " + std::to_string(counts.merges[b]) + ")");
            mains.Count(counts.mains[b]);
            for (std::size_t a = 0; a < counts.affecting[b].size(); ++a)
            {
                const std::string cause = "affecting " + Quoted(block.affectingEventName()[a]);
                Row(document.path, lines.AffectingLine(int(b), int(a)), counts.affecting[b][a], 1,
                    cause, true, " of " + main);
                affecting.Count(counts.affecting[b][a]);
            }
        }
        return document.path + ": " + mains.Of("main events") + ", " +
               affecting.Of("affecting events") + " fired";
    }

    // The elements that never fired, outermost only: a block's rules are not listed again.
    const std::vector<std::string>& NeverFired() const { return m_never; }

private:
    // One row of the table, `what` indented by `depth` and followed by `note`. An element that
    // never fired is also listed, followed by `context`, unless the element it belongs to never
    // fired either.
    void Row(const std::string& file, int line, int count, int depth, const std::string& what,
             bool outerFired, const std::string& context, const std::string& note = {})
    {
        m_out << At(file, line) << ": " << std::setw(5) << count << ' '
              << std::string(2 * depth, ' ') << what << note << '\n';
        if (count == 0 && outerFired)
        {
            m_never.push_back(At(file, line) + ": " + what + context);
        }
    }

    const StageRules& m_rules;
    std::ostream& m_out;
    std::vector<std::string> m_never;
};

// The event names the documents of `rules` name: filter blocks and renames, aggregator events.
std::set<std::string> NamedEvents(const StageRules& rules)
{
    std::set<std::string> names;
    if (rules.filter)
    {
        for (const auto& block : rules.filter->filter->event())
        {
            names.insert(block.event());
        }
    }
    if (rules.aggregator)
    {
        for (const auto& block : rules.aggregator->aggregator->event())
        {
            names.insert(block.event());
            names.insert(block.affectingEventName().begin(), block.affectingEventName().end());
        }
    }
    return names;
}

}  // namespace

int RunCoverage(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
                std::ostream& err)
{
    try
    {
        bool requireAll = false;
        std::vector<std::string> paths;
        for (const std::string& arg : args)
        {
            if (arg == "--require-all")
            {
                requireAll = true;
            }
            else if (arg.size() > 1 && arg[0] == '-')
            {
                throw ToolError("coverage: unknown option " + arg);
            }
            else
            {
                paths.push_back(arg);
            }
        }
        if (paths.size() < 2)
        {
            throw ToolError("coverage: needs the rule documents and a session file");
        }
        const std::string session = paths.back();
        paths.pop_back();

        Schemas schemas;
        StageRules rules;
        ReadStageDocuments("coverage", paths, rules, schemas, err);
        const bool reportFilter = rules.filter != nullptr;
        const bool reportAggregator = rules.aggregator != nullptr;
        if (!reportFilter)
        {
            rules.Set(StageDocument("coverage", "", DocumentKind::Filter, schemas, err));
        }
        if (!reportAggregator)
        {
            rules.Set(StageDocument("coverage", "", DocumentKind::Aggregator, schemas, err));
        }
        const std::vector<NumberedEvent> events = ReadSession(session, in);

        FilterCounts filterCounts(*rules.filter->filter);
        AggregatorCounts aggregatorCounts(*rules.aggregator->aggregator);
        for (const EventRoad& road : TraceSession(events, rules))
        {
            for (const TraceStep& step : road.steps)
            {
                filterCounts.Add(step);
                aggregatorCounts.Add(step);
            }
        }

        Coverage coverage(rules, out);
        std::vector<std::string> summary;
        if (reportFilter)
        {
            summary.push_back(coverage.WriteFilter(filterCounts));
        }
        if (reportAggregator)
        {
            summary.push_back(coverage.WriteAggregator(aggregatorCounts));
        }
        out << "\nnever fired:" << (coverage.NeverFired().empty() ? " nothing\n" : "\n");
        for (const std::string& line : coverage.NeverFired())
        {
            out << line << '\n';
        }

        const std::set<std::string> named = NamedEvents(rules);
        std::map<std::string, int> unnamed;
        for (const NumberedEvent& event : events)
        {
            if (!named.count(event.event.name))
            {
                ++unnamed[event.event.name];
            }
        }
        out << "\nevent names no rule names:" << (unnamed.empty() ? " none\n" : "\n");
        for (const auto& [name, count] : unnamed)
        {
            out << "  " << name << " (" << count << (count == 1 ? " event)\n" : " events)\n");
        }

        out << '\n';
        for (const std::string& line : summary)
        {
            out << line << '\n';
        }
        out << events.size() << " events, " << unnamed.size() << " event names no rule names\n";
        return requireAll && !coverage.NeverFired().empty() ? 1 : 0;
    }
    catch (const ToolError& error)
    {
        err << error.what() << '\n';
        return 2;
    }
}

}  // namespace Velkor::KT::KtTrack
