#include "Tracking/Instances/ValueTexts_p.h"

#include "Support/Table.h"

#include <QRect>
#include <QSize>

#include <gtest/gtest.h>

#include <climits>
#include <string>

using namespace Velkor::KT::Tracking;

namespace
{

struct TextRow
{
    const char* label;
    std::string actual;
    std::string expected;
};

using ValueTextTest = KtTest::Table<TextRow>;

TEST_P(ValueTextTest, Converts)
{
    EXPECT_EQ(GetParam().actual, GetParam().expected);
}

KT_ROWS(ValueTextTest,
        {// Numbered tables: both ends, just outside, far outside, and the tables whose fallback
         // or order is their own.
         {"NumberedFirst", TriStateText(0), "NO"},
         {"NumberedLast", TriStateText(1), "YES"},
         {"NumberedJustAbove", TriStateText(2), "UNKNOWN"},
         {"NumberedNegative", TriStateText(-1), "UNKNOWN"},
         {"NumberedIntMin", CodecText(INT_MIN), "UNKNOWN"},
         {"NumberedIntMax", CodecText(INT_MAX), "UNKNOWN"},
         {"LongTableLast", AudioQualityText(9), "96 kHz, stereo, 16-bit"},
         {"LongTableJustAbove", AudioQualityText(10), "UNKNOWN"},
         {"OverlayPositionFallsBackToNone", OverlayPositionText(4), "NONE"},
         {"DrawingTypeFallsBackToNone", DrawingTypeText(-1), "NONE"},
         {"PipPositionOwnCornerOrder", PipPositionText(0), "UPPER_RIGHT"},
         {"EncoderPresetMixedCase", EncoderPresetText(3), "Faster"},
         {"FinishActionKeepsShotdown", FinishActionText(2), "SHOTDOWN"},
         // Device types are whole values: neither a shared digit nor a combination of bits.
         {"Screen", DeviceTypeText(0x1001), "SCREEN"},
         {"Soundflower", DeviceTypeText(0x2040), "SOUNDFLOWER"},
         {"ScreenOrWindowBits", DeviceTypeText(0x1003), "UNKNOWN"},
         {"VideoFlagAlone", DeviceTypeText(0x1000), "UNKNOWN"},
         // One element: its truth; none or several: "YES" whatever they hold.
         {"OneFalse", FlagText({false}), "NO"},
         {"OneNonZeroInt", FlagText({7}), "YES"},
         {"NoFlags", FlagText({}), "YES"},
         {"TwoFalse", FlagText({false, false}), "YES"},
         {"BoolFalse", BoolText(false), "NO"},
         {"NegativeOrigin", RectText(QRect(-1280, -8, 1280, 1024)), "-1280,-8:1280x1024"},
         {"EmptyRect", RectText(QRect()), "0,0:0x0"},
         {"Size", SizeText(QSize(1280, 720)), "1280x720"}});

}  // namespace
