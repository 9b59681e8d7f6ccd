#pragma once

#include <glog/logging.h>

#include <mutex>
#include <string>
#include <vector>

namespace KtTest
{

// Records every glog line written while it exists.
class LogCapture : public google::LogSink
{
public:
    struct Line
    {
        google::LogSeverity severity;
        std::string file;  // base name of the source file
        int line;
        std::string message;
    };

    LogCapture();
    ~LogCapture() override;

    void send(google::LogSeverity severity, const char* fullFilename, const char* baseFilename,
              int line, const struct ::tm* time, const char* message,
              size_t messageLength) override;

    std::vector<Line> Lines() const;
    std::vector<std::string> Messages() const;
    // The lines of `severity` whose message starts with `prefix`.
    int Count(google::LogSeverity severity, const std::string& prefix) const;

private:
    mutable std::mutex m_mutex;
    std::vector<Line> m_lines;
};

}  // namespace KtTest
