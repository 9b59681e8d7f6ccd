#include "Schemas.h"

#include "ToolError.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

// Resources of a static library are registered by hand, outside any namespace.
static void InitSchemaResources()
{
    Q_INIT_RESOURCE(Schemas);
}

namespace Velkor::KT::KtTrack
{

Schemas::Schemas()
{
    InitSchemaResources();
}

Schemas::~Schemas() = default;

std::string Schemas::Location(const std::string& fileName)
{
    const auto known = m_locations.find(fileName);
    if (known != m_locations.end())
    {
        return known->second;
    }
    if (!m_dir)
    {
        m_dir = std::make_unique<QTemporaryDir>();
        if (!m_dir->isValid())
        {
            const std::string reason = m_dir->errorString().toStdString();
            m_dir.reset();
            throw ToolError("cannot create a directory for the schemas: " + reason);
        }
    }
    const QString name = QString::fromStdString(fileName);
    QFile resource(QStringLiteral(":/KtTrack/Schemas/") + name);
    if (!resource.open(QIODevice::ReadOnly))
    {
        throw ToolError("no schema " + fileName + " in the tool");
    }
    const QString path = m_dir->filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(resource.readAll()) != resource.size())
    {
        throw ToolError("cannot write the schema " + path.toStdString() + ": " +
                        file.errorString().toStdString());
    }
    file.close();
    const std::string location =
        QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded).toStdString();
    m_locations.emplace(fileName, location);
    return location;
}

}  // namespace Velkor::KT::KtTrack
