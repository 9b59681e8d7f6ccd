#pragma once

#include <functional>

namespace Velkor::Demo
{

class HostServices;
class MainWindow;
class Recorder;
class SimulatedClock;

// A user's session with the recorder, played through the real widgets with synthetic mouse
// and keyboard input: recordings started from the main window, the tray menu and a hot key,
// paused, stopped, saved and cancelled; settings changed; screenshots taken; a file shared;
// dialogs opened and closed. Between steps the simulated clock moves on and the event loop
// runs until every queued command is done.
class SessionScript
{
public:
    // `stepDelayMs` is a pause after every step, so that a person can follow the session.
    SessionScript(MainWindow& window, Recorder& recorder, SimulatedClock& clock,
                  HostServices& services, int stepDelayMs);

    // Plays the session; calls `beforeQuit` right before the last step, which quits the
    // application from its menu.
    void Play(const std::function<void()>& beforeQuit);

private:
    void Settle();
    void Wait(int seconds);

    MainWindow& m_window;
    Recorder& m_recorder;
    SimulatedClock& m_clock;
    HostServices& m_services;
    const int m_stepDelayMs;
};

}  // namespace Velkor::Demo
