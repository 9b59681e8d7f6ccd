#pragma once

#include <QColor>
#include <QRect>
#include <QSize>
#include <QString>

#include <boost/property_tree/ptree.hpp>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace Velkor::KT
{

// Device types of capture sources: the high digit tells video (0x1000) from audio (0x2000).
enum DeviceType : int
{
    kVideoDevice = 0x1000,
    kAudioDevice = 0x2000,
    kScreen = 0x1001,
    kWindow = 0x1002,
    kWebCamera = 0x1004,
    kMicrophone = 0x2010,
    kSystemAudio = 0x2020,
    kSoundflower = 0x2040,
};

struct CaptureSource
{
    int deviceType = 0;
    std::string id;
    // Whether noise suppression is applied to this (audio) source.
    bool noiseControl = false;
};

struct Project
{
    std::int64_t size = 0;  // bytes
};

// The settings a capture runs with, as handed to the capture observers at start. Enumerations
// are the host's integer values.
struct CaptureSettings
{
    struct CodecSettings
    {
        int bitrateType = 0;
        int bitrateQuality = 0;
        int convertationPreset = 0;
    };
    struct Video
    {
        int codec = 0;
        int frameRate = 0;
        int captureMethod = 0;
        int captureMode = 0;
        bool textureSharingEnabled = false;
        CodecSettings codecSettings;
    };
    struct Audio
    {
        bool isSystem = false;
        int quality = 0;
    };
    struct Effects
    {
        int keystrokes = 0;
        bool keystrokesTranslate = false;
        bool showCursor = true;
        bool highlightCursor = false;
        int highlightCursorSize = 0;
        QColor highlightCursorColor;
        bool highlightClicks = false;
        QColor highlightClicksColorLeft;
        QColor highlightClicksColorRight;
        bool useClickSounds = false;
        QString customClickDownSound;
        int volumeClickSound = 0;
    };
    struct WebCamera
    {
        QSize captureResolution;
        int frameRate = 0;
        int pipPosition = 0;
        int pipSize = 0;
        int pipShape = 0;
    };
    struct Streaming
    {
        QString serviceName;
        QString serverName;
        bool fileRecordingEnabled = false;
    };

    Video video;
    Audio audio;
    Effects effects;
    WebCamera webCamera;
    Streaming streaming;
};

// An output preset of the converter: its name and its property tree (e.g. the video codec id at
// "$$VIDEO_CODEC$$.codec_id", the container at "container").
struct OutputPreset
{
    std::string name;
    boost::property_tree::ptree properties;
};

// What a conversion works on. Cut intervals are (begin, end) pairs in microseconds.
struct ConvertationContext
{
    Project project;
    QString outputFilePath;
    OutputPreset preset;
    std::vector<std::pair<std::int64_t, std::int64_t>> cutIntervals;
};

}  // namespace Velkor::KT
