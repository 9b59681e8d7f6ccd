// kttrack replay's events: JSON Lines as the command reads them. What it reads must be written
// back by EventJson to a line it reads as the same event, and compare equal to itself.

#include "FuzzSupport.h"

#include "EventDiff.h"
#include "EventsJson.h"
#include "ToolError.h"

#include <QByteArray>

namespace KtTrack = Velkor::KT::KtTrack;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    KtFuzz::InitProcess();
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
        written += QByteArray::fromStdString(KtTrack::EventJson(numbered.event)) + '\n';
        read.push_back(numbered.event);
    }
    std::vector<KtFuzz::Event> reread;
    try
    {
        for (KtTrack::NumberedEvent& numbered : KtTrack::ParseEvents(written, "written"))
        {
            reread.push_back(std::move(numbered.event));
        }
    }
    catch (const KtTrack::ToolError& error)
    {
        KtFuzz::Fail(std::string("the written events do not read back: ") + error.what());
    }
    KtFuzz::ExpectSame(read, reread, "the written events read back differently");
    const std::vector<std::string> differences = KtTrack::DiffEvents(events, read, "input");
    if (!differences.empty())
    {
        KtFuzz::Fail("events differ from themselves: " + differences.front());
    }
    return 0;
}
