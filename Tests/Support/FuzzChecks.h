#pragma once

// The checks of the fuzz targets. A target fails by aborting (Fail), so that libFuzzer, or the
// replay of stored inputs, keeps or names the input.

#include "Support/EventPrinting.h"

#include "Tracking/Events/Event.h"
#include "Tracking/Events/IKtTracker.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace KtTest
{

// Writes `what` to stderr and aborts.
[[noreturn]] inline void Fail(const std::string& what)
{
    std::fprintf(stderr, "kt-fuzz: %s\n", what.c_str());
    std::fflush(stderr);
    std::abort();
}

inline std::string Describe(const std::vector<Velkor::KT::Tracking::Event>& events)
{
    std::ostringstream out;
    for (const auto& event : events)
    {
        out << "  ";
        Velkor::KT::Tracking::PrintTo(event, &out);
        out << '\n';
    }
    return out.str();
}

// Fails with both lists, under `what`, unless they are equal.
inline void ExpectSame(const std::vector<Velkor::KT::Tracking::Event>& expected,
                       const std::vector<Velkor::KT::Tracking::Event>& actual, const char* what)
{
    if (expected != actual)
    {
        Fail(std::string(what) + "\nexpected:\n" + Describe(expected) + "delivered:\n" +
             Describe(actual));
    }
}

// The end of a chain: keeps what it is given, and fails on an event without a name, which no
// stage may pass on.
class NamedEventsRecorder : public Velkor::KT::Tracking::IKtTracker
{
public:
    void Track(const Velkor::KT::Tracking::Event& event) override
    {
        if (event.name.empty())
        {
            Fail("an event without a name was delivered:\n" + Describe({event}));
        }
        events.push_back(event);
    }

    std::vector<Velkor::KT::Tracking::Event> events;
};

}  // namespace KtTest
