#pragma once

namespace Velkor::KT::KtTrack
{

class Report;
struct RuleDocument;

// Warns, at the line of each entry of a main document's gui section, of what the section shows
// by itself to be wrong: the checks the library's attach report makes before it searches any
// object (malformed signal texts, signal triggers that do not fit their slot or element,
// propertyValue without propertyName, invalid regular expressions, empty id segments, entries
// that repeat another).
void CheckGuiSection(const RuleDocument& main, Report& report);

}  // namespace Velkor::KT::KtTrack
