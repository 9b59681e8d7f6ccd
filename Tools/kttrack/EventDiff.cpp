#include "EventDiff.h"

#include "RuleText.h"
#include "Tracking/Events/EventJson.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace Velkor::KT::KtTrack
{

namespace
{

// Above this many cells the pairing by common names would cost too much memory; events are then
// paired by position.
constexpr std::size_t kMaxAlignmentCells = 4'000'000;

// Pairs of (expected index, delivered index); -1 on one side for an unpaired event.
std::vector<std::pair<long, long>> Align(const std::vector<NumberedEvent>& expected,
                                         const std::vector<Tracking::Event>& delivered)
{
    const std::size_t n = expected.size();
    const std::size_t m = delivered.size();
    std::vector<std::pair<long, long>> pairs;
    if ((n + 1) * (m + 1) > kMaxAlignmentCells)
    {
        for (std::size_t i = 0; i < std::max(n, m); ++i)
        {
            pairs.emplace_back(i < n ? long(i) : -1, i < m ? long(i) : -1);
        }
        return pairs;
    }
    // lcs[i][j]: length of the longest common name sequence of expected[i..] and delivered[j..].
    std::vector<std::uint32_t> lcs((n + 1) * (m + 1), 0);
    const auto at = [m](std::size_t i, std::size_t j) { return i * (m + 1) + j; };
    for (std::size_t i = n; i-- > 0;)
    {
        for (std::size_t j = m; j-- > 0;)
        {
            lcs[at(i, j)] = expected[i].event.name == delivered[j].name
                                ? lcs[at(i + 1, j + 1)] + 1
                                : std::max(lcs[at(i + 1, j)], lcs[at(i, j + 1)]);
        }
    }
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < n || j < m)
    {
        if (i < n && j < m && expected[i].event.name == delivered[j].name)
        {
            pairs.emplace_back(long(i++), long(j++));
        }
        else if (j < m && (i == n || lcs[at(i, j + 1)] >= lcs[at(i + 1, j)]))
        {
            pairs.emplace_back(-1, long(j++));
        }
        else
        {
            pairs.emplace_back(long(i++), -1);
        }
    }
    return pairs;
}

void DiffPair(const NumberedEvent& expected, long expectedIndex, const Tracking::Event& delivered,
              long deliveredIndex, const std::string& expectedName, std::vector<std::string>& out)
{
    std::string where = expectedName + ":" + std::to_string(expected.line) + ": event #" +
                        std::to_string(expectedIndex + 1);
    if (deliveredIndex != expectedIndex)
    {
        where += " (delivered #" + std::to_string(deliveredIndex + 1) + ")";
    }
    if (expected.event.name != delivered.name)
    {
        out.push_back(where + ": name: expected " + Quoted(expected.event.name) + ", delivered " +
                      Quoted(delivered.name));
    }
    where += " " + expected.event.name + ": ";
    const auto& want = expected.event.params;
    const auto& got = delivered.params;
    auto w = want.begin();
    auto g = got.begin();
    while (w != want.end() || g != got.end())
    {
        if (g == got.end() || (w != want.end() && w->first < g->first))
        {
            out.push_back(where + Quoted(w->first) + ": expected " + Quoted(w->second) +
                          ", not delivered");
            ++w;
        }
        else if (w == want.end() || g->first < w->first)
        {
            out.push_back(where + Quoted(g->first) + ": not expected, delivered " +
                          Quoted(g->second));
            ++g;
        }
        else
        {
            if (w->second != g->second)
            {
                out.push_back(where + Quoted(w->first) + ": expected " + Quoted(w->second) +
                              ", delivered " + Quoted(g->second));
            }
            ++w;
            ++g;
        }
    }
}

}  // namespace

std::vector<std::string> DiffEvents(const std::vector<NumberedEvent>& expected,
                                    const std::vector<Tracking::Event>& delivered,
                                    const std::string& expectedName)
{
    std::vector<std::string> out;
    for (const auto& [e, d] : Align(expected, delivered))
    {
        if (e >= 0 && d >= 0)
        {
            DiffPair(expected[e], e, delivered[d], d, expectedName, out);
        }
        else if (e >= 0)
        {
            out.push_back(expectedName + ":" + std::to_string(expected[e].line) + ": event #" +
                          std::to_string(e + 1) +
                          " missing: " + Tracking::EventJson(expected[e].event));
        }
        else
        {
            out.push_back("delivered event #" + std::to_string(d + 1) +
                          " not expected: " + Tracking::EventJson(delivered[d]));
        }
    }
    return out;
}

}  // namespace Velkor::KT::KtTrack
