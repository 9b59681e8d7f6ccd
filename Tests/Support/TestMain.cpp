#include <glog/logging.h>
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }

    testing::InitGoogleTest(&argc, argv);

    google::InitGoogleLogging(argv[0]);
    // Log lines go to the sinks the tests install and, from warnings up, to stderr; no files.
    FLAGS_logtostderr = false;
    FLAGS_stderrthreshold = google::GLOG_WARNING;
    for (int severity = google::GLOG_INFO; severity < google::NUM_SEVERITIES; ++severity)
    {
        google::SetLogDestination(severity, "");
    }

    QApplication application(argc, argv);
    const int result = RUN_ALL_TESTS();
    google::ShutdownGoogleLogging();
    return result;
}
