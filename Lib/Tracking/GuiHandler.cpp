#include "Tracking/GuiHandler.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Event.h"
#include "Tracking/IKtTracker.h"
#include "Tracking/LambdaQt4WithStringParameter.h"
#include "Tracking/NotNull.h"
#include "Tracking/QtEventHandler.h"

#include "UI/AbstractPresetButton.h"
#include "UI/ButtonWithPopUpList.h"
#include "Util/LambdaQt4.h"
#include "Util/LambdaQt4WithIntParameter.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QList>
#include <QRegExp>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <optional>
#include <string>
#include <utility>

namespace Velkor::KT::Tracking
{

namespace
{

const char* const AttachedMarker = "GuiElementAutoAttacher_isAttached";

bool IsAttached(const QObject* object)
{
    return object->property(AttachedMarker).isValid();
}

void MarkAttached(QObject* object)
{
    object->setProperty(AttachedMarker, true);
}

// What one search and its hooks need; passed down the whole search of one Attach().
struct ParseContext
{
    IKtTracker* tracker;
    QtEventHandler* eventHandler;
    QObject* target;
};

// The event a hook sends, made once when the hook is made: the configured name and the `param`
// children, of which the first of a key counts.
Event MakeEvent(const Config::Event& config)
{
    Event event{config.event(), {}};
    for (const Config::Param& param : config.param())
    {
        event.params.emplace(param.key(), param.value());
    }
    return event;
}

std::optional<std::string> Optional(const ::xsd::cxx::tree::optional<::xml_schema::string>& value)
{
    if (!value)
    {
        return std::nullopt;
    }
    return std::string(*value);
}

const char* YesNo(bool value)
{
    return value ? "YES" : "NO";
}

// Whether the target restriction leaves `match` its own hooks.
bool GetsOwnHooks(const ParseContext& context, const QObject* match)
{
    return !context.target || context.target == match;
}

// --- Object search ------------------------------------------------------------------------------

bool NameMatchesWhole(const QObject* object, const QString& part, bool isRegExp)
{
    if (isRegExp)
    {
        return QRegExp(part).exactMatch(object->objectName());
    }
    return object->objectName() == part;
}

// `from` itself when its name matches the part whole, then (unless only the start object may
// match) every descendant of class T whose name equals the part, or contains a match of the
// expression, in findChildren() order.
template <typename T>
void AppendPartMatches(QObject* from, const QString& part, const Config::Object& entry,
                       QList<QObject*>& out)
{
    if (NameMatchesWhole(from, part, entry.idIsRegExp()) && qobject_cast<T*>(from))
    {
        out.append(from);
    }
    if (entry.idIsRoot())
    {
        return;
    }
    if (!entry.idIsRegExp())
    {
        for (T* descendant : from->findChildren<T*>(part))
        {
            out.append(descendant);
        }
        return;
    }
    const QRegExp expression(part);
    for (T* descendant : from->findChildren<T*>())
    {
        if (expression.indexIn(descendant->objectName()) != -1)
        {
            out.append(descendant);
        }
    }
}

// Every object of class T that the entry's ":" path names, starting at `start`. An object found
// along two ways is listed twice.
template <typename T>
QList<T*> FindMatches(QObject* start, const Config::Object& entry)
{
    const QStringList parts =
        QString::fromStdString(entry.id()).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    if (parts.isEmpty())
    {
        return {};
    }
    QList<QObject*> current{start};
    for (int i = 0; i + 1 < parts.size(); ++i)
    {
        QList<QObject*> next;
        for (QObject* object : current)
        {
            AppendPartMatches<QObject>(object, parts.at(i), entry, next);
        }
        current = std::move(next);
    }
    QList<QObject*> last;
    for (QObject* object : current)
    {
        AppendPartMatches<T>(object, parts.last(), entry, last);
    }
    QList<T*> matches;
    matches.reserve(last.size());
    for (QObject* object : last)
    {
        matches.append(static_cast<T*>(object));
    }
    return matches;
}

// --- Hooks --------------------------------------------------------------------------------------

void HookEvent(const ParseContext& context, QEvent::Type type, QObject* object,
               const Config::Event& config)
{
    IKtTracker* tracker = context.tracker;
    context.eventHandler->Register(
        type, object, [tracker, event = MakeEvent(config)](QObject*) { tracker->Track(event); });
}

// `clicked-event` and `toggled-event`: the checked state is assigned under `value`.
template <typename Signal>
void HookCheckedSignal(const ParseContext& context, QAbstractButton* button, Signal signal,
                       const Config::OneValueEvent& config)
{
    IKtTracker* tracker = context.tracker;
    QObject::connect(
        button, signal, context.eventHandler,
        [tracker, event = MakeEvent(config), key = Optional(config.value())](bool checked)
        {
            Event copy = event;
            if (key)
            {
                copy.params[*key] = YesNo(checked);
            }
            tracker->Track(copy);
        });
}

void ApplyButtonHooks(const ParseContext& context, QAbstractButton* button,
                      const Config::Button& entry)
{
    if (entry.clicked_event())
    {
        HookCheckedSignal(context, button, &QAbstractButton::clicked, *entry.clicked_event());
    }
    if (entry.toggled_event())
    {
        HookCheckedSignal(context, button, &QAbstractButton::toggled, *entry.toggled_event());
    }
    if (entry.mouse_release_event())
    {
        HookEvent(context, QEvent::MouseButtonRelease, button, *entry.mouse_release_event());
    }
}

void ApplyButton(const ParseContext& context, QAbstractButton* button, const Config::Button& entry)
{
    if (GetsOwnHooks(context, button))
    {
        ApplyButtonHooks(context, button, entry);
    }
}

void ApplyPresetButton(const ParseContext& context, KT::UI::AbstractPresetButton* button,
                       const Config::AbstractPresetButton& entry)
{
    if (!GetsOwnHooks(context, button))
    {
        return;
    }
    ApplyButtonHooks(context, button, entry);
    if (const auto& choose = entry.choosePreset())
    {
        IKtTracker* tracker = context.tracker;
        QObject::connect(button, &KT::UI::AbstractPresetButton::Clicked, context.eventHandler,
                         [tracker, event = MakeEvent(*choose),
                          key = Optional(choose->id())](const QString& presetName)
                         {
                             if (presetName.isEmpty())
                             {
                                 return;
                             }
                             Event copy = event;
                             if (key)
                             {
                                 copy.params.emplace(*key, presetName.toStdString());
                             }
                             tracker->Track(copy);
                         });
    }
}

void ApplyPopUpListButton(const ParseContext& context, KT::ButtonWithPopUpList* button,
                          const Config::ButtonWithPopUpList& entry)
{
    if (!GetsOwnHooks(context, button))
    {
        return;
    }
    ApplyButtonHooks(context, button, entry);
    if (const auto& selected = entry.item_selected())
    {
        IKtTracker* tracker = context.tracker;
        QObject::connect(button, &KT::ButtonWithPopUpList::CurrentIndexChanged,
                         context.eventHandler,
                         [tracker, event = MakeEvent(*selected)](int) { tracker->Track(event); });
    }
}

void ApplyLabel(const ParseContext& context, QLabel* label, const Config::Label& entry)
{
    const auto& activated = entry.link_activated_event();
    if (!GetsOwnHooks(context, label) || !activated)
    {
        return;
    }
    IKtTracker* tracker = context.tracker;
    QObject::connect(label, &QLabel::linkActivated, context.eventHandler,
                     [tracker, event = MakeEvent(*activated),
                      key = Optional(activated->value())](const QString& link)
                     {
                         Event copy = event;
                         if (key)
                         {
                             copy.params[*key] = link.toStdString();
                         }
                         tracker->Track(copy);
                     });
}

// The facts of a combo box's new current item, inserted in the order index, name, mapped,
// dataName: a `param` of the same key keeps its value.
class ComboBoxIndexReporter
{
public:
    explicit ComboBoxIndexReporter(const Config::ComboBoxIndexChangedEvent& config)
        : m_event(MakeEvent(config)),
          m_indexKey(Optional(config.index())),
          m_nameKey(Optional(config.name())),
          m_mappedKey(Optional(config.mapped())),
          m_dataKey(Optional(config.dataName())),
          m_dataRole(config.data())
    {
        for (const Config::Map& map : config.map())
        {
            m_maps.emplace_back(map.key(), map.value());
        }
    }

    Event Report(const QComboBox& comboBox, int index) const
    {
        Event event = m_event;
        const std::string indexText = std::to_string(index);
        if (m_indexKey)
        {
            event.params.emplace(*m_indexKey, indexText);
        }
        if (m_nameKey)
        {
            event.params.emplace(*m_nameKey, comboBox.itemText(index).toStdString());
        }
        if (m_mappedKey)
        {
            for (const auto& [key, value] : m_maps)
            {
                if (key == indexText)
                {
                    event.params.emplace(*m_mappedKey, value);
                    break;
                }
            }
        }
        if (m_dataKey)
        {
            event.params.emplace(*m_dataKey,
                                 comboBox.itemData(index, m_dataRole).toString().toStdString());
        }
        return event;
    }

private:
    Event m_event;
    std::optional<std::string> m_indexKey;
    std::optional<std::string> m_nameKey;
    std::optional<std::string> m_mappedKey;
    std::optional<std::string> m_dataKey;
    int m_dataRole;
    std::vector<std::pair<std::string, std::string>> m_maps;
};

void ApplyComboBox(const ParseContext& context, QComboBox* comboBox, const Config::ComboBox& entry)
{
    const auto& changed = entry.current_index_changed_event();
    if (!GetsOwnHooks(context, comboBox) || !changed)
    {
        return;
    }
    IKtTracker* tracker = context.tracker;
    // The combo box is the sender, so it is alive whenever the functor runs.
    QObject::connect(comboBox, QOverload<int>::of(&QComboBox::currentIndexChanged),
                     context.eventHandler,
                     [tracker, comboBox, reporter = ComboBoxIndexReporter(*changed)](int index)
                     { tracker->Track(reporter.Report(*comboBox, index)); });
}

void ApplyAction(const ParseContext& context, QAction* action, const Config::Action& entry)
{
    const auto& triggered = entry.triggered_event();
    if (!GetsOwnHooks(context, action) || !triggered)
    {
        return;
    }
    IKtTracker* tracker = context.tracker;
    std::optional<QByteArray> propertyName;
    std::optional<QByteArray> propertyValue;
    if (entry.propertyName())
    {
        propertyName = QByteArray::fromStdString(*entry.propertyName());
        if (entry.propertyValue())
        {
            propertyValue = QByteArray::fromStdString(*entry.propertyValue());
        }
    }
    QObject::connect(
        action, &QAction::triggered, context.eventHandler,
        [tracker, action, event = MakeEvent(*triggered), propertyName, propertyValue](bool)
        {
            if (propertyName)
            {
                const QVariant property = action->property(propertyName->constData());
                if (!property.isValid() ||
                    (propertyValue && property.toString().toUtf8() != *propertyValue))
                {
                    return;
                }
            }
            tracker->Track(event);
        });
}

// `signal`, `intSignal` and `stringSignal` of an `object` entry, connected by their signature.
// A signature the object lacks makes Qt's connect fail with its own warning; the slot object
// stays with the event hook all the same.
void ApplyObject(const ParseContext& context, QObject* object, const Config::Object& entry)
{
    IKtTracker* tracker = context.tracker;
    for (const Config::Signal& signal : entry.signal())
    {
        auto* slot = new Util::LambdaQt4([tracker, event = MakeEvent(signal)](QObject*)
                                         { tracker->Track(event); },
                                         context.eventHandler);
        QObject::connect(object, signal.signal().c_str(), slot, "1execute()", Qt::AutoConnection);
    }
    for (const Config::SignalWithParam& signal : entry.intSignal())
    {
        auto* slot = new Util::LambdaQt4WithIntParameter(
            [tracker, event = MakeEvent(signal), key = std::string(signal.key())](QObject*,
                                                                                  int value)
            {
                Event copy = event;
                copy.params[key] = std::to_string(value);
                tracker->Track(copy);
            },
            context.eventHandler);
        QObject::connect(object, signal.signal().c_str(), slot, "1execute(int)",
                         Qt::AutoConnection);
    }
    for (const Config::SignalWithParam& signal : entry.stringSignal())
    {
        auto* slot = new LambdaQt4WithStringParameter(
            [tracker, event = MakeEvent(signal), key = std::string(signal.key())](
                QObject*, const QString& value)
            {
                Event copy = event;
                copy.params[key] = value.toStdString();
                tracker->Track(copy);
            },
            context.eventHandler);
        QObject::connect(object, signal.signal().c_str(), slot, "1execute(QString)",
                         Qt::AutoConnection);
    }
}

template <typename T, typename Entries, typename Apply>
void ApplyAll(const ParseContext& context, QObject* start, const Entries& entries, Apply apply)
{
    for (const auto& entry : entries)
    {
        for (T* match : FindMatches<T>(start, entry))
        {
            apply(context, match, entry);
        }
    }
}

void ApplyWidget(const ParseContext& context, QWidget* widget, const Config::Widget& entry)
{
    ApplyAll<QAbstractButton>(context, widget, entry.button(), ApplyButton);
    ApplyAll<QLabel>(context, widget, entry.label(), ApplyLabel);
    ApplyAll<QComboBox>(context, widget, entry.combobox(), ApplyComboBox);
    ApplyAll<QWidget>(context, widget, entry.widget(), ApplyWidget);
    ApplyAll<QObject>(context, widget, entry.object(), ApplyObject);
    ApplyAll<KT::UI::AbstractPresetButton>(context, widget, entry.abstractPresetButton(),
                                           ApplyPresetButton);
    ApplyAll<KT::ButtonWithPopUpList>(context, widget, entry.buttonWithPopUpList(),
                                      ApplyPopUpListButton);
    if (!GetsOwnHooks(context, widget))
    {
        return;
    }
    if (entry.show_event())
    {
        HookEvent(context, QEvent::Show, widget, *entry.show_event());
    }
    if (entry.close_event())
    {
        HookEvent(context, QEvent::Close, widget, *entry.close_event());
    }
}

// Application-wide event filter that attaches every window when it gets its native window.
class GuiElementAutoAttacher : public QObject
{
public:
    explicit GuiElementAutoAttacher(GuiHandler* handler) : m_handler(handler)
    {
        if (QCoreApplication* application = QCoreApplication::instance())
        {
            application->installEventFilter(this);
        }
    }

    ~GuiElementAutoAttacher() override
    {
        if (QCoreApplication* application = QCoreApplication::instance())
        {
            application->removeEventFilter(this);
        }
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::WinIdChange && m_handler && watched->isWidgetType())
        {
            auto* widget = static_cast<QWidget*>(watched);
            if (widget->isWindow() && !IsAttached(widget))
            {
                m_handler->Attach(widget, nullptr);
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    GuiHandler* const m_handler;
};

}  // namespace

class GuiHandler::Private
{
public:
    Private(GuiHandler* owner, const std::shared_ptr<IKtTracker>& tracker)
        : tracker(tracker), autoAttacher(owner)
    {
    }

    Config::Gui config;
    const NotNull<IKtTracker> tracker;
    QtEventHandler eventHandler;
    GuiElementAutoAttacher autoAttacher;
};

GuiHandler::GuiHandler(const std::shared_ptr<IKtTracker>& tracker)
    : d(std::make_unique<Private>(this, tracker))
{
}

GuiHandler::~GuiHandler() = default;

void GuiHandler::SetConfig(const Config::Gui& config)
{
    d->config = config;
}

void GuiHandler::Attach(QObject* root, QObject* target)
{
    QObject* const marked = target ? target : root;
    if (!root || IsAttached(marked))
    {
        return;
    }
    const ParseContext context{d->tracker.get(), &d->eventHandler, target};
    ApplyAll<QWidget>(context, root, d->config.widget(), ApplyWidget);
    ApplyAll<QObject>(context, root, d->config.object(), ApplyObject);
    ApplyAll<QAction>(context, root, d->config.action(), ApplyAction);
    MarkAttached(marked);
}

void GuiHandler::Attach(QObject* root)
{
    Attach(root, nullptr);
}

void GuiHandler::Attach(QAction* action)
{
    if (!action || IsAttached(action))
    {
        return;
    }
    const ParseContext context{d->tracker.get(), &d->eventHandler, nullptr};
    ApplyAll<QAction>(context, action, d->config.action(), ApplyAction);
    MarkAttached(action);
}

}  // namespace Velkor::KT::Tracking
