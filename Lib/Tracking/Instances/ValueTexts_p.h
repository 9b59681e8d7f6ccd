#pragma once

// The texts under which settings and service values are reported. Each function maps one of
// the host's enumerations (read as an integer) to its fixed text; a value outside the table
// gives "UNKNOWN" (overlay position and drawing type: "NONE"). The texts are the statistics
// back end's vocabulary and are kept exactly as they are, misspellings and mixed case included.

#include <QVariantList>

#include <string>

class QRect;
class QSize;

namespace Velkor::KT::Tracking
{

// "YES"/"NO".
std::string BoolText(bool value);
// A flag in the list form of settings values: with exactly one element its truth gives "YES" or
// "NO"; an empty list or one with several elements gives "YES".
std::string FlagText(const QVariantList& values);
std::string TriStateText(int value);

std::string CodecText(int value);
std::string AudioQualityText(int value);
std::string DeviceTypeText(int value);
std::string EncoderPresetText(int value);
std::string BitrateTypeText(int value);
std::string AccelerationText(int value);
std::string CaptureTypeText(int value);
std::string CaptureMethodText(int value);
std::string CaptureModeText(int value);
std::string FrameScaleText(int value);
std::string PipShapeText(int value);
std::string OverlayPositionText(int value);
std::string PipPositionText(int value);
std::string DrawingTypeText(int value);
std::string KeystrokesText(int value);
std::string FinishActionText(int value);
std::string ScreenshotDestinationText(int value);
std::string ConversionResultText(int value);
std::string SharingTargetText(int value);
std::string SlideActionText(int value);

// "left,top:widthxheight", e.g. "0,0:1920x1080"; negative coordinates keep their sign.
std::string RectText(const QRect& rect);
// "widthxheight", e.g. "1280x720".
std::string SizeText(const QSize& size);

}  // namespace Velkor::KT::Tracking
