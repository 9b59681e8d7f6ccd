// The application core's reference services that the statistics start-up reads: the launch type
// and the failed sessions, across sessions that share one settings file or marker directory.

#include "App/ApplicationSettingsManager.h"
#include "App/CrashTracker.h"
#include "App/LaunchTypeProcessor.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <memory>
#include <string>
#include <vector>

using Velkor::App::ApplicationSettingsManager;
using Velkor::App::CrashTracker;
using Velkor::App::ILaunchTypeProcessor;
using Velkor::App::LaunchTypeProcessor;

namespace
{

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
