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

// The screen's physical and logical dots per inch. Qt 5 gives the platform's own, unless the
// host turns the toolkit's scaling on. Qt 6 always scales, and QScreen then gives them in its
// device-independent pixels: a logical 96 on a screen of 120, a physical dpi divided by the
// scale. So under Qt 6 they are read from the platform screen, in device pixels as the
// rectangle is, and a machine reports the same facts to a Qt 5 and a Qt 6 host.
double PhysicalDpi(QScreen* screen)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    if (const QPlatformScreen* platformScreen = screen->handle())
    {
        const QSizeF millimetres = platformScreen->physicalSize();
        const QSize pixels = platformScreen->geometry().size();
        if (millimetres.width() > 0 && millimetres.height() > 0)
        {
            return (pixels.width() / millimetres.width() + pixels.height() / millimetres.height()) *
                   25.4 * 0.5;
        }
    }
#endif
    return screen->physicalDotsPerInch();
}

double LogicalDpi(QScreen* screen)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    if (const QPlatformScreen* platformScreen = screen->handle())
    {
        const QDpi dpi = platformScreen->logicalDpi();
        return (dpi.first + dpi.second) * 0.5;
    }
#endif
    return screen->logicalDotsPerInch();
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
        params[prefix + "_PHYSICAL_DPI"] = FormatDpi(PhysicalDpi(screen));
        params[prefix + "_LOGICAL_DPI"] = FormatDpi(LogicalDpi(screen));
    }
}

}  // namespace Velkor::KT::Tracking::Fillers
