#pragma once

#include "App/ICrashTracker.h"
#include "HostReferenceExport.h"

#include <QtGlobal>

#include <memory>
#include <string>
#include <vector>

namespace Velkor::App
{

// Recognises failed sessions by marker files in a directory, for an application that runs one
// instance at a time: each session leaves a marker "<session id>.session" while it runs and
// removes it when it ends cleanly, so a marker of another session found at start-up belongs to
// a session that failed. Markers are ordered by the line "seq=<n>" written in them, a counter
// shared by all sessions of the directory.
class KT_HOST_REFERENCE_EXPORT CrashTracker : public ICrashTracker
{
public:
    // Collects the markers left by earlier sessions, then writes the running session's own.
    CrashTracker(const std::string& directory, const std::string& sessionId);
    ~CrashTracker() override;

    std::vector<std::string> TakeUnreportedFailedSessions() override;

    // Removes the running session's marker: the session is ending without a failure.
    void MarkCleanExit();

private:
    Q_DISABLE_COPY(CrashTracker)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::App
