#include "Tracking/Fillers/MonitorsConfigFiller_p.h"

#include <qpa/qplatformscreen.h>
#include <QGuiApplication>
#include <QRect>
#include <QScreen>

#include <algorithm>
#include <cstdio>

namespace Velkor::KT::Tracking::Fillers
{

namespace
{

// The screen's geometry as the platform reports it, in device pixels; QScreen::geometry() is
// in the toolkit's scaled (device-independent) pixels.
QRect NativeGeometry(QScreen* screen)
{
    if (const QPlatformScreen* platformScreen = screen->handle())
    {
        return platformScreen->geometry();
    }
    const QRect logical = screen->geometry();
    const qreal ratio = screen->devicePixelRatio();
    return QRect(logical.topLeft(), logical.size() * ratio);
}

std::string FormatRect(const QRect& rect)
{
    return std::to_string(rect.x()) + ',' + std::to_string(rect.y()) + ',' +
           std::to_string(rect.width()) + ',' + std::to_string(rect.height());
}

}  // namespace

std::string MonitorsConfigFiller::FormatDpi(double dpi)
{
    char text[64];
    const int length = std::snprintf(text, sizeof(text), "%f", dpi);
    std::string result(text, static_cast<size_t>(std::clamp(length, 0, int(sizeof(text)) - 1)));
    // "%f" follows the C library's locale, which may use a decimal comma.
    std::replace(result.begin(), result.end(), ',', '.');
    return result;
}

void MonitorsConfigFiller::Fill(std::map<std::string, std::string>& params)
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    params["MONITORS_COUNT"] = std::to_string(screens.size());
    params["PRIMARY_MONITOR"] = "1";
    int number = 0;
    for (QScreen* screen : screens)
    {
        const std::string prefix = "MONITOR" + std::to_string(++number);
        params[prefix + "_RECT"] = FormatRect(NativeGeometry(screen));
        params[prefix + "_PHYSICAL_DPI"] = FormatDpi(screen->physicalDotsPerInch());
        params[prefix + "_LOGICAL_DPI"] = FormatDpi(screen->logicalDotsPerInch());
    }
}

}  // namespace Velkor::KT::Tracking::Fillers
