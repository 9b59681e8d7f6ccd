#include "Tracking/Gui/NearMisses_p.h"

#include <algorithm>
#include <cstdlib>

namespace Velkor::KT::Tracking::Gui
{

int NameDistance(const QString& a, const QString& b, int limit)
{
    const int n = a.size();
    const int m = b.size();
    if (std::abs(n - m) > limit)
    {
        return limit + 1;
    }
    // Three rows of the table of the optimal string alignment distance.
    std::vector<int> before(std::size_t(m) + 1);
    std::vector<int> previous(std::size_t(m) + 1);
    std::vector<int> current(std::size_t(m) + 1);
    for (int j = 0; j <= m; ++j)
    {
        previous[std::size_t(j)] = j;
    }
    int previousMinimum = 0;
    for (int i = 1; i <= n; ++i)
    {
        current[0] = i;
        int rowMinimum = i;
        for (int j = 1; j <= m; ++j)
        {
            const auto at = std::size_t(j);
            const int cost = a[i - 1] == b[j - 1] ? 0 : 1;
            int value = std::min({previous[at] + 1, current[at - 1] + 1, previous[at - 1] + cost});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
            {
                value = std::min(value, before[at - 2] + 1);
            }
            current[at] = value;
            rowMinimum = std::min(rowMinimum, value);
        }
        // A swap reaches back two rows: only two rows above the limit decide it.
        if (rowMinimum > limit && previousMinimum > limit)
        {
            return limit + 1;
        }
        previousMinimum = rowMinimum;
        std::swap(before, previous);
        std::swap(previous, current);
    }
    return std::min(previous[std::size_t(m)], limit + 1);
}

int NearNameLimit(const QString& name)
{
    return std::clamp(int(name.size()) / 5, 1, 3);
}

}  // namespace Velkor::KT::Tracking::Gui
