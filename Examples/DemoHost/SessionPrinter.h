#pragma once

#include "Tracking/Events/IKtTrackingEndpoint.h"

#include <cstddef>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

namespace Velkor::Demo
{

// A delivery endpoint that writes every event it receives in the viewer's text form, as it
// arrives, and keeps the texts. With `maskMachineValues` the machine facts are shown as
// "<machine>" (see MachineValues.h), so the printout is the same on every machine.
class SessionPrinter : public KT::Tracking::IKtTrackingEndpoint
{
public:
    SessionPrinter(std::ostream& out, bool maskMachineValues);

    void Track(const KT::Tracking::Event& event) override;

    std::vector<std::string> Texts() const;

private:
    std::ostream& m_out;
    const bool m_mask;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_texts;
};

}  // namespace Velkor::Demo
