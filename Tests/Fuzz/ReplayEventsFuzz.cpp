// kttrack replay's events: JSON Lines as the command reads them. What it reads must be written
// back by Tracking::EventJson to a line it reads as the same event, and compare equal to itself.
// The input's bytes, taken as an event's name and value, must be written as a line that reads
// back, as the same event when they are UTF-8.

#include "FuzzTarget.h"

#include "EventDiff.h"
#include "EventsJson.h"
#include "ToolError.h"

#include "Tracking/Events/EventJson.h"

#include <QByteArray>
#include <QString>

namespace KtTrack = Velkor::KT::KtTrack;

namespace
{

std::vector<KtFuzz::Event> ReadBack(const QByteArray& lines)
{
    std::vector<KtFuzz::Event> events;
    try
    {
        for (KtTrack::NumberedEvent& numbered : KtTrack::ParseEvents(lines, "written"))
        {
            events.push_back(std::move(numbered.event));
        }
    }
    catch (const KtTrack::ToolError& error)
    {
        KtFuzz::Fail(std::string("the written events do not read back: ") + error.what() + "\n" +
                     lines.toStdString());
    }
    return events;
}

void CheckWritten(const std::string& bytes)
{
    const KtFuzz::Event event{"N" + bytes, {{"K", bytes}}};
    const QByteArray line =
        QByteArray::fromStdString(Velkor::KT::Tracking::EventJson(event)) + '\n';
    const std::vector<KtFuzz::Event> read = ReadBack(line);
    const QByteArray utf8 = QByteArray::fromStdString(bytes);
    if (QString::fromUtf8(utf8).toUtf8() == utf8)
    {
        KtFuzz::ExpectSame({event}, read, "UTF-8 text was not written as it is");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    KtFuzz::InitProcess();
    CheckWritten(std::string(reinterpret_cast<const char*>(data), size));
    std::vector<KtTrack::NumberedEvent> events;
    try
    {
        events = KtTrack::ParseEvents(
            QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)), "input");
    }
    catch (const KtTrack::ToolError&)
    {
        return 0;
    }

    QByteArray written;
    std::vector<KtFuzz::Event> read;
    for (const KtTrack::NumberedEvent& numbered : events)
    {
        written +=
            QByteArray::fromStdString(Velkor::KT::Tracking::EventJson(numbered.event)) + '\n';
        read.push_back(numbered.event);
    }
    const std::vector<KtFuzz::Event> reread = ReadBack(written);
    KtFuzz::ExpectSame(read, reread, "the written events read back differently");
    const std::vector<std::string> differences = KtTrack::DiffEvents(events, read, "input");
    if (!differences.empty())
    {
        KtFuzz::Fail("events differ from themselves: " + differences.front());
    }
    return 0;
}
