#pragma once

// Main document: root "ktmstat" with the "gui" and "instances" sections. Children are read in
// schema order; reading of an element's children stops silently at the first child that is
// unknown, out of order or a second occurrence of a single child.

#include "Tracking/TrackingExport.h"

#include "Tracking/Config/KtmStat.hxx"

#include <istream>
#include <memory>
#include <vector>

namespace Velkor::KT::Tracking::Config
{

// The lines of the elements of a "gui" section that reports point at (the line where the start
// tag ends), in document order: its entries (widget, button, label, combobox, object,
// abstractPresetButton, buttonWithPopUpList and action elements), which is the order of the
// entries in the model, and the signal, intSignal and stringSignal elements in them, which is the
// order in which the model lists each entry's signals, then intSignals, then stringSignals.
struct GuiLines
{
    std::vector<int> entries;
    std::vector<int> signalTriggers;
};

// Reads a document with the root element "ktmstat" from `input`. A document type declaration is
// never accepted. Unless `flags` contain ::xml_schema::flags::dont_validate the document is also
// validated against the schema named in `properties` (no_namespace_schema_location); the
// location written in the document itself is never used. ::xml_schema::flags::keep_dom is
// ignored. Throws ::xml_schema::exception subclasses: parsing (XML errors and values that do not
// convert), unexpected_element (wrong root), expected_attribute and expected_element.
KT_TRACKING_EXPORT std::unique_ptr<KtmStat> ktmstat(
    std::istream& input, ::xml_schema::flags flags = 0,
    const ::xml_schema::properties& properties = ::xml_schema::properties());

// The same, also giving the line of each entry of the "gui" section that is read (its widget,
// button, label, combobox, object, abstractPresetButton, buttonWithPopUpList and action
// elements; the line where the start tag ends) in document order, which is the order of the
// entries in the model: for GuiHandler::SetConfig() and the attach reports.
KT_TRACKING_EXPORT std::unique_ptr<KtmStat> ktmstat(
    std::istream& input, std::vector<int>& guiEntryLines, ::xml_schema::flags flags = 0,
    const ::xml_schema::properties& properties = ::xml_schema::properties());

// The same, giving the lines of the entries and of their signal elements.
KT_TRACKING_EXPORT std::unique_ptr<KtmStat> ktmstat(
    std::istream& input, GuiLines& guiLines, ::xml_schema::flags flags = 0,
    const ::xml_schema::properties& properties = ::xml_schema::properties());

}  // namespace Velkor::KT::Tracking::Config
