#pragma once

// Stand-ins for the application core's launch-type processor and crash tracker, for tests that
// need a given launch or given failed sessions without the reference implementations' files.

#include "App/ICrashTracker.h"
#include "App/ILaunchTypeProcessor.h"

#include <string>
#include <utility>
#include <vector>

namespace KtTest
{

class FixedLaunchType : public Velkor::App::ILaunchTypeProcessor
{
public:
    explicit FixedLaunchType(int type) : m_type(type) {}
    int GetLaunchType() const override { return m_type; }

private:
    const int m_type;
};

// Hands out its sessions once, as a crash tracker does.
class ListCrashTracker : public Velkor::App::ICrashTracker
{
public:
    explicit ListCrashTracker(std::vector<std::string> sessions) : m_sessions(std::move(sessions))
    {
    }
    std::vector<std::string> TakeUnreportedFailedSessions() override
    {
        return std::exchange(m_sessions, {});
    }

private:
    std::vector<std::string> m_sessions;
};

}  // namespace KtTest
