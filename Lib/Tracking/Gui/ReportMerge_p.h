#pragma once

#include "Tracking/Gui/AttachReport.h"

#include <QString>

namespace Velkor::KT::Tracking::Gui
{

// The reports of several attaches with the same section as one: each entry with the matches of
// all of them, in the order of the attaches, and each problem once.
class ReportMerge
{
public:
    void Add(const AttachReport& report);

    int Count() const { return m_count; }
    // The merged report, attached to `attachedTo`.
    AttachReport Result(const QString& attachedTo) const;

private:
    QVector<AttachReport::Entry> m_entries;
    int m_count = 0;
};

// How the attach of all top-level windows is named in reports: "3 top-level windows and 12
// actions".
QString AllWindowsName(int windows, int actions);

}  // namespace Velkor::KT::Tracking::Gui
