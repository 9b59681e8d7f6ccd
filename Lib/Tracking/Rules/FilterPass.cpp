#include "Tracking/Rules/FilterPass_p.h"

#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <optional>

#include <locale.h>

namespace Velkor::KT::Tracking
{

namespace F = Config::Filter;

namespace
{

// Reads the longest leading number of `text` the way std::stod does (leading blanks skipped,
// trailing text ignored), but always with '.' as the decimal point whatever the process locale.
// Returns false when no number can be read or it lies outside the range of a double.
bool ReadNumber(const std::string& text, double& number)
{
#ifdef _WIN32
    static const _locale_t cLocale = _create_locale(LC_NUMERIC, "C");
    const auto toDouble = [](const char* begin, char** end)
    { return _strtod_l(begin, end, cLocale); };
#else
    static const locale_t cLocale = newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(nullptr));
    const auto toDouble = [](const char* begin, char** end)
    { return strtod_l(begin, end, cLocale); };
#endif
    const char* begin = text.c_str();
    char* end = nullptr;
    const int savedErrno = errno;
    errno = 0;
    const double value = toDouble(begin, &end);
    const bool outOfRange = errno == ERANGE;
    errno = savedErrno;
    if (end == begin || outOfRange)
    {
        return false;
    }
    number = value;
    return true;
}

bool Passes(const F::MatcherEqual& m, const std::string& value)
{
    return (value == m.value()) == m.actOn();
}

bool Passes(const F::MatcherStartsWith& m, const std::string& value)
{
    const std::string& prefix = m.value();
    const bool starts =
        value.size() >= prefix.size() && value.compare(0, prefix.size(), prefix) == 0;
    return starts == m.actOn();
}

// A suffix longer than the value never matches, inverted or not.
bool Passes(const F::MatcherEndsWith& m, const std::string& value)
{
    const std::string& suffix = m.value();
    if (suffix.size() > value.size())
    {
        return false;
    }
    const bool ends = value.compare(value.size() - suffix.size(), suffix.size(), suffix) == 0;
    return ends == m.actOn();
}

bool Passes(const F::MatcherContains& m, const std::string& value)
{
    return (value.find(m.value()) != std::string::npos) == m.actOn();
}

// Bounds are inclusive; a range without bounds, or a value without a leading number, is not in it.
bool Passes(const F::MatcherRange& m, const std::string& value)
{
    bool inside = false;
    double number = 0;
    if ((m.from() || m.to()) && ReadNumber(value, number))
    {
        inside = (!m.from() || number >= *m.from()) && (!m.to() || number <= *m.to());
    }
    return inside == m.actOn();
}

bool Passes(const F::MatcherAny& m, const std::string&)
{
    return m.actOn();
}

}  // namespace

namespace
{

// The steps of one rewrite, on the working copy `w`.
template <bool Traced>
struct Steps
{
    const F::Filter& document;
    std::map<std::string, Event::Params>& repeats;
    IRuleTraceListener* const trace;

    // Tries the matchers of one kind in document order; runs the first that passes.
    template <typename Matchers>
    bool TryKind(const Matchers& matchers, FilterMatcherKind kind, FilterMatcherRef& at,
                 const std::string& key, const std::string& value, Event& w)
    {
        at.kind = kind;
        at.matcher = 0;
        for (const auto& matcher : matchers)
        {
            if (Passes(matcher, value))
            {
                if constexpr (Traced)
                {
                    trace->FilterMatcherFired(at, key, value);
                }
                Act(matcher, at, key, w);
                return true;
            }
            ++at.matcher;
        }
        return false;
    }

    // Actions run kind by kind, each kind in document order.
    void Act(const F::Updater& actions, const FilterMatcherRef& at, const std::string& key,
             Event& w)
    {
        using Kind = FilterActionKind;
        if (actions.setValue())
        {
            const std::string& value = actions.setValue()->value();
            OnParam(at, Kind::SetValue, 0, key, w, [&] { w.params[key] = value; });
        }
        int i = 0;
        for (const auto& add : actions.addParam())
        {
            OnParam(at, Kind::AddParam, i++, add.key(), w,
                    [&] { w.params.emplace(add.key(), add.value()); });
        }
        i = 0;
        for (const auto& mod : actions.modParam())
        {
            OnParam(at, Kind::ModParam, i++, mod.key(), w,
                    [&] { w.params[mod.key()] = mod.value(); });
        }
        i = 0;
        for (const auto& rename : actions.modEvent())
        {
            OnName(at, Kind::ModEvent, i++, w,
                   [&]
                   {
                       w.name = rename.name();
                       return FilterSkipVerdict::None;
                   });
        }
        i = 0;
        for (const auto& skip : actions.skipEvent())
        {
            OnName(at, Kind::SkipEvent, i++, w, [&] { return Skip(skip.skipFullRepeats(), w); });
        }
        i = 0;
        for (const auto& del : actions.delParam())
        {
            OnParam(at, Kind::DelParam, i++, del.key(), w, [&] { w.params.erase(del.key()); });
        }
    }

    // Runs `change` of the property `key`, reporting its value before and after to a listener.
    template <typename Change>
    void OnParam(const FilterMatcherRef& at, FilterActionKind kind, int index,
                 const std::string& key, Event& w, Change change)
    {
        if constexpr (!Traced)
        {
            change();
            return;
        }
        const auto found = w.params.find(key);
        const std::optional<std::string> before =
            found == w.params.end() ? std::nullopt : std::optional<std::string>(found->second);
        change();
        const auto after = w.params.find(key);
        trace->FilterActionRun({at, kind, index, &key, before ? &*before : nullptr,
                                after == w.params.end() ? nullptr : &after->second});
    }

    // Runs `change` of the event's name, reporting the name before and after to a listener.
    template <typename Change>
    void OnName(const FilterMatcherRef& at, FilterActionKind kind, int index, Event& w,
                Change change)
    {
        if constexpr (!Traced)
        {
            change();
            return;
        }
        const std::string before = w.name;
        const FilterSkipVerdict skip = change();
        trace->FilterActionRun({at, kind, index, nullptr, &before, &w.name, skip});
    }

    FilterSkipVerdict Skip(bool onlyFullRepeats, Event& w)
    {
        if (!onlyFullRepeats)
        {
            w.name.clear();
            return FilterSkipVerdict::Dropped;
        }
        const auto last = repeats.find(w.name);
        if (last != repeats.end() && last->second == w.params)
        {
            w.name.clear();
            return FilterSkipVerdict::FullRepeat;
        }
        repeats[w.name] = w.params;
        return FilterSkipVerdict::Remembered;
    }

    Event Run(const Event& event)
    {
        using Kind = FilterMatcherKind;
        Event w = event;
        if constexpr (Traced)
        {
            trace->FilterStarted(w);
        }
        int index = -1;
        for (const auto& block : document.event())
        {
            ++index;
            if (block.event() != w.name)
            {
                continue;
            }
            if constexpr (Traced)
            {
                trace->FilterBlockEntered(index, w);
            }
            FilterMatcherRef at;
            at.block = index;
            at.rule = -1;
            for (const auto& rule : block.param())
            {
                ++at.rule;
                const std::string& key = rule.key();
                const auto found = w.params.find(key);
                if (found == w.params.end())
                {
                    continue;
                }
                // A copy: the winning matcher may change the very parameter it inspected.
                const std::string value = found->second;
                TryKind(rule.equal(), Kind::Equal, at, key, value, w) ||
                    TryKind(rule.startsWith(), Kind::StartsWith, at, key, value, w) ||
                    TryKind(rule.endsWith(), Kind::EndsWith, at, key, value, w) ||
                    TryKind(rule.contains(), Kind::Contains, at, key, value, w) ||
                    TryKind(rule.inRange(), Kind::InRange, at, key, value, w) ||
                    TryKind(rule.any(), Kind::Any, at, key, value, w);
            }
        }
        if constexpr (Traced)
        {
            trace->FilterFinished(w);
        }
        return w;
    }
};

}  // namespace

template <bool Traced>
Event FilterPass<Traced>::Run(const Event& event)
{
    return Steps<Traced>{document, repeats, trace}.Run(event);
}

template class FilterPass<false>;
template class FilterPass<true>;

}  // namespace Velkor::KT::Tracking
