#include "Analytics/RetryAfter_p.h"

#include <QLocale>

#include <algorithm>

namespace Velkor::Analytics
{

std::optional<std::chrono::milliseconds> ParseRetryAfter(const QByteArray& value,
                                                         const QDateTime& now)
{
    const QByteArray text = value.trimmed();
    if (text.isEmpty())
    {
        return std::nullopt;
    }
    if (std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }))
    {
        bool ok = false;
        const qlonglong seconds = text.size() <= 12 ? text.toLongLong(&ok) : 0;
        if (!ok)
        {
            return std::nullopt;
        }
        return std::chrono::milliseconds(seconds * 1000);
    }
    QDateTime date =
        QLocale::c().toDateTime(QString::fromLatin1(text), "ddd, dd MMM yyyy HH:mm:ss 'GMT'");
    if (!date.isValid())
    {
        return std::nullopt;
    }
    date.setTimeSpec(Qt::UTC);
    return std::chrono::milliseconds(std::max<qint64>(0, now.msecsTo(date)));
}

}  // namespace Velkor::Analytics
