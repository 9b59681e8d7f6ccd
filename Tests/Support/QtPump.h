#pragma once

#include <chrono>
#include <functional>

namespace KtTest
{

// Delivers every event already posted to the GUI thread, including functions queued for it.
void Pump();

// Runs the event loop until `done` holds or `timeout` passes; returns whether it holds.
bool PumpUntil(const std::function<bool()>& done,
               std::chrono::milliseconds timeout = std::chrono::seconds(60));

// Performs deferred deletions (QObject::deleteLater) now.
void RunDeferredDeletes();

}  // namespace KtTest
