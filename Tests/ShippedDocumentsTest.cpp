// Registered in Tests/CMakeLists.txt as:
//   kt_add_test(ShippedDocumentsTest SOURCES ShippedDocumentsTest.cpp)
//
// Cross-checks the shipped documents against each other: every event name and parameter key that
// the filter and aggregator rules react to must be produced by an entry of the main document that
// is used with them, or by a filter rule that renames a produced event. A rule that nothing can
// reach is dead, and usually a typo in one of the documents.

#include "Tracking/Tracking.h"

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/Filter.h"
#include "Tracking/Config/KtmStat.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <map>
#include <memory>
#include <ostream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace
{

namespace Cfg = Velkor::KT::Tracking::Config;
namespace Flt = Velkor::KT::Tracking::Config::Filter;
namespace Agg = Velkor::KT::Tracking::Config::Aggregator;

using testing::IsEmpty;
using Velkor::KT::Tracking::LoadConfigFromQrc;

using KeySet = std::set<std::string>;
// Event name -> every parameter key that some producer of that event may set.
using EventKeys = std::map<std::string, KeySet>;
using Problems = std::vector<std::string>;

const char* const kAggregatorPath = ":/KT/Tracking/AggregatorConfig.xml";

// Keys the capture observer adds on its own, beyond the keys that the document names: the
// description of the capture sources (for a `providers` element) and the acceleration facts
// (always, on a start).
const KeySet kSourceKeysOnStart = {"AUDIO_SOURCES", "VIDEO_SOURCES", "NOISE_CONTROL"};
const KeySet kSourceKeysOnStop = {"AUDIO_SOURCES"};
const KeySet kAcceleratorKeys = {"NVENC_ENABLED"};

// As the trackers read their documents: without validation.
const ::xml_schema::flags kFlags = ::xml_schema::flags::dont_validate;

template <typename Root, typename Parse>
std::unique_ptr<Root> ParseText(const std::string& text, Parse parse)
{
    std::istringstream stream(text);
    try
    {
        return parse(stream);
    }
    catch (const ::xml_schema::exception& e)
    {
        std::ostringstream description;
        description << e;
        ADD_FAILURE() << "document does not parse: " << description.str();
    }
    return nullptr;
}

std::unique_ptr<Cfg::KtmStat> ParseMain(const std::string& text)
{
    return ParseText<Cfg::KtmStat>(text, [](std::istream& in) { return Cfg::ktmstat(in, kFlags); });
}

std::unique_ptr<Flt::Filter> ParseFilter(const std::string& text)
{
    return ParseText<Flt::Filter>(text, [](std::istream& in) { return Flt::filter(in, kFlags); });
}

std::unique_ptr<Agg::Aggregator> ParseAggregator(const std::string& text)
{
    return ParseText<Agg::Aggregator>(text,
                                      [](std::istream& in) { return Agg::aggregator(in, kFlags); });
}

// Collects the events that the entries of a main document emit once a handler has hooked them,
// with the keys each entry can set.
class Producers
{
public:
    explicit Producers(const Cfg::KtmStat& root)
    {
        IfPresent(root.gui(), [this](const auto& gui) { AddGui(gui); });
        IfPresent(root.instances(), [this](const auto& instances) { AddInstances(instances); });
    }

    const EventKeys& Events() const { return m_events; }

    // The number of entries that produce an event.
    std::size_t Entries() const { return m_entries; }

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
        ++m_entries;
        KeySet& keys = m_events[event.event()];
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

    EventKeys m_events;
    std::size_t m_entries = 0;
};

// Calls `visit` with every matcher of a parameter rule, whatever its kind.
template <typename Visit>
void ForEachMatcher(const Flt::Param& param, Visit visit)
{
    for (const auto& m : param.equal())
    {
        visit(m);
    }
    for (const auto& m : param.startsWith())
    {
        visit(m);
    }
    for (const auto& m : param.endsWith())
    {
        visit(m);
    }
    for (const auto& m : param.contains())
    {
        visit(m);
    }
    for (const auto& m : param.inRange())
    {
        visit(m);
    }
    for (const auto& m : param.any())
    {
        visit(m);
    }
}

// Extends the produced events by what the filter can make of them: a rule that fires (its event
// and key are produced) passes its event's keys, plus the keys it adds, to every event it renames
// to. Repeated until nothing changes, so renamed events feed later blocks too.
EventKeys ReachableThroughFilter(EventKeys events, const Flt::Filter& filter)
{
    for (bool changed = true; changed;)
    {
        changed = false;
        auto merge = [&](const std::string& name, const KeySet& keys)
        {
            KeySet& target = events[name];
            const auto before = target.size();
            target.insert(keys.begin(), keys.end());
            changed = changed || target.size() != before;
        };
        for (const auto& block : filter.event())
        {
            const auto found = events.find(block.event());
            if (found == events.end())
            {
                continue;
            }
            for (const auto& param : block.param())
            {
                if (found->second.count(param.key()) == 0)
                {
                    continue;
                }
                ForEachMatcher(param,
                               [&](const Flt::Updater& matcher)
                               {
                                   KeySet keys = events[block.event()];
                                   for (const auto& add : matcher.addParam())
                                   {
                                       keys.insert(add.key());
                                   }
                                   for (const auto& mod : matcher.modParam())
                                   {
                                       keys.insert(mod.key());
                                   }
                                   merge(block.event(), keys);
                                   for (const auto& rename : matcher.modEvent())
                                   {
                                       merge(rename.name(), keys);
                                   }
                               });
            }
        }
    }
    return events;
}

struct Documents
{
    std::unique_ptr<Cfg::KtmStat> main;
    std::unique_ptr<Flt::Filter> filter;
    std::unique_ptr<Agg::Aggregator> aggregator;
};

// Every rule that can never fire: a block for an event nothing produces, or a parameter rule on a
// key that no producer of its event sets.
Problems DeadFilterRules(const Flt::Filter& filter, const EventKeys& reachable)
{
    Problems problems;
    for (const auto& block : filter.event())
    {
        const auto found = reachable.find(block.event());
        if (found == reachable.end())
        {
            problems.push_back("event " + block.event());
            continue;
        }
        for (const auto& param : block.param())
        {
            if (found->second.count(param.key()) == 0)
            {
                problems.push_back(block.event() + "/" + param.key());
            }
        }
    }
    return problems;
}

// Every main or affecting event that no producer and no filter rename makes.
Problems UnproducedAggregatorEvents(const Agg::Aggregator& aggregator, const EventKeys& reachable)
{
    Problems problems;
    for (const auto& block : aggregator.event())
    {
        if (reachable.count(block.event()) == 0)
        {
            problems.push_back(block.event());
        }
        for (const auto& affecting : block.affectingEventName())
        {
            if (reachable.count(affecting) == 0)
            {
                problems.push_back(block.event() + "<-" + affecting);
            }
        }
    }
    return problems;
}

// Every affecting event that does not say what caused the main event: the aggregator carries the
// affecting event's "METHOD" over to the main event, which otherwise keeps "UNKNOWN".
Problems AffectingEventsWithoutMethod(const Agg::Aggregator& aggregator, const EventKeys& reachable)
{
    Problems problems;
    for (const auto& block : aggregator.event())
    {
        for (const auto& affecting : block.affectingEventName())
        {
            const auto found = reachable.find(affecting);
            if (found != reachable.end() && found->second.count("METHOD") == 0)
            {
                problems.push_back(affecting);
            }
        }
    }
    return problems;
}

struct VariantRow
{
    const char* label;
    const char* mainPath;
    const char* filterPath;
};

void PrintTo(const VariantRow& row, std::ostream* out)
{
    *out << row.label;
}

class ShippedDocumentsTest : public testing::TestWithParam<VariantRow>
{
protected:
    void SetUp() override
    {
        const VariantRow& row = GetParam();
        const std::string mainText = LoadConfigFromQrc(row.mainPath);
        const std::string filterText = LoadConfigFromQrc(row.filterPath);
        const std::string aggregatorText = LoadConfigFromQrc(kAggregatorPath);
        ASSERT_FALSE(mainText.empty()) << row.mainPath;
        ASSERT_FALSE(filterText.empty()) << row.filterPath;
        ASSERT_FALSE(aggregatorText.empty()) << kAggregatorPath;
        m_mainText = mainText;
        m_docs.main = ParseMain(mainText);
        m_docs.filter = ParseFilter(filterText);
        m_docs.aggregator = ParseAggregator(aggregatorText);
        ASSERT_TRUE(m_docs.main && m_docs.filter && m_docs.aggregator);
        m_reachable = ReachableThroughFilter(Producers(*m_docs.main).Events(), *m_docs.filter);
    }

    std::string m_mainText;
    Documents m_docs;
    EventKeys m_reachable;
};

// The reader stops silently at a misplaced element and drops it with all its later siblings, so
// a slip in the order of a shipped document would lose entries without an error. Every element
// with an `event` attribute is an entry that produces an event.
TEST_P(ShippedDocumentsTest, EveryEntryOfTheMainDocumentIsRead)
{
    const std::regex comment("<!--[^]*?-->");
    const std::regex eventAttribute("\\sevent=\"");
    const std::string text = std::regex_replace(m_mainText, comment, std::string());
    const auto written = std::distance(
        std::sregex_iterator(text.begin(), text.end(), eventAttribute), std::sregex_iterator());
    ASSERT_GT(written, 0);
    EXPECT_EQ(Producers(*m_docs.main).Entries(), static_cast<std::size_t>(written));
}

TEST_P(ShippedDocumentsTest, EveryFilterRuleCanFire)
{
    EXPECT_THAT(DeadFilterRules(*m_docs.filter, m_reachable), IsEmpty());
}

TEST_P(ShippedDocumentsTest, EveryAggregatedEventIsProduced)
{
    EXPECT_THAT(UnproducedAggregatorEvents(*m_docs.aggregator, m_reachable), IsEmpty());
}

TEST_P(ShippedDocumentsTest, EveryAffectingEventReportsItsMethod)
{
    EXPECT_THAT(AffectingEventsWithoutMethod(*m_docs.aggregator, m_reachable), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Variants, ShippedDocumentsTest,
                         testing::Values(VariantRow{"Full", ":/KT/Tracking/Config.xml",
                                                    ":/KT/Tracking/FilterConfig.xml"},
                                         VariantRow{"Gaca", ":/KT/Tracking/ConfigGACA.xml",
                                                    ":/KT/Tracking/FilterConfigGACA.xml"}),
                         [](const testing::TestParamInfo<VariantRow>& info)
                         { return std::string(info.param.label); });

TEST(ShippedAggregatorDocumentTest, NoEventIsBothMainAndAffecting)
{
    const auto aggregator = ParseAggregator(LoadConfigFromQrc(kAggregatorPath));
    ASSERT_TRUE(aggregator);
    std::set<std::string> mains;
    for (const auto& block : aggregator->event())
    {
        mains.insert(block.event());
    }
    Problems both;
    for (const auto& block : aggregator->event())
    {
        for (const auto& affecting : block.affectingEventName())
        {
            if (mains.count(affecting) != 0)
            {
                both.push_back(affecting);
            }
        }
    }
    EXPECT_THAT(both, IsEmpty());
}

// The checks above must not pass vacuously: each row breaks the full main document in one way
// that silences a rule, and the matching check has to name the rule.
using Edits = std::vector<std::pair<std::string, std::string>>;

struct BrokenRow
{
    const char* label;
    Edits edits;  // every occurrence of the first text is replaced by the second
    Problems (*check)(const Documents&, const EventKeys&);
    const char* expected;
};

void PrintTo(const BrokenRow& row, std::ostream* out)
{
    *out << row.label;
}

Problems CheckFilter(const Documents& docs, const EventKeys& reachable)
{
    return DeadFilterRules(*docs.filter, reachable);
}

Problems CheckAggregator(const Documents& docs, const EventKeys& reachable)
{
    return UnproducedAggregatorEvents(*docs.aggregator, reachable);
}

Problems CheckMethod(const Documents& docs, const EventKeys& reachable)
{
    return AffectingEventsWithoutMethod(*docs.aggregator, reachable);
}

std::string ReplaceAll(std::string text, const std::string& find, const std::string& replace)
{
    std::size_t count = 0;
    for (auto at = text.find(find); at != std::string::npos; at = text.find(find, at))
    {
        text.replace(at, find.size(), replace);
        at += replace.size();
        ++count;
    }
    EXPECT_GT(count, 0u) << "the full main document no longer contains: " << find;
    return text;
}

class BrokenMainDocumentTest : public testing::TestWithParam<BrokenRow>
{
};

TEST_P(BrokenMainDocumentTest, IsReported)
{
    const BrokenRow& row = GetParam();
    std::string mainText = LoadConfigFromQrc(":/KT/Tracking/Config.xml");
    for (const auto& [find, replace] : row.edits)
    {
        mainText = ReplaceAll(mainText, find, replace);
    }
    Documents docs;
    docs.main = ParseMain(mainText);
    docs.filter = ParseFilter(LoadConfigFromQrc(":/KT/Tracking/FilterConfig.xml"));
    docs.aggregator = ParseAggregator(LoadConfigFromQrc(kAggregatorPath));
    ASSERT_TRUE(docs.main && docs.filter && docs.aggregator);
    const EventKeys reachable =
        ReachableThroughFilter(Producers(*docs.main).Events(), *docs.filter);
    EXPECT_THAT(row.check(docs, reachable), testing::Contains(std::string(row.expected)));
}

INSTANTIATE_TEST_SUITE_P(
    Mutations, BrokenMainDocumentTest,
    testing::Values(
        // The raw hot key is renamed: its filter block and the events it turns into are lost.
        BrokenRow{"RawEventMisnamed",
                  {{"event=\"HOTKEY_TRIGGERED\"", "event=\"HOTKEY_PRESSED\""}},
                  CheckFilter,
                  "event HOTKEY_TRIGGERED"},
        BrokenRow{"RenameSourceLost",
                  {{"event=\"HOTKEY_TRIGGERED\"", "event=\"HOTKEY_PRESSED\""}},
                  CheckAggregator,
                  "CAPTURE_PAUSE<-HOTKEY_CAPTURE_PAUSE_RESUME_EVENT"},
        // The hot key is reported under another key: the rename rules cannot fire any more.
        BrokenRow{"RenameKeyMisnamed",
                  {{"key=\"HOTKEY_ID\"", "key=\"HOTKEY\""}},
                  CheckAggregator,
                  "SCREENSHOT_SAVE<-HOTKEY_TAKE_SCREENSHOT_EVENT"},
        BrokenRow{"SettingKeyMisnamed",
                  {{"value=\"CLICK_SOUND_TYPE\"", "value=\"CLICK_SOUND\""}},
                  CheckFilter,
                  "PREF_CHANGE/CLICK_SOUND_TYPE"},
        BrokenRow{"NestedKeyMisnamed",
                  {{"<project size=\"FILE_SIZE\"/>", "<project size=\"SIZE\"/>"}},
                  CheckFilter,
                  "CAPTURE_STOP/FILE_SIZE"},
        // Signals are hooked on `object` entries only, not on the other kinds.
        BrokenRow{"SignalOnWidget",
                  {{"<object id=\"SidebarPanel\">", "<widget id=\"SidebarPanel\">"},
                   {"</object>\r\n            <abstractPresetButton",
                    "</widget>\r\n            <abstractPresetButton"}},
                  CheckFilter,
                  "event SIDEBAR_FEATURE_CHANGE"},
        // A lone `cancel` attaches no capture observer, so nothing makes CAPTURE_START and the
        // other capture events any more.
        BrokenRow{"CancelOnlyCaptureSection",
                  {{"<ICaptureInfo>", "<ICaptureInfo>\r\n<!--"},
                   {"<cancel event=\"CAPTURE_CANCEL\" duration=\"DURATION\" "
                    "captureRecordingType=\"CAPTURE_RECORDING_TYPE\"/>",
                    "--><cancel event=\"CAPTURE_CANCEL\"/><!--"},
                   {"</ICaptureInfo>", "--></ICaptureInfo>"}},
                  CheckAggregator,
                  "CAPTURE_CANCEL"},
        BrokenRow{"TrayWithoutMethod",
                  {{"<param key=\"METHOD\" value=\"TRAY\"/>", ""}},
                  CheckMethod,
                  "TRAY_CAPTURE_RESUME_EVENT"}),
    [](const testing::TestParamInfo<BrokenRow>& info) { return std::string(info.param.label); });

}  // namespace
