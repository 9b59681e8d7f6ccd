#pragma once

#include "Tracking/Config/KtmStat.hxx"
#include "Tracking/Events/Event.h"

#include <QVariantList>

#include <functional>
#include <string>
#include <vector>

namespace Velkor::KT::Tracking
{

class IKtTracker;

// Builds the event of a callback element: its name and its fixed "param" properties, assigned in
// document order (of two params with one key the later one stays).
Event PrebuiltEvent(const Config::Event& element);

// Turns a notification's values (list form) into the text of one property.
using Converter = std::function<std::string(const QVariantList& values, int index)>;

namespace Convert
{
// The value as text as delivered (strings, colours as "#rrggbb").
std::string Text(const QVariantList& values, int index);
std::string Decimal(const QVariantList& values, int index);
// The whole list as a flag (see FlagText).
std::string Flag(const QVariantList& values, int index);
std::string Size(const QVariantList& values, int index);
std::string Rect(const QVariantList& values, int index);
Converter Enum(std::string (*table)(int));
}  // namespace Convert

// One configured callback: its prebuilt event and the properties a notification adds, each the
// converted value at `index` under the key written in the configuration. Not configured
// (default-constructed, or built from an element without an event name): fires nothing.
class ValueCallback
{
public:
    struct Slot
    {
        std::string key;
        int index;
        Converter convert;
    };

    ValueCallback() = default;
    ValueCallback(Event prebuilt, std::vector<Slot> parts);

    bool IsConfigured() const { return !m_prebuilt.name.empty(); }

    // Tracks a copy of the prebuilt event with the added properties (assigned, so they replace a
    // fixed param of the same key).
    void Fire(IKtTracker& tracker, const QVariantList& values) const;

private:
    Event m_prebuilt;
    std::vector<Slot> m_parts;
};

// Builders by callback kind; an absent key attribute adds no slot.
ValueCallback PlainCallback(const Config::Event& element);
ValueCallback OneValueCallback(const Config::OneValueEvent& element, Converter convert);
ValueCallback TwoValueCallback(const Config::TwoValueEvent& element, Converter first,
                               Converter second);
// Values: bitrate type, bitrate quality, encoder speed preset.
ValueCallback CodecSettingsCallback(const Config::CodecSettingsEvent& element);

// Builds one-value callbacks that convert with `convert`; for IfPresent().
inline auto OneValueWith(Converter convert)
{
    return [convert](const Config::OneValueEvent& element)
    { return OneValueCallback(element, convert); };
}

template <class Element, class Build>
ValueCallback IfPresent(const ::xsd::cxx::tree::optional<Element>& element, Build build)
{
    return element ? build(*element) : ValueCallback();
}

}  // namespace Velkor::KT::Tracking
