#include "Tracking/Config/ConfigLoader.h"

#include <QByteArray>
#include <QResource>
#include <QString>

namespace Velkor::KT::Tracking
{

std::string LoadConfigFromQrc(const std::string& path)
{
    const QResource resource(QString::fromUtf8(path.data(), static_cast<int>(path.size())));
    if (!resource.isValid())
    {
        return {};
    }
    // A directory has no data: it reads as empty.
    const QByteArray bytes = resource.uncompressedData();
    return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

}  // namespace Velkor::KT::Tracking
