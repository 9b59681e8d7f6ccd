#pragma once

// The files events[.N].jsonl of a data directory, as the durable append writes them.

#include <gtest/gtest.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QString>

#include <map>
#include <string>
#include <vector>

namespace KtTest
{

struct StoredFiles
{
    std::vector<std::string> lines;  // oldest first
    std::vector<qint64> fileSizes;   // oldest first
    int files = 0;                   // every *.jsonl file of the directory
    bool allEndInNewline = true;
};

// With `shifting`, events.jsonl is the newest file and a larger N is older (the reference
// tracker's naming); otherwise a larger N is newer (the spool's).
inline StoredFiles ReadStoredFiles(const QString& directory, bool shifting)
{
    StoredFiles stored;
    const QRegularExpression pattern(R"(^events(?:\.(\d+))?\.jsonl$)");
    std::map<long long, QString> byAge;  // oldest first
    for (const QString& name : QDir(directory).entryList({"*.jsonl"}, QDir::Files))
    {
        ++stored.files;
        const auto match = pattern.match(name);
        if (match.hasMatch())
        {
            const long long number = match.captured(1).toLongLong();  // 0 when absent
            byAge[shifting ? -number : number] = name;
        }
    }
    for (const auto& entry : byAge)
    {
        QFile file(directory + '/' + entry.second);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << entry.second.toStdString();
        const QByteArray content = file.readAll();
        stored.fileSizes.push_back(content.size());
        stored.allEndInNewline =
            stored.allEndInNewline && (content.isEmpty() || content.endsWith('\n'));
        for (const QByteArray& line : content.split('\n'))
        {
            if (!line.isEmpty())
            {
                stored.lines.push_back(line.toStdString());
            }
        }
    }
    return stored;
}

}  // namespace KtTest
