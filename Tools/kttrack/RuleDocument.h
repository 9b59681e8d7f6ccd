#pragma once

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/Filter.h"
#include "Tracking/Config/KtmStat.h"

#include <memory>
#include <string>
#include <vector>

namespace Velkor::KT::KtTrack
{

class Report;
class Schemas;

enum class DocumentKind
{
    Main,
    Filter,
    Aggregator,
};

// "ktmstat", "filter", "aggregator".
const char* RootElementName(DocumentKind kind);
// "KtmStat.xsd", "Filter.xsd", "Aggregator.xsd".
const char* SchemaFileName(DocumentKind kind);
// "main", "filter", "aggregator".
const char* KindName(DocumentKind kind);

// A document read as the application reads it: without validation. Exactly one of the models is
// set, the one of `kind`.
struct RuleDocument
{
    std::string path;
    std::string text;
    DocumentKind kind = DocumentKind::Main;
    std::unique_ptr<Tracking::Config::KtmStat> main;
    // Main documents: the line of each entry of the gui section, in document order.
    Tracking::Config::GuiLines guiLines;
    std::unique_ptr<Tracking::Config::Filter::Filter> filter;
    std::unique_ptr<Tracking::Config::Aggregator::Aggregator> aggregator;
};

// Reads the file at `path`, tells its kind by its root element and parses it. Everything that
// stops the application from using it goes to `report` as an error at the best position known
// ("PATH:LINE:COLUMN"; a missing attribute, which the parser reports without a position, is
// located by validating against the schema). Returns null after an error.
std::unique_ptr<RuleDocument> ReadRuleDocument(const std::string& path, Schemas& schemas,
                                               Report& report);

// The same for a document already in memory; `path` only names it in messages.
std::unique_ptr<RuleDocument> ParseRuleDocument(const std::string& path, const std::string& text,
                                                Schemas& schemas, Report& report);

// Validates `document` against the schema of its kind; each violation goes to `report` as an
// error. Returns whether the document is valid.
bool ValidateRuleDocument(const RuleDocument& document, Schemas& schemas, Report& report);

}  // namespace Velkor::KT::KtTrack
