#include "ProducedEvents.h"

#include "Analytics/AnalyticsConstants.h"

namespace Velkor::KT::KtTrack
{

namespace Cfg = Tracking::Config;

namespace
{

using KeySet = std::set<std::string>;

// Keys the capture observer adds on its own, beyond the keys the document names: the capture
// sources (with a `providers` element) and the acceleration facts (always, on a start).
const KeySet kSourceKeysOnStart = {"AUDIO_SOURCES", "VIDEO_SOURCES", "NOISE_CONTROL"};
const KeySet kSourceKeysOnStop = {"AUDIO_SOURCES"};
const KeySet kAcceleratorKeys = {"NVENC_ENABLED"};

class Producers
{
public:
    explicit Producers(const Cfg::KtmStat& root)
    {
        IfPresent(root.gui(), [this](const auto& gui) { AddGui(gui); });
        IfPresent(root.instances(), [this](const auto& instances) { AddInstances(instances); });
    }

    ProducedEvents result;

private:
    template <typename Optional, typename Visit>
    static void IfPresent(const Optional& element, Visit visit)
    {
        if (element)
        {
            visit(*element);
        }
    }

    template <typename... Optionals>
    void AddOpts(const Optionals&... elements)
    {
        (IfPresent(elements, [this](const auto& element) { Add(element); }), ...);
    }

    template <typename... Optionals>
    static void Keys(KeySet& keys, const Optionals&... attributes)
    {
        (IfPresent(attributes, [&keys](const std::string& key) { keys.insert(key); }), ...);
    }

    KeySet& Add(const Cfg::Event& event)
    {
        ++result.entries;
        KeySet& keys = result.events[event.event()];
        for (const auto& param : event.param())
        {
            keys.insert(param.key());
        }
        return keys;
    }

    void Add(const Cfg::OneValueEvent& e)
    {
        Keys(Add(static_cast<const Cfg::Event&>(e)), e.value());
    }

    void Add(const Cfg::SignalWithParam& e)
    {
        Add(static_cast<const Cfg::Event&>(e)).insert(e.key());
    }

    void Add(const Cfg::CapturePresetEvent& e)
    {
        Keys(Add(static_cast<const Cfg::Event&>(e)), e.id());
    }

    void Add(const Cfg::ComboBoxIndexChangedEvent& e)
    {
        Keys(Add(static_cast<const Cfg::Event&>(e)), e.index(), e.name(), e.mapped(), e.dataName());
    }

    void Add(const Cfg::TwoValueEvent& e)
    {
        Keys(Add(static_cast<const Cfg::Event&>(e)), e.first(), e.second());
    }

    void Add(const Cfg::SharingFinishEvent& e)
    {
        Keys(Add(static_cast<const Cfg::Event&>(e)), e.method(), e.result(), e.type());
    }

    void Add(const Cfg::CodecSettingsEvent& e)
    {
        Keys(Add(static_cast<const Cfg::Event&>(e)), e.bitrateType(), e.bitrateQuality(),
             e.convertationPreset());
    }

    void Add(const Cfg::ConvertStopEvent& e)
    {
        Keys(Add(static_cast<const Cfg::Event&>(e)), e.reason());
    }

    KeySet& AddCaptureInfo(const Cfg::CaptureInfoEvent& e)
    {
        KeySet& keys = Add(static_cast<const Cfg::Event&>(e));
        Keys(keys, e.duration(), e.captureRecordingType(), e.captureType());
        return keys;
    }

    void Add(const Cfg::CaptureInfoEvent& e) { AddCaptureInfo(e); }

    void Add(const Cfg::CaptureStartEvent& e)
    {
        KeySet& keys = AddCaptureInfo(e);
        Keys(keys, e.captureSourcesNames());
        IfPresent(e.project(), [&](const auto& project) { Keys(keys, project.size()); });
        IfPresent(e.settings(), [&](const auto& settings) { AddSettings(keys, settings); });
        IfPresent(e.providers(),
                  [&](const auto& providers)
                  {
                      Keys(keys, providers.deviceType());
                      keys.insert(kSourceKeysOnStart.begin(), kSourceKeysOnStart.end());
                  });
        keys.insert(kAcceleratorKeys.begin(), kAcceleratorKeys.end());
    }

    void Add(const Cfg::CaptureStopEvent& e)
    {
        KeySet& keys = AddCaptureInfo(e);
        IfPresent(e.project(), [&](const auto& project) { Keys(keys, project.size()); });
        IfPresent(e.providers(),
                  [&](const auto& providers)
                  {
                      Keys(keys, providers.deviceType());
                      keys.insert(kSourceKeysOnStop.begin(), kSourceKeysOnStop.end());
                  });
    }

    void Add(const Cfg::ConvertStartEvent& e)
    {
        KeySet& keys = Add(static_cast<const Cfg::Event&>(e));
        Keys(keys, e.acceleration());
        IfPresent(e.context(),
                  [&](const auto& context)
                  {
                      IfPresent(context.project(),
                                [&](const auto& project) { Keys(keys, project.size()); });
                      Keys(keys, context.outputFilePath(), context.cutIntervals());
                      IfPresent(
                          context.preset(), [&](const auto& p)
                          { Keys(keys, p.name(), p.videoCodec(), p.audioCodec(), p.container()); });
                  });
    }

    static void AddSettings(KeySet& keys, const Cfg::CaptureSettings& settings)
    {
        IfPresent(settings.area(), [&](const auto& a) { Keys(keys, a.areaRect(), a.areaSize()); });
        IfPresent(
            settings.video(),
            [&](const auto& v)
            {
                Keys(keys, v.codec(), v.frameRate(), v.frameSize(), v.captureMethod(),
                     v.captureMode(), v.textureSharingEnabled());
                IfPresent(
                    v.codecSettings(), [&](const auto& c)
                    { Keys(keys, c.bitrateType(), c.bitrateQuality(), c.convertationPreset()); });
            });
        IfPresent(settings.audio(), [&](const auto& a) { Keys(keys, a.isSystem(), a.quality()); });
        IfPresent(settings.effects(),
                  [&](const auto& e)
                  {
                      Keys(keys, e.keystrokes(), e.keystrokesTranslate(), e.showCursor(),
                           e.highlightCursor(), e.highlightCursorSize(), e.highlightCursorColor(),
                           e.highlightClicks(), e.highlightClicksColorLeft(),
                           e.highlightClicksColorRight(), e.useClickSounds(),
                           e.customClickDownSound(), e.volumeClickSound());
                  });
        IfPresent(settings.webCamera(),
                  [&](const auto& w) {
                      Keys(keys, w.captureResolution(), w.frameRate(), w.pipPosition(), w.pipSize(),
                           w.pipShape());
                  });
        IfPresent(settings.streaming(), [&](const auto& s)
                  { Keys(keys, s.serviceName(), s.serverName(), s.fileRecordingEnabled()); });
    }

    // The GUI handler hooks the signals of `object` entries only; `signal` children of the other
    // kinds are read but never connected, so they produce nothing.
    void AddObject(const Cfg::Object& object)
    {
        for (const auto& signal : object.signal())
        {
            Add(static_cast<const Cfg::Event&>(signal));
        }
        for (const auto& signal : object.intSignal())
        {
            Add(signal);
        }
        for (const auto& signal : object.stringSignal())
        {
            Add(signal);
        }
    }

    void AddButton(const Cfg::Button& button)
    {
        AddOpts(button.clicked_event(), button.toggled_event(), button.mouse_release_event());
    }

    void AddWidget(const Cfg::Widget& widget)
    {
        AddOpts(widget.show_event(), widget.close_event());
        for (const auto& button : widget.button())
        {
            AddButton(button);
        }
        for (const auto& label : widget.label())
        {
            AddOpts(label.link_activated_event());
        }
        for (const auto& combo : widget.combobox())
        {
            AddOpts(combo.current_index_changed_event());
        }
        for (const auto& child : widget.widget())
        {
            AddWidget(child);
        }
        for (const auto& object : widget.object())
        {
            AddObject(object);
        }
        for (const auto& button : widget.abstractPresetButton())
        {
            AddButton(button);
            AddOpts(button.choosePreset());
        }
        for (const auto& button : widget.buttonWithPopUpList())
        {
            AddButton(button);
            AddOpts(button.item_selected());
        }
    }

    void AddGui(const Cfg::Gui& gui)
    {
        for (const auto& widget : gui.widget())
        {
            AddWidget(widget);
        }
        for (const auto& action : gui.action())
        {
            AddOpts(action.triggered_event());
        }
        for (const auto& object : gui.object())
        {
            AddObject(object);
        }
    }

    void AddInstances(const Cfg::Instances& in)
    {
        IfPresent(in.IScheduler(), [this](const auto& s) { AddOpts(s.start()); });
        IfPresent(in.IDurationLimiter(),
                  [this](const auto& s) {
                      AddOpts(s.beforeUserStop(), s.beforeScheduleStop(), s.userStop(),
                              s.scheduleStop());
                  });
        IfPresent(in.ICaptureInfo(),
                  [this](const auto& s)
                  {
                      AddOpts(s.start(), s.pause(), s.resume(), s.stop(), s.error());
                      // The capture observer is attached only for a section that configures
                      // something other than `cancel`: a lone `cancel` never fires.
                      if (s.start() || s.pause() || s.resume() || s.stop() || s.error())
                      {
                          AddOpts(s.cancel());
                      }
                  });
        IfPresent(in.ICaptureMonitor(),
                  [this](const auto& s) { AddOpts(s.overflowDrive(), s.deviceDisconnect()); });
        IfPresent(in.IConverter(), [this](const auto& s)
                  { AddOpts(s.start(), s.pause(), s.resume(), s.stop(), s.error()); });
        IfPresent(in.PathsSettings(), [this](const auto& s) { AddOpts(s.screenshotFileExt()); });
        IfPresent(in.CaptureGeneralSettings(), [this](const auto& s)
                  { AddOpts(s.separateStreamsEnabled(), s.isIndicatorVisible()); });
        IfPresent(in.CaptureKeyboardSettings(),
                  [this](const auto& s) { AddOpts(s.recordKeystrokes()); });
        IfPresent(in.WatermarkSettings(),
                  [this](const auto& s) { AddOpts(s.isWatermarkVisible()); });
        IfPresent(in.CaptureAudioSettings(), [this](const auto& s) { AddOpts(s.audioQuality()); });
        IfPresent(in.CaptureWebCameraSettings(),
                  [this](const auto& s)
                  {
                      AddOpts(s.captureDeviceUid(), s.captureResolution(), s.frameRate(),
                              s.pipPosition(), s.pipSize());
                  });
        IfPresent(in.CaptureStreamingSettings(),
                  [this](const auto& s) { AddOpts(s.serviceName(), s.serverName()); });
        IfPresent(in.HotkeySettings(),
                  [this](const auto& s)
                  {
                      AddOpts(s.startStop(), s.audioStartStop(), s.webCameraStartStop(),
                              s.startStopStreaming(), s.pauseResume(), s.takeScreenshot(),
                              s.showHideOverlays(), s.fastPreset());
                  });
        IfPresent(in.OverlaySettings(),
                  [this](const auto& s)
                  {
                      AddOpts(s.fpsOverlayEnabled(), s.recordingTimeOverlayEnabled(),
                              s.freeDiskSpaceOverlayEnabled(), s.projectSizeOverlayEnabled(),
                              s.gapiOverlayEnabled(), s.overlayPosition(), s.drawingType(),
                              s.shortcutsOverlayEnabled());
                  });
        IfPresent(in.ProductSettings(),
                  [this](const auto& s)
                  {
                      AddOpts(s.autoUpdateEnabled(), s.statisticsEnabled(), s.autoStartEnabled(),
                              s.currentLocale());
                  });
        IfPresent(in.CaptureFinishActionSettings(),
                  [this](const auto& s) { AddOpts(s.finishAction()); });
        IfPresent(in.ConvertationSettings(), [this](const auto& s)
                  { AddOpts(s.hyperPassEnabled(), s.deleteProject(), s.screenshotQuality()); });
        IfPresent(in.IUiSettings(),
                  [this](const auto& s)
                  {
                      AddOpts(s.showCountdown(), s.disableCaptureFrameBlinking(),
                              s.showCapturePanel(), s.soundNotificationEnabled(),
                              s.webCameraOverlayEnabled());
                  });
        IfPresent(in.IDurationLimitSettings(),
                  [this](const auto& s) { AddOpts(s.limitEnabled(), s.limit()); });
        IfPresent(in.ISchedulerSettings(),
                  [this](const auto& s) { AddOpts(s.schedulerEnabled()); });
        IfPresent(in.IVideoSettings(),
                  [this](const auto& s)
                  {
                      AddOpts(s.codec(), s.frameRate(), s.frameSize(), s.captureMethod(),
                              s.codecSettings(), s.textureSharingEnabled());
                  });
        IfPresent(in.ICursorSettings(),
                  [this](const auto& s)
                  {
                      AddOpts(s.cursorEnabled(), s.cursorHighlightEnabled(),
                              s.cursorHighlightColor(), s.cursorHighlightSize(),
                              s.clicksHighlightEnabled(), s.leftClicksHighlightColor(),
                              s.rightClicksHighlightColor(), s.useClickSounds(),
                              s.customClickDownSound(), s.volumeClick());
                  });
        IfPresent(in.AbstractScreenshotTakerWrapper(),
                  [this](const auto& s) { AddOpts(s.onSuccess(), s.onError(), s.onCanceled()); });
        IfPresent(in.IFileManager(),
                  [this](const auto& s)
                  {
                      AddOpts(s.onFileExplored(), s.onFileMovedToTrash(), s.onFileRemoved(),
                              s.onCreateDirectories());
                  });
        IfPresent(in.AbstractSharing(), [this](const auto& s) { AddOpts(s.sharingFinish()); });
        IfPresent(in.IPaintingController(),
                  [this](const auto& s) { AddOpts(s.shapeAdded(), s.shapeRemoved()); });
        IfPresent(in.ITutorialManager(),
                  [this](const auto& s) { AddOpts(s.slideShow(), s.slideClick()); });
        IfPresent(in.VECommunicationEventPublisher(),
                  [this](const auto& s) { AddOpts(s.veExportRequested()); });
        IfPresent(in.ISelector(), [this](const auto& s) { AddOpts(s.areaSelected()); });
    }
};

}  // namespace

ProducedEvents ProducedBy(const Cfg::KtmStat& main)
{
    ProducedEvents produced = Producers(main).result;
    for (const char* name :
         {Analytics::APP_FIRST_START, Analytics::APP_FIRST_START_AFTER_MINOR_UPDATE,
          Analytics::APP_EVERY_START, Analytics::APP_FAILED, Analytics::APP_EXIT})
    {
        produced.events[name].insert(kAnyKey);
    }
    return produced;
}

bool MaySet(const std::set<std::string>& keys, const std::string& key)
{
    return keys.count(key) != 0 || keys.count(kAnyKey) != 0;
}

}  // namespace Velkor::KT::KtTrack
