#pragma once

#include <ostream>
#include <string>

namespace Velkor::KT::KtTrack
{

// Where the findings of a check go: each one is written as a line at once and counted.
class Report
{
public:
    explicit Report(std::ostream& out) : m_out(out) {}

    // `where` is "FILE" or "FILE:LINE:COLUMN".
    void Error(const std::string& where, const std::string& message)
    {
        m_out << where << ": error: " << message << '\n';
        ++m_errors;
    }
    void Warning(const std::string& where, const std::string& message)
    {
        m_out << where << ": warning: " << message << '\n';
        ++m_warnings;
    }
    void Note(const std::string& where, const std::string& message)
    {
        m_out << where << ": note: " << message << '\n';
    }

    int Errors() const { return m_errors; }
    int Warnings() const { return m_warnings; }

private:
    std::ostream& m_out;
    int m_errors = 0;
    int m_warnings = 0;
};

}  // namespace Velkor::KT::KtTrack
