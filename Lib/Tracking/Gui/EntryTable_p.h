#pragma once

#include "Tracking/Gui/AttachReport.h"
#include "Tracking/Gui/SignalText_p.h"

#include <QVector>

#include <unordered_map>
#include <vector>

namespace Velkor::KT::Tracking
{

namespace Config
{
class Gui;
class Object;
class Widget;
struct GuiLines;
}  // namespace Config

namespace Gui
{

// The entries of a `gui` section in document order: each `widget` followed by the entries nested
// in it (its buttons, labels, combo boxes, widgets, objects, preset buttons and pop-up list
// buttons, in that order), then the section's actions, then its objects. The section is read in
// this fixed order, so the order is also that of the elements in the document, and the n-th line
// of the entries' lines belongs to the n-th entry (and the n-th of the signals' lines to the n-th
// signal trigger, counted through the entries in this order). Refers to the section, which must
// outlive the table.
class EntryTable
{
public:
    // A `signal`, `intSignal` or `stringSignal` of an entry, read once.
    struct SignalHook
    {
        AttachReport::Hook hook;
        // Normalised, without the code prefix.
        QByteArray signature;
        // Why Qt refuses the text (SignalText::malformed), or why its parameters do not fit the
        // trigger's slot (ParameterMismatch()); both empty when it can be connected.
        QString malformed;
        QString mismatch;

        // The line of the element; 0 when unknown.
        int line = 0;

        bool Connectable() const { return malformed.isEmpty() && mismatch.isEmpty(); }
    };

    // The triggers an entry hooks on each of its objects.
    struct Triggers
    {
        QVector<AttachReport::Hook> own;
        // Hooked only by `object` entries.
        std::vector<SignalHook> signalHooks;
    };

    // Lines that do not fit the section (another count) are left unknown.
    EntryTable(const Config::Gui& section, const Config::GuiLines& lines);

    int Count() const { return int(m_elements.size()); }
    // The position of an entry element of the section; -1 for any other element.
    int IndexOf(const Config::Object& element) const;
    const Config::Object& Element(int index) const { return *m_elements[std::size_t(index)]; }
    // The entries as the report lists them, without matches or problems.
    const QVector<AttachReport::Entry>& Entries() const { return m_entries; }
    const Triggers& TriggersOf(int index) const { return m_triggers[std::size_t(index)]; }

private:
    template <class Entry>
    int Add(const Entry& element, int parent);
    void AddWidget(const Config::Widget& widget, int parent);

    std::vector<const Config::Object*> m_elements;
    std::unordered_map<const Config::Object*, int> m_index;
    QVector<AttachReport::Entry> m_entries;
    std::vector<Triggers> m_triggers;
};

}  // namespace Gui

}  // namespace Velkor::KT::Tracking
