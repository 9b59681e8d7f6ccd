#include "SessionPrinter.h"

#include "MachineValues.h"

#include "Tracking/Events/EventText.h"

namespace Velkor::Demo
{

SessionPrinter::SessionPrinter(std::ostream& out, bool maskMachineValues)
    : m_out(out), m_mask(maskMachineValues)
{
}

void SessionPrinter::Track(const KT::Tracking::Event& event)
{
    std::string text = KT::Tracking::EventText(event);
    if (m_mask)
    {
        text = MaskMachineValues(text);
    }
    std::lock_guard<std::mutex> lock(m_mutex);
    m_out << text << std::flush;
    m_texts.push_back(std::move(text));
}

std::vector<std::string> SessionPrinter::Texts() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_texts;
}

}  // namespace Velkor::Demo
