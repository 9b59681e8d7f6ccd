// The host's reference services: the instance registry, and the application core's launch type
// and failed sessions across sessions that share one settings file or marker directory.

#include "App/ApplicationSettingsManager.h"
#include "App/CrashTracker.h"
#include "App/LaunchTypeProcessor.h"
#include "Core/EventPublisher.h"
#include "KT/InstanceRegistry.h"
#include "KT/Scheduler.h"
#include "Module/Editing/IVECommunicationObserver.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Velkor;
using KT::InstanceRegistry;
using Velkor::App::ApplicationSettingsManager;
using Velkor::App::CrashTracker;
using Velkor::App::ILaunchTypeProcessor;
using Velkor::App::LaunchTypeProcessor;

namespace
{

// Records every notice as "+type" or "-type@index" (index of the object in the test's pool).
class NoticeLog : public KT::IInstanceRegistryObserver
{
public:
    explicit NoticeLog(std::vector<int>* pool) : m_pool(pool) {}

    void OnInstanceRegistered(const std::string& typeName) override
    {
        lines.push_back("+" + typeName);
    }
    void OnInstanceUnregistered(const std::string& typeName, void* instance) override
    {
        const auto index = static_cast<int*>(instance) - m_pool->data();
        lines.push_back("-" + typeName + "@" + std::to_string(index));
    }

    std::vector<std::string> lines;

private:
    std::vector<int>* m_pool;
};

// Steps: "+N" registers the pool's object N, "-N" unregisters it.
struct RegistrationRow
{
    const char* label;
    std::string steps;
    std::vector<int> expectedLive;
    std::vector<std::string> expectedNotices;
};
using RegistrationTest = KtTest::Table<RegistrationRow>;

TEST_P(RegistrationTest, KeepsOrderAndTellsEachChangeOnce)
{
    const RegistrationRow& row = GetParam();
    std::vector<int> pool(3);
    InstanceRegistry registry;
    NoticeLog log(&pool);
    registry.AddObserver(&log);
    for (std::size_t i = 0; i + 1 < row.steps.size(); i += 2)
    {
        int* const object = &pool[row.steps[i + 1] - '0'];
        if (row.steps[i] == '+')
        {
            registry.Register(object);
        }
        else
        {
            registry.Unregister(object);
        }
    }
    std::vector<int*> expected;
    for (int index : row.expectedLive)
    {
        expected.push_back(&pool[index]);
    }
    EXPECT_EQ(registry.Get<int>(), expected);
    EXPECT_EQ(log.lines, row.expectedNotices);
    EXPECT_TRUE(registry.DoGet("double").empty());
    registry.RemoveObserver(&log);
}

KT_ROWS(RegistrationTest,
        {{"RegistrationOrderKept", "+2+0", {2, 0}, {"+int", "+int"}},
         {"SecondRegistrationIgnored", "+1+1", {1}, {"+int"}},
         {"UnregisterTellsAddress", "+0+1-0", {1}, {"+int", "+int", "-int@0"}},
         {"UnknownUnregisterSilent", "+0-2", {0}, {"+int"}},
         {"ReRegisterGoesLast", "+0+1-0+0", {1, 0}, {"+int", "+int", "-int@0", "+int"}}});

TEST(InstanceRegistryTest, ExistsOnlyWhileAlive)
{
    EXPECT_EQ(InstanceRegistry::Instance(), nullptr);
    {
        InstanceRegistry registry;
        EXPECT_EQ(InstanceRegistry::Instance(), &registry);
        EXPECT_THROW(InstanceRegistry{}, std::logic_error);
        EXPECT_EQ(InstanceRegistry::Instance(), &registry);
    }
    EXPECT_EQ(InstanceRegistry::Instance(), nullptr);
}

// An observer that unsubscribes itself and the next observer on its first notice: neither may be
// told anything afterwards, including later in the same round.
class Unsubscriber : public KT::IInstanceRegistryObserver
{
public:
    KT::IInstanceRegistryObserver* other = nullptr;
    int notices = 0;

    void OnInstanceRegistered(const std::string&) override
    {
        ++notices;
        InstanceRegistry::Instance()->RemoveObserver(this);
        InstanceRegistry::Instance()->RemoveObserver(other);
    }
    void OnInstanceUnregistered(const std::string&, void*) override { ++notices; }
};

TEST(InstanceRegistryTest, ObserverRemovedDuringNoticeIsNotCalledAgain)
{
    InstanceRegistry registry;
    Unsubscriber first;
    Unsubscriber second;
    first.other = &second;
    registry.AddObserver(&first);
    registry.AddObserver(&second);
    registry.AddObserver(&first);  // a second add changes nothing
    KT::Scheduler scheduler;
    registry.Register<KT::IScheduler>(&scheduler);
    registry.Unregister<KT::IScheduler>(&scheduler);
    EXPECT_EQ(first.notices, 1);
    EXPECT_EQ(second.notices, 0);
}

struct LaunchRow
{
    const char* label;
    std::vector<std::string> versions;  // one session per version, in order
    std::vector<int> types;
};

using LaunchTypeProcessorTest = KtTest::Table<LaunchRow>;

TEST_P(LaunchTypeProcessorTest, ComparesWithTheVersionOfTheLastRun)
{
    QTemporaryDir directory;
    ASSERT_TRUE(directory.isValid());
    const std::string ini = directory.filePath("app.ini").toStdString();
    std::vector<int> types;
    for (const std::string& version : GetParam().versions)
    {
        // A new settings object per session: what the last one stored must be on disk.
        LaunchTypeProcessor processor(std::make_shared<ApplicationSettingsManager>(ini), version);
        types.push_back(processor.GetLaunchType());
        types.push_back(processor.GetLaunchType());
    }
    std::vector<int> expected;
    for (int type : GetParam().types)
    {
        expected.insert(expected.end(), {type, type});
    }
    EXPECT_EQ(types, expected);
}

constexpr int FIRST = ILaunchTypeProcessor::FirstStart;
constexpr int EVERY = ILaunchTypeProcessor::EveryStart;
constexpr int MINOR = ILaunchTypeProcessor::FirstStartAfterMinorUpdate;

KT_ROWS(LaunchTypeProcessorTest,
        {{"FirstThenEvery", {"3.1.0", "3.1.0", "3.1.0"}, {FIRST, EVERY, EVERY}},
         {"MinorUpdate", {"3.1.0", "3.2.0", "3.2.0"}, {FIRST, MINOR, EVERY}},
         {"MajorUpdate", {"3.1.0", "4.0.0", "4.0.0"}, {FIRST, FIRST, EVERY}},
         {"MajorPrefixIsNotMajor", {"3.1", "31.0"}, {FIRST, FIRST}}});

// Sessions in a shared marker directory: "+id" starts a session, "-id" ends it cleanly, "?id"
// starts one and takes its failed sessions, which must be the listed ones.
struct CrashRow
{
    const char* label;
    std::vector<std::string> steps;
    std::vector<std::vector<std::string>> taken;
};

using CrashTrackerTest = KtTest::Table<CrashRow>;

TEST_P(CrashTrackerTest, HandsOutEachFailedSessionOnceOldestFirst)
{
    QTemporaryDir directory;
    ASSERT_TRUE(directory.isValid());
    const std::string path = directory.filePath("crashes").toStdString();
    std::map<std::string, std::unique_ptr<CrashTracker>> running;
    std::vector<std::vector<std::string>> taken;
    for (const std::string& step : GetParam().steps)
    {
        const std::string id = step.substr(1);
        if (step[0] == '-')
        {
            running.at(id)->MarkCleanExit();
            running.erase(id);
            continue;
        }
        running[id] = std::make_unique<CrashTracker>(path, id);
        if (step[0] == '?')
        {
            taken.push_back(running[id]->TakeUnreportedFailedSessions());
            EXPECT_TRUE(running[id]->TakeUnreportedFailedSessions().empty()) << "twice " << id;
        }
    }
    EXPECT_EQ(taken, GetParam().taken);
}

KT_ROWS(CrashTrackerTest,
        {// Names sort the other way round than the sessions ran.
         {"TwoFailuresInRunOrder", {"+z.9", "+m", "+a-1", "?next"}, {{"z.9", "m", "a-1"}}},
         {"ReportedOnceAcrossSessions", {"+x", "?y", "?w", "-w"}, {{"x"}, {"y"}}},
         {"MixedWithCleanExits", {"+a", "-a", "+b", "+c", "-c", "?d"}, {{"b"}}}});

}  // namespace
