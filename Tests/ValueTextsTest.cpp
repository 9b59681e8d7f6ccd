#include "Tracking/ValueTexts.h"

#include <QRect>
#include <QSize>

#include <gtest/gtest.h>

#include <climits>
#include <ostream>
#include <string>
#include <vector>

using namespace Velkor::KT::Tracking;

namespace
{

// A table numbered from 0: every value in turn, then the values just outside and far outside.
struct NumberedRow
{
    const char* label;
    std::string (*convert)(int);
    std::vector<std::string> texts;
    std::string other;
};

void PrintTo(const NumberedRow& row, std::ostream* out)
{
    *out << row.label;
}

class NumberedTableTest : public testing::TestWithParam<NumberedRow>
{
};

TEST_P(NumberedTableTest, EveryValueAndTheOutsideOnes)
{
    const NumberedRow& row = GetParam();
    for (std::size_t value = 0; value < row.texts.size(); ++value)
    {
        EXPECT_EQ(row.convert(static_cast<int>(value)), row.texts[value]) << "value " << value;
    }
    for (int outside : {-1, static_cast<int>(row.texts.size()), INT_MAX, INT_MIN})
    {
        EXPECT_EQ(row.convert(outside), row.other) << "value " << outside;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Tables, NumberedTableTest,
    testing::Values(
        NumberedRow{"TriState", TriStateText, {"NO", "YES"}, "UNKNOWN"},
        NumberedRow{
            "Codec", CodecText, {"CODEC_ID_H264", "CODEC_ID_MJPEG", "CODEC_ID_VP8"}, "UNKNOWN"},
        NumberedRow{"AudioQuality",
                    AudioQualityText,
                    {"11 kHz, mono, 16-bit", "11 kHz, stereo, 16-bit", "22.05 kHz, mono, 16-bit",
                     "22.05 kHz, stereo, 16-bit", "44.1 kHz, mono, 16-bit",
                     "44.1 kHz, stereo, 16-bit", "48 kHz, mono, 16-bit", "48 kHz, stereo, 16-bit",
                     "96 kHz, mono, 16-bit", "96 kHz, stereo, 16-bit"},
                    "UNKNOWN"},
        NumberedRow{"EncoderPresetMixedCase",
                    EncoderPresetText,
                    {"UltraFast", "SuperFast", "VeryFast", "Faster", "Fast", "Medium"},
                    "UNKNOWN"},
        NumberedRow{"BitrateType", BitrateTypeText, {"CBR", "VBR", "ABR"}, "UNKNOWN"},
        NumberedRow{"Acceleration",
                    AccelerationText,
                    {"NO", "LOSSLESS", "IMHW", "IMSW", "NVENC", "AMF"},
                    "UNKNOWN"},
        NumberedRow{"CaptureType", CaptureTypeText, {"RECORDING", "STREAMING"}, "UNKNOWN"},
        NumberedRow{"CaptureMethod", CaptureMethodText, {"DEFAULT", "DIRECTX", "GDI"}, "UNKNOWN"},
        NumberedRow{"CaptureMode", CaptureModeText, {"GAME", "DESKTOP"}, "UNKNOWN"},
        NumberedRow{"FrameScale", FrameScaleText, {"FULL_SIZE", "1/2_SIZE", "1/4_SIZE"}, "UNKNOWN"},
        NumberedRow{"PipShape", PipShapeText, {"ORIGINAL", "ROUNDED_RECT", "CIRCLE"}, "UNKNOWN"},
        NumberedRow{"OverlayPositionFallsBackToNone",
                    OverlayPositionText,
                    {"UPPER_LEFT", "UPPER_RIGHT", "LOWER_LEFT", "LOWER_RIGHT"},
                    "NONE"},
        NumberedRow{
            "PipPositionOwnCornerOrder",
            PipPositionText,
            {"UPPER_RIGHT", "LOWER_RIGHT", "LOWER_LEFT", "UPPER_LEFT", "TOP", "BOTTOM", "CENTER"},
            "UNKNOWN"},
        NumberedRow{"DrawingTypeFallsBackToNone",
                    DrawingTypeText,
                    {"TexturesInAllGames", "Backbuffer"},
                    "NONE"},
        NumberedRow{"Keystrokes", KeystrokesText, {"NO", "ALL", "HOT"}, "UNKNOWN"},
        NumberedRow{"FinishActionKeepsShotdown",
                    FinishActionText,
                    {"NOTHING", "SLEEP", "SHOTDOWN"},
                    "UNKNOWN"},
        NumberedRow{
            "ScreenshotDestination", ScreenshotDestinationText, {"DISK", "CLIPBOARD"}, "UNKNOWN"},
        NumberedRow{"ConversionResult",
                    ConversionResultText,
                    {"SUCCESS", "CANCELED", "INVALID_DIR", "PROCESSING_ERROR"},
                    "UNKNOWN"},
        NumberedRow{"SharingTarget",
                    SharingTargetText,
                    {"VELKOR_CLOUD", "WHATSAPP", "TELEGRAM", "MAILTO", "YOUTUBE", "GOOGLE_DRIVE"},
                    "UNKNOWN"},
        NumberedRow{"SlideAction",
                    SlideActionText,
                    {"CLOSE", "NEXT", "BACK", "REPEAT", "FINISH"},
                    "UNKNOWN"}),
    [](const testing::TestParamInfo<NumberedRow>& info) { return info.param.label; });

struct TextRow
{
    const char* label;
    std::string actual;
    std::string expected;
};

void PrintTo(const TextRow& row, std::ostream* out)
{
    *out << row.label;
}

class TextTest : public testing::TestWithParam<TextRow>
{
};

TEST_P(TextTest, Converts)
{
    EXPECT_EQ(GetParam().actual, GetParam().expected);
}

// Device types are whole values: neither a shared video or audio digit nor a combination of
// bits matches.
INSTANTIATE_TEST_SUITE_P(
    DeviceTypes, TextTest,
    testing::Values(TextRow{"Screen", DeviceTypeText(0x1001), "SCREEN"},
                    TextRow{"Window", DeviceTypeText(0x1002), "WINDOW"},
                    TextRow{"WebCamera", DeviceTypeText(0x1004), "WEBCAMERA"},
                    TextRow{"Microphone", DeviceTypeText(0x2010), "MICROPHONE"},
                    TextRow{"System", DeviceTypeText(0x2020), "SYSTEM"},
                    TextRow{"Soundflower", DeviceTypeText(0x2040), "SOUNDFLOWER"},
                    TextRow{"ScreenOrWindowBits", DeviceTypeText(0x1003), "UNKNOWN"},
                    TextRow{"VideoFlagAlone", DeviceTypeText(0x1000), "UNKNOWN"},
                    TextRow{"AudioFlagAlone", DeviceTypeText(0x2000), "UNKNOWN"},
                    TextRow{"Zero", DeviceTypeText(0), "UNKNOWN"}),
    [](const testing::TestParamInfo<TextRow>& info) { return info.param.label; });

// One element: its truth; none or several: "YES" whatever they hold.
INSTANTIATE_TEST_SUITE_P(Flags, TextTest,
                         testing::Values(TextRow{"OneTrue", FlagText({true}), "YES"},
                                         TextRow{"OneFalse", FlagText({false}), "NO"},
                                         TextRow{"OneZeroInt", FlagText({0}), "NO"},
                                         TextRow{"OneNonZeroInt", FlagText({7}), "YES"},
                                         TextRow{"Empty", FlagText({}), "YES"},
                                         TextRow{"TwoFalse", FlagText({false, false}), "YES"},
                                         TextRow{"ThreeZeros", FlagText({0, 0, 0}), "YES"},
                                         TextRow{"BoolTrue", BoolText(true), "YES"},
                                         TextRow{"BoolFalse", BoolText(false), "NO"}),
                         [](const testing::TestParamInfo<TextRow>& info)
                         { return info.param.label; });

INSTANTIATE_TEST_SUITE_P(
    Geometry, TextTest,
    testing::Values(
        TextRow{"FullScreen", RectText(QRect(0, 0, 1920, 1080)), "0,0:1920x1080"},
        TextRow{"SecondMonitor", RectText(QRect(1920, 40, 800, 600)), "1920,40:800x600"},
        TextRow{"NegativeOrigin", RectText(QRect(-1280, -8, 1280, 1024)), "-1280,-8:1280x1024"},
        TextRow{"EmptyRect", RectText(QRect()), "0,0:0x0"},
        TextRow{"Size", SizeText(QSize(1280, 720)), "1280x720"},
        TextRow{"EmptySize", SizeText(QSize(0, 0)), "0x0"}),
    [](const testing::TestParamInfo<TextRow>& info) { return info.param.label; });

}  // namespace
