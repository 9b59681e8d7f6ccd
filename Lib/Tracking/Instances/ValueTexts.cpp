#include "Tracking/Instances/ValueTexts_p.h"

#include <QRect>
#include <QSize>

#include <initializer_list>
#include <utility>

namespace Velkor::KT::Tracking
{

namespace
{

const char* const kUnknown = "UNKNOWN";

// The text of `value` in a table numbered from 0.
std::string Numbered(int value, std::initializer_list<const char*> texts,
                     const char* other = kUnknown)
{
    if (value < 0 || static_cast<std::size_t>(value) >= texts.size())
    {
        return other;
    }
    return *(texts.begin() + value);
}

}  // namespace

std::string BoolText(bool value)
{
    return value ? "YES" : "NO";
}

std::string FlagText(const QVariantList& values)
{
    if (values.size() != 1)
    {
        return "YES";
    }
    return BoolText(values.front().toBool());
}

std::string TriStateText(int value)
{
    return Numbered(value, {"NO", "YES"});
}

std::string CodecText(int value)
{
    return Numbered(value, {"CODEC_ID_H264", "CODEC_ID_MJPEG", "CODEC_ID_VP8"});
}

std::string AudioQualityText(int value)
{
    return Numbered(
        value, {"11 kHz, mono, 16-bit", "11 kHz, stereo, 16-bit", "22.05 kHz, mono, 16-bit",
                "22.05 kHz, stereo, 16-bit", "44.1 kHz, mono, 16-bit", "44.1 kHz, stereo, 16-bit",
                "48 kHz, mono, 16-bit", "48 kHz, stereo, 16-bit", "96 kHz, mono, 16-bit",
                "96 kHz, stereo, 16-bit"});
}

std::string DeviceTypeText(int value)
{
    static const std::pair<int, const char*> kTable[] = {
        {0x1001, "SCREEN"},     {0x1002, "WINDOW"}, {0x1004, "WEBCAMERA"},
        {0x2010, "MICROPHONE"}, {0x2020, "SYSTEM"}, {0x2040, "SOUNDFLOWER"},
    };
    for (const auto& [type, text] : kTable)
    {
        if (type == value)
        {
            return text;
        }
    }
    return kUnknown;
}

std::string EncoderPresetText(int value)
{
    return Numbered(value, {"UltraFast", "SuperFast", "VeryFast", "Faster", "Fast", "Medium"});
}

std::string BitrateTypeText(int value)
{
    return Numbered(value, {"CBR", "VBR", "ABR"});
}

std::string AccelerationText(int value)
{
    return Numbered(value, {"NO", "LOSSLESS", "IMHW", "IMSW", "NVENC", "AMF"});
}

std::string CaptureTypeText(int value)
{
    return Numbered(value, {"RECORDING", "STREAMING"});
}

std::string CaptureMethodText(int value)
{
    return Numbered(value, {"DEFAULT", "DIRECTX", "GDI"});
}

std::string CaptureModeText(int value)
{
    return Numbered(value, {"GAME", "DESKTOP"});
}

std::string FrameScaleText(int value)
{
    return Numbered(value, {"FULL_SIZE", "1/2_SIZE", "1/4_SIZE"});
}

std::string PipShapeText(int value)
{
    return Numbered(value, {"ORIGINAL", "ROUNDED_RECT", "CIRCLE"});
}

std::string OverlayPositionText(int value)
{
    return Numbered(value, {"UPPER_LEFT", "UPPER_RIGHT", "LOWER_LEFT", "LOWER_RIGHT"}, "NONE");
}

std::string PipPositionText(int value)
{
    return Numbered(value, {"UPPER_RIGHT", "LOWER_RIGHT", "LOWER_LEFT", "UPPER_LEFT", "TOP",
                            "BOTTOM", "CENTER"});
}

std::string DrawingTypeText(int value)
{
    return Numbered(value, {"TexturesInAllGames", "Backbuffer"}, "NONE");
}

std::string KeystrokesText(int value)
{
    return Numbered(value, {"NO", "ALL", "HOT"});
}

std::string FinishActionText(int value)
{
    // "SHOTDOWN" is what the back end expects.
    return Numbered(value, {"NOTHING", "SLEEP", "SHOTDOWN"});
}

std::string ScreenshotDestinationText(int value)
{
    return Numbered(value, {"DISK", "CLIPBOARD"});
}

std::string ConversionResultText(int value)
{
    return Numbered(value, {"SUCCESS", "CANCELED", "INVALID_DIR", "PROCESSING_ERROR"});
}

std::string SharingTargetText(int value)
{
    return Numbered(value,
                    {"VELKOR_CLOUD", "WHATSAPP", "TELEGRAM", "MAILTO", "YOUTUBE", "GOOGLE_DRIVE"});
}

std::string SlideActionText(int value)
{
    return Numbered(value, {"CLOSE", "NEXT", "BACK", "REPEAT", "FINISH"});
}

std::string RectText(const QRect& rect)
{
    return std::to_string(rect.left()) + "," + std::to_string(rect.top()) + ":" +
           std::to_string(rect.width()) + "x" + std::to_string(rect.height());
}

std::string SizeText(const QSize& size)
{
    return std::to_string(size.width()) + "x" + std::to_string(size.height());
}

}  // namespace Velkor::KT::Tracking
