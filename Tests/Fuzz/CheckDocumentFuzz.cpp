// kttrack check's reading of a document: the kind is told by the root, the document is read as
// the application reads it, validated against its schema and its rules checked, alone and
// against the shipped documents of the other kinds. Every document it cannot use must come with
// at least one error.

#include "FuzzTarget.h"

#include "Report.h"
#include "RuleChecks.h"
#include "RuleDocument.h"
#include "Schemas.h"

#include "Tracking/Config/ConfigLoader.h"

#include <memory>
#include <sstream>

namespace
{

namespace KtTrack = Velkor::KT::KtTrack;

struct Shipped
{
    Shipped()
    {
        std::ostringstream ignored;
        KtTrack::Report report(ignored);
        main = Read("Config.xml", report);
        filter = Read("FilterConfig.xml", report);
        aggregator = Read("AggregatorConfig.xml", report);
        if (report.Errors() > 0 || !main || !filter || !aggregator)
        {
            KtFuzz::Fail("the shipped documents do not read:\n" + ignored.str());
        }
    }

    std::unique_ptr<KtTrack::RuleDocument> Read(const char* name, KtTrack::Report& report)
    {
        const std::string text =
            Velkor::KT::Tracking::LoadConfigFromQrc(std::string("/KT/Tracking/") + name);
        return KtTrack::ParseRuleDocument(name, text, schemas, report);
    }

    KtTrack::Schemas schemas;
    std::unique_ptr<KtTrack::RuleDocument> main;
    std::unique_ptr<KtTrack::RuleDocument> filter;
    std::unique_ptr<KtTrack::RuleDocument> aggregator;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    KtFuzz::InitProcess();
    static Shipped* const shipped = new Shipped();

    std::ostringstream findings;
    KtTrack::Report report(findings);
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::unique_ptr<KtTrack::RuleDocument> document =
        KtTrack::ParseRuleDocument("input.xml", text, shipped->schemas, report);
    if (document && !KtTrack::ValidateRuleDocument(*document, shipped->schemas, report))
    {
        document.reset();
    }
    if (!document)
    {
        if (report.Errors() == 0)
        {
            KtFuzz::Fail("a document was not used, without an error:\n" + findings.str());
        }
        return 0;
    }
    switch (document->kind)
    {
        case KtTrack::DocumentKind::Main:
            KtTrack::CrossCheck(*document, shipped->filter.get(), shipped->aggregator.get(),
                                report);
            break;
        case KtTrack::DocumentKind::Filter:
            KtTrack::CheckFilterRanges(*document, report);
            KtTrack::CrossCheck(*shipped->main, document.get(), shipped->aggregator.get(), report);
            break;
        case KtTrack::DocumentKind::Aggregator:
            KtTrack::CheckAggregatorRoles(*document, report);
            KtTrack::CrossCheck(*shipped->main, shipped->filter.get(), document.get(), report);
            break;
    }
    return 0;
}
