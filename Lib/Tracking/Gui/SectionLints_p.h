#pragma once

#include "Tracking/Gui/AttachReport.h"

#include <QString>
#include <QVector>

namespace Velkor::KT::Tracking::Gui
{

class EntryTable;

// Adds `text` to the entry's problems unless it is there already; `line` is the line of the
// element it is about, 0 for the entry's own.
void AddProblem(AttachReport::Entry& entry, AttachReport::ProblemKind kind, const QString& text,
                int line = 0);

// What `times` hooks of the same triggers on one object send: "; clicked-event sends its event 2
// times" for signal connections, "; show-event still sends once (...)" for Qt event triggers,
// which reach only the first hook of an object.
QString RepeatedHooksEffect(const QStringList& triggers, int times);

// Adds a "hooked twice" problem ("'PATH' hooked N times: ..."), replacing one about the same
// object with fewer ways.
void AddHookedTwice(AttachReport::Entry& entry, const QString& text);

// Adds to each entry of `table` (listed in `entries` in the same order) the problems the section
// shows by itself, before any object is searched: empty id segments, invalid regular
// expressions, malformed signal texts, signal triggers that do not fit their slot or their
// element, `propertyValue` without `propertyName`, and entries that repeat an earlier sibling.
void AddSectionProblems(const EntryTable& table, QVector<AttachReport::Entry>& entries);

}  // namespace Velkor::KT::Tracking::Gui
