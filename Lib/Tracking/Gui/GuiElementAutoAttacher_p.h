#pragma once

#include <QObject>

#include <functional>

class QEvent;
class QWidget;

namespace Velkor::KT::Tracking
{

// An application-wide event filter that hands every window not attached yet to `attach` when it
// gets its native window (QEvent::WinIdChange). Installs itself when the application object
// exists, and removes itself when destroyed. Never consumes an event.
class GuiElementAutoAttacher : public QObject
{
public:
    using Attach = std::function<void(QWidget* window)>;

    explicit GuiElementAutoAttacher(Attach attach);
    ~GuiElementAutoAttacher() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Q_DISABLE_COPY(GuiElementAutoAttacher)
    const Attach m_attach;
};

}  // namespace Velkor::KT::Tracking
