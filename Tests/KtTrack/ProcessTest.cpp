// The kttrack executable: its exit statuses.

#include "KtTrackRun.h"

#include <QProcess>
#include <QStringList>

using namespace KtTrackTest;

namespace
{

// ---- the executable --------------------------------------------------------------------------

struct ProcessRow
{
    const char* label;
    std::vector<std::string> args;  // "@" is replaced by the shipped documents' directory
    int code;
};

using ProcessTest = KtTest::Table<ProcessRow>;

TEST_P(ProcessTest, ExitStatus)
{
    QStringList args;
    for (std::string arg : GetParam().args)
    {
        if (arg.rfind("@", 0) == 0)
        {
            arg = kConfigDir + arg.substr(1);
        }
        args << QString::fromStdString(arg);
    }
    QProcess process;
    process.start(QStringLiteral(KTTRACK_PATH), args);
    process.closeWriteChannel();
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), GetParam().code) << process.readAllStandardError().toStdString();
}

KT_ROWS(ProcessTest,
        {{"Help", {"--help"}, 0},
         {"NoCommand", {}, 2},
         {"UnknownCommand", {"fly"}, 2},
         {"ReplayEmptyInput", {"replay", "-"}, 0},
         {"ReplayMissingFile", {"replay", "/nonexistent.jsonl"}, 2},
         {"ReplayWrongKindOfDocument", {"replay", "--filter", "@/AggregatorConfig.xml", "-"}, 2},
         {"CheckMissingFile", {"check", "/nonexistent.xml"}, 2},
         {"ReplayLineWithoutExplain", {"replay", "--line", "2", "-"}, 2},
         {"CoverageNoSession", {"coverage", "@/FilterConfig.xml"}, 2},
         {"CoverageMainDocument", {"coverage", "@/Config.xml", "-"}, 2},
         {"CoverageRequireAllUnfired", {"coverage", "--require-all", "@/FilterConfig.xml", "-"}, 1},
         {"DiffNoNewRules", {"diff", "--old", "@/FilterConfig.xml", "-"}, 2},
         {"MatchFilterDocument", {"match", "@/FilterConfig.xml", "-"}, 2},
         {"MatchWithoutTree", {"match", "@/Config.xml"}, 2}});

}  // namespace
