#pragma once

// Internal: reading the document of a rule stage (filter, aggregator).

#include <glog/logging.h>

#include <ios>
#include <memory>
#include <sstream>
#include <string>

namespace Velkor::KT::Tracking
{

// Parses `text` with a root function of the configuration model, validation off. A document
// that cannot be parsed is logged ("Can't parse configuration: " and the data binding's
// description) and gives null, so the caller keeps the document it has.
template <typename Root>
std::unique_ptr<Root> ParseRuleDocument(
    const std::string& text, std::unique_ptr<Root> (*parse)(std::istream&, ::xml_schema::flags,
                                                            const ::xml_schema::properties&))
{
    try
    {
        std::stringstream stream(text, std::ios::in | std::ios::out);
        return parse(stream, ::xml_schema::flags::dont_validate, ::xml_schema::properties());
    }
    catch (const ::xml_schema::exception& error)
    {
        std::ostringstream description;
        description << error;
        LOG(ERROR) << "Can't parse configuration: " << description.str();
        return nullptr;
    }
}

}  // namespace Velkor::KT::Tracking
