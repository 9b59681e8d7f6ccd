#include "Analytics/OSConfigFiller.h"

#include <QLocale>
#include <QString>
#include <QSysInfo>

#ifdef Q_OS_UNIX
#include <sys/utsname.h>
#endif

namespace Velkor::Analytics
{

namespace
{

std::string OrUnknown(const QString& text)
{
    const QString trimmed = text.trimmed();
    return trimmed.isEmpty() || trimmed == QLatin1String("unknown") ? std::string("UNKNOWN")
                                                                    : trimmed.toStdString();
}

QString Kernel()
{
#ifdef Q_OS_UNIX
    utsname names{};
    if (uname(&names) == 0)
    {
        return QString::fromLocal8Bit(names.sysname).toLower() + QLatin1Char(' ') +
               QString::fromLocal8Bit(names.release);
    }
#endif
    return QSysInfo::kernelType() + QLatin1Char(' ') + QSysInfo::kernelVersion();
}

}  // namespace

void OSConfigFiller::Fill(std::map<std::string, std::string>& params)
{
    params["OS_NAME"] = OrUnknown(QSysInfo::prettyProductName());
    params["OS_VERSION"] = OrUnknown(QSysInfo::productVersion());
    params["OS_KERNEL"] = OrUnknown(Kernel());
    // The architecture of the running system, not the one the application was built for.
    params["OS_BITS"] =
        QSysInfo::currentCpuArchitecture().contains(QLatin1String("64")) ? "64" : "32";
    params["OS_LANGUAGE"] = OrUnknown(QLocale::system().name());
}

}  // namespace Velkor::Analytics
