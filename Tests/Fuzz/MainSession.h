#pragma once

// A host session for the main document targets: a small window tree, the reference services and
// settings objects in a registry, a chain of a filter and an aggregator stage without documents
// (they pass everything on but events without a name), and a StatisticsManager over them.

#include "FuzzTarget.h"
#include "Support/LogCapture.h"

#include <optional>
#include <string>
#include <vector>

namespace KtFuzz
{

struct SessionOutcome
{
    // Per round: whether the manager logged "Can't read configuration: ".
    std::vector<bool> refused;
    std::vector<Event> delivered;
};

// Builds the services and the manager; then for each round reads its document when it has one
// (SetConfig), adds a new set of windows, attaches all windows and services, and works every
// widget of every set, every signal, service and setting once; then destroys the manager, the
// services and the windows.
SessionOutcome RunSession(const std::vector<std::optional<std::string>>& rounds);

// A main document for every object of the session.
extern const char* const kSessionDocument;

}  // namespace KtFuzz
