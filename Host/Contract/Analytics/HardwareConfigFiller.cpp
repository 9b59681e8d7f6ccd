#include "Analytics/HardwareConfigFiller.h"

#include <QFile>
#include <QSettings>
#include <QString>
#include <QSysInfo>

#include <thread>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace Velkor::Analytics
{

namespace
{

const std::string UNKNOWN = "UNKNOWN";

#ifdef Q_OS_LINUX
// The value of the first line "<key> : <value>" of a /proc text file whose key is one of keys.
QString ProcValue(const char* path, std::initializer_list<const char*> keys)
{
    QFile file(QString::fromLatin1(path));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
    {
        return QString();
    }
    for (const QByteArray& line : file.readAll().split('\n'))
    {
        const int colon = line.indexOf(':');
        if (colon < 0)
        {
            continue;
        }
        const QByteArray key = line.left(colon).trimmed();
        for (const char* wanted : keys)
        {
            if (key == wanted)
            {
                return QString::fromUtf8(line.mid(colon + 1).trimmed());
            }
        }
    }
    return QString();
}
#endif

std::string CpuName()
{
    QString name;
#if defined(Q_OS_WIN)
    QSettings processor(
        QStringLiteral("HKEY_LOCAL_MACHINE\\HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0"),
        QSettings::NativeFormat);
    name = processor.value(QStringLiteral("ProcessorNameString")).toString();
#elif defined(Q_OS_LINUX)
    // x86 names the model; other architectures name the processor or the board instead.
    name = ProcValue("/proc/cpuinfo", {"model name", "Processor", "cpu model", "Hardware"});
#endif
    name = name.simplified();
    return name.isEmpty() ? UNKNOWN : name.toStdString();
}

std::string RamTotalMb()
{
#if defined(Q_OS_WIN)
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    if (GlobalMemoryStatusEx(&status))
    {
        return std::to_string(status.ullTotalPhys / (1024 * 1024));
    }
#elif defined(Q_OS_LINUX)
    // "MemTotal:       24684096 kB"
    const QString total = ProcValue("/proc/meminfo", {"MemTotal"});
    bool ok = false;
    const qulonglong kib = total.section(QLatin1Char(' '), 0, 0).toULongLong(&ok);
    if (ok && kib > 0)
    {
        return std::to_string(kib / 1024);
    }
#endif
    return UNKNOWN;
}

}  // namespace

void HardwareConfigFiller::Fill(std::map<std::string, std::string>& params)
{
    params["CPU_NAME"] = CpuName();
    const QString architecture = QSysInfo::currentCpuArchitecture();
    params["CPU_ARCHITECTURE"] = architecture.isEmpty() ? UNKNOWN : architecture.toStdString();
    const unsigned cores = std::thread::hardware_concurrency();
    params["CPU_CORES"] = cores > 0 ? std::to_string(cores) : UNKNOWN;
    params["RAM_TOTAL_MB"] = RamTotalMb();
}

}  // namespace Velkor::Analytics
