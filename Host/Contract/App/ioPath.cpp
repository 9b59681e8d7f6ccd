#include "App/ioPath.h"

#include <QDir>

namespace Velkor::App
{

ioPath::ioPath(const QString& path) : m_path(QDir::fromNativeSeparators(path)) {}

ioPath::ioPath(const std::string& utf8Path) : ioPath(QString::fromStdString(utf8Path)) {}

ioPath::ioPath(const char* utf8Path) : ioPath(QString::fromUtf8(utf8Path)) {}

bool ioPath::IsEmpty() const
{
    return m_path.isEmpty();
}

QString ioPath::ToQString() const
{
    return m_path;
}

std::string ioPath::ToUtf8() const
{
    return m_path.toStdString();
}

ioPath ioPath::operator/(const QString& name) const
{
    if (m_path.isEmpty())
    {
        return ioPath(name);
    }
    return ioPath(m_path.endsWith('/') ? m_path + name : m_path + '/' + name);
}

}  // namespace Velkor::App
