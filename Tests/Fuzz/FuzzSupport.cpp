#include "FuzzSupport.h"

#include "../Support/EventPrinting.h"

#include <QApplication>

#include <xercesc/util/PlatformUtils.hpp>

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <utility>

namespace KtFuzz
{

namespace
{

std::string Describe(const std::vector<Event>& events)
{
    std::ostringstream out;
    for (const Event& event : events)
    {
        out << "  ";
        Velkor::KT::Tracking::PrintTo(event, &out);
        out << '\n';
    }
    return out.str();
}

}  // namespace

void InitProcess()
{
    static const bool done = []
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        google::InitGoogleLogging("kt-fuzz");
        FLAGS_logtostderr = false;
        FLAGS_stderrthreshold = google::GLOG_FATAL;
        for (int severity = google::GLOG_INFO; severity < google::NUM_SEVERITIES; ++severity)
        {
            google::SetLogDestination(severity, "");
        }
        static int argc = 1;
        static char name[] = "kt-fuzz";
        static char* argv[] = {name, nullptr};
        // Lives as long as the process: the targets run inside it.
        new QApplication(argc, argv);
        // Kept initialised, as a host that keeps its statistics manager does; otherwise each
        // input would pay for initialising the parser again.
        xercesc::XMLPlatformUtils::Initialize();
        return true;
    }();
    (void)done;
}

void Fail(const std::string& what)
{
    std::fprintf(stderr, "kt-fuzz: %s\n", what.c_str());
    std::fflush(stderr);
    std::abort();
}

void ExpectSame(const std::vector<Event>& expected, const std::vector<Event>& actual,
                const char* what)
{
    if (expected != actual)
    {
        Fail(std::string(what) + "\nexpected:\n" + Describe(expected) + "delivered:\n" +
             Describe(actual));
    }
}

void Recorder::Track(const Event& event)
{
    if (event.name.empty())
    {
        Fail("an event without a name was delivered:\n" + Describe({event}));
    }
    events.push_back(event);
}

ErrorLines::ErrorLines(std::string prefix) : m_prefix(std::move(prefix))
{
    google::AddLogSink(this);
}

ErrorLines::~ErrorLines()
{
    google::RemoveLogSink(this);
}

void ErrorLines::send(google::LogSeverity severity, const char*, const char*, int,
                      const struct ::tm*, const char* message, size_t messageLength)
{
    if (severity == google::GLOG_ERROR &&
        std::string(message, messageLength).compare(0, m_prefix.size(), m_prefix) == 0)
    {
        ++m_count;
    }
}

}  // namespace KtFuzz
