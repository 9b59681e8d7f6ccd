#include "Tracking/Instances/ValueCallback_p.h"

#include "Tracking/Events/IKtTracker.h"
#include "Tracking/Instances/ValueTexts_p.h"

#include <QRect>
#include <QSize>

namespace Velkor::KT::Tracking
{

Event PrebuiltEvent(const Config::Event& element)
{
    Event event{element.event(), {}};
    for (const auto& param : element.param())
    {
        event.params[param.key()] = param.value();
    }
    return event;
}

namespace Convert
{

std::string Text(const QVariantList& values, int index)
{
    return values.value(index).toString().toStdString();
}

std::string Decimal(const QVariantList& values, int index)
{
    return std::to_string(values.value(index).toLongLong());
}

std::string Flag(const QVariantList& values, int)
{
    return FlagText(values);
}

std::string Size(const QVariantList& values, int index)
{
    return SizeText(values.value(index).toSize());
}

std::string Rect(const QVariantList& values, int index)
{
    return RectText(values.value(index).toRect());
}

Converter Enum(std::string (*table)(int))
{
    return [table](const QVariantList& values, int index)
    { return table(values.value(index).toInt()); };
}

}  // namespace Convert

ValueCallback::ValueCallback(Event prebuilt, std::vector<Slot> parts)
    : m_prebuilt(std::move(prebuilt)), m_parts(std::move(parts))
{
}

void ValueCallback::Fire(IKtTracker& tracker, const QVariantList& values) const
{
    if (!IsConfigured())
    {
        return;
    }
    Event event = m_prebuilt;
    for (const Slot& slot : m_parts)
    {
        event.params[slot.key] = slot.convert(values, slot.index);
    }
    tracker.Track(event);
}

ValueCallback PlainCallback(const Config::Event& element)
{
    return ValueCallback(PrebuiltEvent(element), {});
}

ValueCallback OneValueCallback(const Config::OneValueEvent& element, Converter convert)
{
    std::vector<ValueCallback::Slot> parts;
    if (element.value())
    {
        parts.push_back({*element.value(), 0, std::move(convert)});
    }
    return ValueCallback(PrebuiltEvent(element), std::move(parts));
}

ValueCallback TwoValueCallback(const Config::TwoValueEvent& element, Converter first,
                               Converter second)
{
    std::vector<ValueCallback::Slot> parts;
    if (element.first())
    {
        parts.push_back({*element.first(), 0, std::move(first)});
    }
    if (element.second())
    {
        parts.push_back({*element.second(), 1, std::move(second)});
    }
    return ValueCallback(PrebuiltEvent(element), std::move(parts));
}

ValueCallback CodecSettingsCallback(const Config::CodecSettingsEvent& element)
{
    std::vector<ValueCallback::Slot> parts;
    if (element.bitrateType())
    {
        parts.push_back({*element.bitrateType(), 0, Convert::Enum(BitrateTypeText)});
    }
    if (element.bitrateQuality())
    {
        parts.push_back({*element.bitrateQuality(), 1, Convert::Decimal});
    }
    if (element.convertationPreset())
    {
        parts.push_back({*element.convertationPreset(), 2, Convert::Enum(EncoderPresetText)});
    }
    return ValueCallback(PrebuiltEvent(element), std::move(parts));
}

}  // namespace Velkor::KT::Tracking
