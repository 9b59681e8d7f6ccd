#include "Tracking/Config/ExpressionBounds_p.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace Velkor::KT::Tracking::Config::Detail
{

namespace
{

// QRegExp reads at most this many repetitions; larger counts are an error of the expression.
constexpr long kMaxRepetition = 1025;

// The atoms of one open group: those of its complete factors, and the last factor's, which a
// quantifier that follows repeats.
struct Group
{
    long atoms = 0;
    long last = 0;
};

long Capped(long atoms)
{
    return std::min(atoms, kMaxExpressionAtoms + 1);
}

// Reads a repetition count at `i`; stops after kMaxRepetition.
long ReadCount(const std::string& text, std::size_t& i)
{
    long count = 0;
    while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])))
    {
        count = std::min(count * 10 + (text[i] - '0'), kMaxRepetition);
        ++i;
    }
    return count;
}

// How many times a quantifier at `i` (at "*", "+", "?" or "{") makes QRegExp spell out the factor
// before it; moves `i` past the quantifier.
long Copies(const std::string& text, std::size_t& i)
{
    if (text[i++] != '{')
    {
        return 1;
    }
    const long min = ReadCount(text, i);
    long max = min;
    if (i < text.size() && text[i] == ',')
    {
        ++i;
        const std::size_t start = i;
        max = ReadCount(text, i);
        if (i == start)
        {
            max = 0;  // open-ended: the minimum is spelt out, the rest loops
        }
    }
    if (i < text.size() && text[i] == '}')
    {
        ++i;
    }
    return std::max({min, max, 1L});
}

// Moves `i` past the character class that starts at `i` ("["); like QRegExp, the first member
// may be "]".
void SkipClass(const std::string& text, std::size_t& i)
{
    ++i;
    if (i < text.size() && text[i] == '^')
    {
        ++i;
    }
    bool first = true;
    while (i < text.size() && (first || text[i] != ']'))
    {
        i += text[i] == '\\' ? 2 : 1;
        first = false;
    }
    ++i;
}

}  // namespace

std::optional<std::string> ExpressionBeyondBounds(const std::string& expression)
{
    std::vector<Group> open(1);
    std::size_t i = 0;
    while (i < expression.size())
    {
        const char c = expression[i];
        Group& group = open.back();
        if (c == '(')
        {
            if (static_cast<int>(open.size()) > kMaxExpressionDepth)
            {
                return "groups nested deeper than " + std::to_string(kMaxExpressionDepth) +
                       " levels";
            }
            open.emplace_back();
            ++i;
            if (i < expression.size() && expression[i] == '?')
            {
                i = std::min(i + 2, expression.size());
            }
            continue;
        }
        long atoms = 1;
        if (c == ')' && open.size() > 1)
        {
            atoms = std::max(group.atoms, 1L);
            open.pop_back();
            ++i;
        }
        else if (c == '*' || c == '+' || c == '?' || c == '{')
        {
            const long copies = Copies(expression, i);
            group.atoms = Capped(group.atoms + group.last * (copies - 1));
            group.last = Capped(group.last * copies);
            if (group.atoms > kMaxExpressionAtoms)
            {
                break;
            }
            continue;
        }
        else if (c == '[')
        {
            SkipClass(expression, i);
        }
        else
        {
            i += c == '\\' ? 2 : 1;
        }
        Group& into = open.back();
        into.last = atoms;
        into.atoms = Capped(into.atoms + atoms);
        if (into.atoms > kMaxExpressionAtoms)
        {
            break;
        }
    }
    long total = 0;
    for (const Group& group : open)
    {
        total = Capped(total + group.atoms);
    }
    if (total > kMaxExpressionAtoms)
    {
        return "more than " + std::to_string(kMaxExpressionAtoms) +
               " atoms once its repetitions are spelt out";
    }
    return std::nullopt;
}

}  // namespace Velkor::KT::Tracking::Config::Detail
