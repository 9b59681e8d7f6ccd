#include "Tracking/Instances/ValueTexts_p.h"

#include "Support/Table.h"

#include <QRect>

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

// The texts of ordinary values are pinned by the observers that send them (ShippedObserversTest,
// CaptureObserversTest); here the values no observer test reaches.
KT_ROWS(ValueTextTest,
        {// Numbered tables at the ends of int, and a negative value in a table with a fallback of
         // its own.
         {"NumberedIntMin", CodecText(INT_MIN), "UNKNOWN"},
         {"NumberedIntMax", CodecText(INT_MAX), "UNKNOWN"},
         {"DrawingTypeFallsBackToNone", DrawingTypeText(-1), "NONE"},
         // Device types are whole values: neither a shared digit nor a combination of bits.
         {"Soundflower", DeviceTypeText(0x2040), "SOUNDFLOWER"},
         {"ScreenOrWindowBits", DeviceTypeText(0x1003), "UNKNOWN"},
         {"VideoFlagAlone", DeviceTypeText(0x1000), "UNKNOWN"},
         // One element: its truth, whatever its type.
         {"OneNonZeroInt", FlagText({7}), "YES"},
         {"EmptyRect", RectText(QRect()), "0,0:0x0"}});

}  // namespace
