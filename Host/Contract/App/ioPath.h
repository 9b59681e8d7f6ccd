#pragma once

#include "HostExport.h"

#include <QString>

#include <string>

namespace Velkor::App
{

// A file-system path as the application core passes it around. It keeps the path as Qt text
// with '/' separators and converts to the encodings its users need.
class KT_HOST_EXPORT ioPath
{
public:
    ioPath() = default;
    explicit ioPath(const QString& path);
    explicit ioPath(const std::string& utf8Path);
    explicit ioPath(const char* utf8Path);

    bool IsEmpty() const;
    QString ToQString() const;
    std::string ToUtf8() const;

    // The path of an entry of this directory.
    ioPath operator/(const QString& name) const;

    friend bool operator==(const ioPath& lhs, const ioPath& rhs)
    {
        return lhs.m_path == rhs.m_path;
    }
    friend bool operator!=(const ioPath& lhs, const ioPath& rhs) { return !(lhs == rhs); }

private:
    QString m_path;
};

}  // namespace Velkor::App
