#pragma once

#include <QtGlobal>

#include <map>
#include <memory>
#include <string>

class QTemporaryDir;

namespace Velkor::KT::KtTrack
{

// The schemas of the three document kinds, carried inside the tool. Xerces loads a schema only
// from a location, so each one is written to a private temporary directory the first time it is
// asked for; the directory goes away with the object.
class Schemas
{
public:
    Schemas();
    ~Schemas();

    // A file URL of the schema named `fileName` ("KtmStat.xsd", "Filter.xsd", "Aggregator.xsd").
    // Throws ToolError when it cannot be written.
    std::string Location(const std::string& fileName);

private:
    Q_DISABLE_COPY(Schemas)
    std::unique_ptr<QTemporaryDir> m_dir;
    std::map<std::string, std::string> m_locations;
};

}  // namespace Velkor::KT::KtTrack
