// The demo host as a whole: its scripted session, run as a separate process, must print the
// recorded events, show exactly those in the viewer and hand exactly those to the analytics
// service; and the printout's masking of machine facts.

#include "MachineValues.h"
#include "Support/Table.h"

#include "Support/RecordingTracker.h"
#include "Tracking/Tracking.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <string>
#include <vector>

namespace
{

std::string ReadFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
    {
        return "<missing " + path.toStdString() + ">";
    }
    return file.readAll().toStdString();
}

// Events of a JSON Lines file as the recording stage and the analytics service write them.
std::vector<Velkor::KT::Tracking::Event> ReadJsonLines(const QString& path)
{
    std::vector<Velkor::KT::Tracking::Event> events;
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    while (!file.atEnd())
    {
        const QJsonObject line = QJsonDocument::fromJson(file.readLine()).object();
        auto& event = events.emplace_back();
        event.name = line.value("name").toString().toStdString();
        const QJsonObject params = line.value("params").toObject();
        for (auto it = params.begin(); it != params.end(); ++it)
        {
            event.params[it.key().toStdString()] = it.value().toString().toStdString();
        }
    }
    return events;
}

struct SessionRow
{
    const char* label;
    const char* variant;
    const char* expectedFile;
    // Runs under a virtual X server with the windows shown and takes a screenshot.
    bool onXServer;
    // Records the raw session: replayed through the shipped documents it delivers exactly what
    // the analytics service got, and, machine facts aside, it is the session recorded in
    // Tests/Data/DemoSessionRaw.jsonl, which the rule tools' tests replay.
    bool raw = false;
};

using DemoSessionTest = KtTest::Table<SessionRow>;

TEST_P(DemoSessionTest, PrintsViewsAndDeliversTheRecordedEvents)
{
    const SessionRow& row = GetParam();
    const QString xvfbRun = QStandardPaths::findExecutable("xvfb-run");
    if (row.onXServer && xvfbRun.isEmpty())
    {
        GTEST_SKIP() << "xvfb-run is not installed";
    }
    QTemporaryDir work;
    ASSERT_TRUE(work.isValid());
    // The data directory is given relative to the work directory, as in the recorded session.
    const QString data = work.filePath("DATA");
    const QString viewerItems = work.filePath("viewer.txt");
    const QString screenshot = work.filePath("screen.png");

    const QString raw = work.filePath("raw.jsonl");
    QStringList arguments{"--data-dir",     "DATA",      "--variant",    row.variant,
                          "--viewer-items", viewerItems, "--record-raw", raw};
    QProcess demo;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (row.onXServer)
    {
        environment.insert("QT_QPA_PLATFORM", "xcb");
        arguments << "--interactive"
                  << "--script"
                  << "--screenshot" << screenshot;
        arguments.prepend(KT_DEMO_HOST);
        arguments = QStringList{"-a", "-s", "-screen 0 1280x1024x24"} + arguments;
        demo.setProgram(xvfbRun);
    }
    else
    {
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        demo.setProgram(KT_DEMO_HOST);
    }
    demo.setProcessEnvironment(environment);
    demo.setWorkingDirectory(work.path());
    demo.setArguments(arguments);
    demo.start();
    ASSERT_TRUE(demo.waitForFinished(240000)) << "the demo did not end";
    const std::string errors = demo.readAllStandardError().toStdString();
    ASSERT_EQ(demo.exitStatus(), QProcess::NormalExit) << errors;
    ASSERT_EQ(demo.exitCode(), 0) << errors;

    const std::string printout = demo.readAllStandardOutput().toStdString();
    EXPECT_EQ(printout, ReadFile(QString(KT_DEMO_DATA "/") + row.expectedFile));

    // The viewer holds the same events, in the same order, nothing more.
    EXPECT_EQ(ReadFile(viewerItems), printout);

    // The analytics service got every delivered event once, in order, with real machine facts.
    QDirIterator files(data, {"*.jsonl"}, QDir::Files, QDirIterator::Subdirectories);
    ASSERT_TRUE(files.hasNext()) << "no analytics file";
    const auto analytics = ReadJsonLines(files.next());
    EXPECT_FALSE(files.hasNext()) << "a second analytics file";
    std::string analyticsText;
    for (const auto& event : analytics)
    {
        analyticsText += Velkor::Demo::MaskMachineValues(Velkor::KT::Tracking::EventText(event));
    }
    EXPECT_EQ(analyticsText, printout);
    ASSERT_FALSE(analytics.empty());
    const auto& start = analytics.front().params;
    ASSERT_TRUE(start.count("OS_NAME"));
    EXPECT_NE(start.at("OS_NAME"), Velkor::Demo::kMachineValue);

    if (row.raw)
    {
        using namespace Velkor::KT::Tracking;
        const auto delivered = std::make_shared<KtTest::RecordingTracker>();
        const auto aggregator = std::make_shared<AggregatorKtTracker>(delivered);
        aggregator->SetConfig(LoadConfigFromQrc("/KT/Tracking/AggregatorConfig.xml"));
        FilterKtTracker filter(aggregator);
        filter.SetConfig(LoadConfigFromQrc("/KT/Tracking/FilterConfig.xml"));
        const auto recorded = ReadJsonLines(KT_DEMO_DATA "/DemoSessionRaw.jsonl");
        const auto session = ReadJsonLines(raw);
        ASSERT_EQ(session.size(), recorded.size());
        for (std::size_t i = 0; i < session.size(); ++i)
        {
            filter.Track(session[i]);
            EXPECT_EQ(Velkor::Demo::MaskMachineValues(EventText(session[i])),
                      Velkor::Demo::MaskMachineValues(EventText(recorded[i])))
                << "raw event #" << i + 1;
        }
        EXPECT_EQ(delivered->Events(), analytics);
    }

    if (row.onXServer)
    {
        const QImage image(screenshot);
        ASSERT_FALSE(image.isNull()) << "no screenshot";
        EXPECT_EQ(image.size(), QSize(1280, 1024));
        EXPECT_GT(image.convertToFormat(QImage::Format_Indexed8).colorCount(), 1)
            << "the screenshot is of one colour";
    }
}

KT_ROWS(DemoSessionTest, {{"Headless", "first", "DemoSession.expected", false, true},
                          {"HeadlessSecondVariant", "second", "DemoSessionSecond.expected", false},
                          {"ShownOnXServer", "first", "DemoSession.expected", true}});

struct MaskRow
{
    const char* label;
    std::string text;
    std::string expected;
};

using MachineValuesTest = KtTest::Table<MaskRow>;

TEST_P(MachineValuesTest, MasksOnlyMachineFacts)
{
    EXPECT_EQ(Velkor::Demo::MaskMachineValues(GetParam().text), GetParam().expected);
}

// Session values, and keys or names that only look like machine facts, stay as they are.
KT_ROWS(MachineValuesTest,
        {{"LookalikesKept",
          "OS_NAME=x\n\tAPP_LANGUAGE=de\n\tMONITOR_RECT=x\n\tXCPU_NAME=y\n\tPRIMARY_MONITOR=1\n"
          "\tMONITOR2_RECT_OLD=x\n",
          "OS_NAME=x\n\tAPP_LANGUAGE=de\n\tMONITOR_RECT=x\n\tXCPU_NAME=y\n\tPRIMARY_MONITOR=1\n"
          "\tMONITOR2_RECT_OLD=x\n"},
         {"ValueWithEqualsSign", "S\n\tCPU_NAME=a=b\n", "S\n\tCPU_NAME=<machine>\n"},
         {"AnyMonitorNumber", "S\n\tMONITOR12_RECT=0,0,1,1\n\tMONITORS_COUNT=12\n",
          "S\n\tMONITOR12_RECT=<machine>\n\tMONITORS_COUNT=<machine>\n"},
         {"EmptyValueMasked", "S\n\tNVENC_ENABLED=\n", "S\n\tNVENC_ENABLED=<machine>\n"}});

}  // namespace
