#include "Tracking/GuiHandler.h"

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Gui/AttachedMarker.h"
#include "Tracking/Gui/GuiElementAutoAttacher.h"
#include "Tracking/Gui/ParseContext.h"
#include "Tracking/Gui/SectionHooks.h"
#include "Tracking/IKtTracker.h"
#include "Tracking/NotNull.h"
#include "Tracking/QtEventHandler.h"

#include <QAction>

namespace Velkor::KT::Tracking
{

class GuiHandler::Private
{
public:
    Private(GuiHandler* owner, const std::shared_ptr<IKtTracker>& tracker)
        : tracker(tracker), autoAttacher(owner)
    {
    }

    Gui::ParseContext Context(QObject* target)
    {
        return Gui::ParseContext{tracker.get(), &eventHandler, target};
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
    HookSection(d->Context(target), root, d->config);
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
    HookActionEntries(d->Context(nullptr), action, d->config);
    MarkAttached(action);
}

}  // namespace Velkor::KT::Tracking
