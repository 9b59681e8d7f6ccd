#pragma once

// The recorder's settings objects other than the product settings. Each kind is its own type
// (the instance registry files objects by type) with its fixed list of fields; the value of
// every field travels as a list (see ObservableSettings). Value forms, one element unless told:
//   flags: bool; enumerations: int; sizes: QSize; colours: QColor; counts and rates: int;
//   names, paths, hotkeys: QString; HotkeySettings "fastPreset": preset name, hotkey text;
//   CaptureVideoSettings "codecSettings": bitrate type, bitrate quality, encoder speed preset.

#include "KT/ConvertationSettings.h"
#include "KT/ObservableSettings.h"

namespace Velkor::KT
{

#define KT_SETTINGS_KIND(Name, ...)                                           \
    class Name : public ObservableSettings                                    \
    {                                                                         \
    public:                                                                   \
        Name() : ObservableSettings(std::vector<std::string>{__VA_ARGS__}) {} \
    };

KT_SETTINGS_KIND(PathsSettings, "screenshotFileExt")
KT_SETTINGS_KIND(CaptureGeneralSettings, "separateStreamsEnabled", "isIndicatorVisible")
KT_SETTINGS_KIND(CaptureKeyboardSettings, "recordKeystrokes")
KT_SETTINGS_KIND(WatermarkSettings, "isWatermarkVisible")
KT_SETTINGS_KIND(CaptureAudioSettings, "audioQuality")
KT_SETTINGS_KIND(CaptureWebCameraSettings, "captureDeviceUid", "captureResolution", "frameRate",
                 "pipPosition", "pipSize")
KT_SETTINGS_KIND(CaptureStreamingSettings, "serviceName", "serverName")
KT_SETTINGS_KIND(HotkeySettings, "startStop", "audioStartStop", "webCameraStartStop",
                 "startStopStreaming", "pauseResume", "takeScreenshot", "showHideOverlays",
                 "fastPreset")
KT_SETTINGS_KIND(OverlaySettings, "fpsOverlayEnabled", "recordingTimeOverlayEnabled",
                 "freeDiskSpaceOverlayEnabled", "projectSizeOverlayEnabled", "gapiOverlayEnabled",
                 "overlayPosition", "drawingType", "shortcutsOverlayEnabled")
KT_SETTINGS_KIND(CaptureFinishActionSettings, "finishAction")
KT_SETTINGS_KIND(IUiSettings, "showCountdown", "disableCaptureFrameBlinking", "showCapturePanel",
                 "soundNotificationEnabled", "webCameraOverlayEnabled")
KT_SETTINGS_KIND(ICaptureDurationLimitSettings, "limitEnabled", "limit")
KT_SETTINGS_KIND(ICaptureSchedulerSettings, "schedulerEnabled")
KT_SETTINGS_KIND(CaptureVideoSettings, "codec", "frameRate", "frameSize", "captureMethod",
                 "codecSettings", "textureSharingEnabled")
KT_SETTINGS_KIND(CaptureCursorSettings, "cursorEnabled", "cursorHighlightEnabled",
                 "cursorHighlightColor", "cursorHighlightSize", "clicksHighlightEnabled",
                 "leftClicksHighlightColor", "rightClicksHighlightColor", "useClickSounds",
                 "customClickDownSound", "volumeClick")

#undef KT_SETTINGS_KIND

}  // namespace Velkor::KT
