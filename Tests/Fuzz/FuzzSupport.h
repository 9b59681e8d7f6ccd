#pragma once

// Shared by the fuzz targets. Each target defines LLVMFuzzerTestOneInput, which libFuzzer calls
// in a fuzzing build and ReplayMain.cpp calls for stored inputs in any other build. A target
// fails by aborting (Fail), so that either of them keeps or names the input.

#include "Tracking/Events/Event.h"
#include "Tracking/Events/IKtTracker.h"

#include <glog/logging.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace KtFuzz
{

using Velkor::KT::Tracking::Event;

// Brings up what every target needs, once per process: a QApplication on the offscreen platform
// (unless another platform is asked for), glog writing to no file and no stream, only to the
// sinks the targets install, and Xerces initialised.
void InitProcess();

// Writes `what` to stderr and aborts.
[[noreturn]] void Fail(const std::string& what);

// Fails with both lists, under `what`, unless they are equal.
void ExpectSame(const std::vector<Event>& expected, const std::vector<Event>& actual,
                const char* what);

// The end of a chain: keeps what it is given, and fails on an event without a name, which no
// stage may pass on.
class Recorder : public Velkor::KT::Tracking::IKtTracker
{
public:
    void Track(const Event& event) override;

    std::vector<Event> events;
};

// Counts the error lines that start with `prefix`, written while it exists.
class ErrorLines : public google::LogSink
{
public:
    explicit ErrorLines(std::string prefix);
    ~ErrorLines() override;

    void send(google::LogSeverity severity, const char* fullFilename, const char* baseFilename,
              int line, const struct ::tm* time, const char* message,
              size_t messageLength) override;

    int Count() const { return m_count; }

private:
    const std::string m_prefix;
    int m_count = 0;
};

}  // namespace KtFuzz
