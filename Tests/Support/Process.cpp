#include "Support/Process.h"

namespace KtTest
{

std::unique_ptr<QApplication> StartProcess(int& argc, char** argv,
                                           google::LogSeverity stderrThreshold)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    google::InitGoogleLogging(argv[0]);
    FLAGS_logtostderr = false;
    FLAGS_stderrthreshold = stderrThreshold;
    for (int severity = google::GLOG_INFO; severity < google::NUM_SEVERITIES; ++severity)
    {
        google::SetLogDestination(severity, "");
    }
    return std::make_unique<QApplication>(argc, argv);
}

}  // namespace KtTest
