#include "App/CrashTracker.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QString>

#include <algorithm>
#include <mutex>
#include <utility>

namespace Velkor::App
{

namespace
{

const QString MARKER_SUFFIX = QStringLiteral(".session");
const QString COUNTER_FILE = QStringLiteral("sequence");

qulonglong ReadSequence(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
    {
        return 0;
    }
    const QByteArray text = file.readAll().trimmed();
    return (text.startsWith("seq=") ? text.mid(4) : text).toULongLong();
}

bool WriteText(const QString& path, const QByteArray& text)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
}

}  // namespace

class CrashTracker::Private
{
public:
    QDir directory;
    QString ownMarker;
    std::mutex mutex;
    // Failed sessions with their sequence numbers and marker paths, oldest first.
    std::vector<std::pair<qulonglong, QString>> pendingMarkers;
};

CrashTracker::CrashTracker(const std::string& directory, const std::string& sessionId)
    : d(std::make_unique<Private>())
{
    d->directory = QDir(QString::fromStdString(directory));
    d->directory.mkpath(QStringLiteral("."));
    d->ownMarker = d->directory.filePath(QString::fromStdString(sessionId) + MARKER_SUFFIX);

    const QStringList markers =
        d->directory.entryList({QStringLiteral("*") + MARKER_SUFFIX}, QDir::Files, QDir::Name);
    for (const QString& name : markers)
    {
        const QString path = d->directory.filePath(name);
        if (path != d->ownMarker)
        {
            d->pendingMarkers.emplace_back(ReadSequence(path), path);
        }
    }
    std::stable_sort(d->pendingMarkers.begin(), d->pendingMarkers.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });

    const QString counterPath = d->directory.filePath(COUNTER_FILE);
    const qulonglong sequence = ReadSequence(counterPath) + 1;
    WriteText(counterPath, QByteArray::number(sequence));
    WriteText(d->ownMarker, "seq=" + QByteArray::number(sequence) + "\n");
}

CrashTracker::~CrashTracker() = default;

std::vector<std::string> CrashTracker::TakeUnreportedFailedSessions()
{
    std::lock_guard<std::mutex> lock(d->mutex);
    std::vector<std::string> sessions;
    for (const auto& [sequence, path] : d->pendingMarkers)
    {
        Q_UNUSED(sequence)
        QFile::remove(path);
        sessions.push_back(QFileInfo(path).completeBaseName().toStdString());
    }
    d->pendingMarkers.clear();
    return sessions;
}

void CrashTracker::MarkCleanExit()
{
    std::lock_guard<std::mutex> lock(d->mutex);
    QFile::remove(d->ownMarker);
}

}  // namespace Velkor::App
