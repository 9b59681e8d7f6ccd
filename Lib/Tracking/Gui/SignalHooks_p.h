#pragma once

class QObject;

namespace Velkor::KT::Tracking
{

namespace Gui
{
struct ParseContext;
}

namespace Config
{
class Object;
}

// The `signal`, `intSignal` and `stringSignal` triggers of an `object` entry, connected by their
// signature (with Qt's code prefix); the two with a parameter assign its value under `key`. A
// signature the object lacks makes Qt's connect fail with its own warning; the slot object stays
// with the event handler all the same. Object entries ignore the attach target.
void ApplyObject(const Gui::ParseContext& context, QObject* object, const Config::Object& entry);

}  // namespace Velkor::KT::Tracking
