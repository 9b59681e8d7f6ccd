#include "Support/LogCapture.h"

namespace KtTest
{

LogCapture::LogCapture()
{
    google::AddLogSink(this);
}

LogCapture::~LogCapture()
{
    google::RemoveLogSink(this);
}

void LogCapture::send(google::LogSeverity severity, const char* /*fullFilename*/,
                      const char* baseFilename, int line, const struct ::tm* /*time*/,
                      const char* message, size_t messageLength)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_lines.push_back({severity, baseFilename, line, std::string(message, messageLength)});
}

std::vector<LogCapture::Line> LogCapture::Lines() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_lines;
}

std::vector<std::string> LogCapture::Messages() const
{
    std::vector<std::string> messages;
    for (const auto& line : Lines())
    {
        messages.push_back(line.message);
    }
    return messages;
}

int LogCapture::Count(google::LogSeverity severity, const std::string& prefix) const
{
    int count = 0;
    for (const auto& line : Lines())
    {
        count += line.severity == severity && line.message.compare(0, prefix.size(), prefix) == 0;
    }
    return count;
}

}  // namespace KtTest
