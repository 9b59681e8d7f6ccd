#include "Tracking/Instances/ConverterObserver_p.h"

#include "Tracking/Events/IKtTracker.h"
#include "Tracking/Instances/ValueTexts_p.h"

namespace Velkor::KT::Tracking
{

namespace
{

std::string PresetText(const boost::property_tree::ptree& tree, const std::string& first,
                       const std::string& second)
{
    using Path = boost::property_tree::ptree::path_type;
    const auto child = tree.get_child_optional(Path(first, '/'));
    if (!child)
    {
        return {};
    }
    return second.empty() ? child->get_value<std::string>()
                          : child->get<std::string>(Path(second, '/'), std::string());
}

}  // namespace

ConverterObserver::ConverterObserver(KT::IConverter* service, IKtTracker* tracker,
                                     const Config::IConverter& section)
    : AttachedObserver(service, tracker),
      m_start(section.start() ? std::optional<Config::ConvertStartEvent>(*section.start())
                              : std::nullopt),
      m_stop(section.stop() ? std::optional<Config::ConvertStopEvent>(*section.stop())
                            : std::nullopt),
      m_startEvent(m_start ? PrebuiltEvent(*m_start) : Event{}),
      m_stopEvent(m_stop ? PrebuiltEvent(*m_stop) : Event{}),
      m_pause(IfPresent(section.pause(), PlainCallback)),
      m_resume(IfPresent(section.resume(), PlainCallback)),
      m_error(IfPresent(section.error(), PlainCallback))
{
}

std::string ConverterObserver::CutIntervalsText(const KT::ConvertationContext& context)
{
    std::string text;
    for (const auto& [begin, end] : context.cutIntervals)
    {
        if (!text.empty())
        {
            text += ";";
        }
        text += std::to_string(begin) + "-" + std::to_string(end);
    }
    return text;
}

void ConverterObserver::OnConversionStarted(const KT::ConvertationContext& context)
{
    if (!m_start || m_startEvent.name.empty())
    {
        return;
    }
    Event event = m_startEvent;
    if (const auto& c = m_start->context())
    {
        if (const auto& project = c->project())
        {
            Put(event, project->size(), [&] { return std::to_string(context.project.size); });
        }
        Put(event, c->outputFilePath(), [&] { return context.outputFilePath.toStdString(); });
        if (const auto& preset = c->preset())
        {
            const auto& tree = context.preset.properties;
            Put(event, preset->name(), [&] { return context.preset.name; });
            Put(event, preset->videoCodec(),
                [&] { return PresetText(tree, "$$VIDEO_CODEC$$", "codec_id"); });
            Put(event, preset->audioCodec(),
                [&] { return PresetText(tree, "$$AUDIO_CODEC$$", "codec_id"); });
            Put(event, preset->container(), [&] { return PresetText(tree, "container", ""); });
        }
        Put(event, c->cutIntervals(), [&] { return CutIntervalsText(context); });
    }
    Put(event, m_start->acceleration(),
        [&] { return AccelerationText(m_service->GetAccelerationType()); });
    m_tracker->Track(event);
}

void ConverterObserver::OnConversionFinished(int result)
{
    if (!m_stop || m_stopEvent.name.empty())
    {
        return;
    }
    Event event = m_stopEvent;
    Put(event, m_stop->reason(), [&] { return ConversionResultText(result); });
    m_tracker->Track(event);
}

void ConverterObserver::OnConversionError()
{
    m_error.Fire(*m_tracker, {});
}

void ConverterObserver::OnConversionPaused()
{
    m_pause.Fire(*m_tracker, {});
}

void ConverterObserver::OnConversionResumed()
{
    m_resume.Fire(*m_tracker, {});
}

void ConverterObserver::OnConversionProgress(int) {}

}  // namespace Velkor::KT::Tracking
