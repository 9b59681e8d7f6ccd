#pragma once

#include <QObject>

class QEvent;

namespace Velkor::KT::Tracking
{

class GuiHandler;

// An application-wide event filter that attaches every window not attached yet when it gets its
// native window (QEvent::WinIdChange). Installs itself when the application object exists, and
// removes itself when destroyed. Never consumes an event.
class GuiElementAutoAttacher : public QObject
{
public:
    explicit GuiElementAutoAttacher(GuiHandler* handler);
    ~GuiElementAutoAttacher() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Q_DISABLE_COPY(GuiElementAutoAttacher)
    GuiHandler* const m_handler;
};

}  // namespace Velkor::KT::Tracking
