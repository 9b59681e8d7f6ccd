#pragma once

#include "Tracking/Gui/AttachReport.h"
#include "Tracking/TrackingExport.h"

#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>
#include <vector>

class QAction;
class QObject;
class QWidget;

namespace Velkor::KT::Tracking
{

class IKtTracker;

namespace Config
{
class Gui;
struct GuiLines;
}  // namespace Config

// Hooks the widgets, actions and objects that a `gui` configuration section names, and reports
// each configured user action (a click, a toggle, an index change, a shown or closed window, a
// triggered action, a configured signal) as an Event to the tracker.
//
// Objects are found by object name in the tree below the object given to Attach(). An attached
// object is marked with the dynamic property "GuiElementAutoAttacher_isAttached" and is never
// attached again; its hooks live until it or the handler is destroyed. Every top-level window
// that gets its native window while the handler lives is attached by itself, with the section
// that is current at that moment, so SetConfig() should follow construction before any window
// is shown.
//
// Needs the application object; GUI thread only. Nothing here throws on a configuration that
// does not fit the object tree: entries that find nothing are skipped. To see what an attach made
// of each entry, register a report sink (SetAttachReportSink()), or switch on verbose logging for
// this file: at level 1 one summary per attach (what was attached, how many entries hook what,
// the entries that matched nothing, and the problems not said before), at level 2 the whole
// report, for example with GLOG_vmodule=GuiHandler=2. Those lines name the document and have
// severity WARNING, apart from the INFO lines of the viewer's events: a host silences these with
// glog's minloglevel and keeps the reports, or leaves verbose logging off and has no reports.
//
// The library's own windows (the viewer, the highlight's overlays) are never attached.
class KT_TRACKING_EXPORT GuiHandler
{
public:
    // Throws std::logic_error("NotNull can not initialized by null") for an empty tracker.
    explicit GuiHandler(const std::shared_ptr<IKtTracker>& tracker);
    ~GuiHandler();

    // Used for objects attached from now on; objects attached before keep their hooks.
    void SetConfig(const Config::Gui& config);
    // The same, with the line of each entry of the section in its document, in document order
    // (Config::ktmstat() reads them), for the attach reports. Lines that do not fit the section
    // (another count) are dropped.
    void SetConfig(const Config::Gui& config, const std::vector<int>& entryLines);
    // The same, with the lines of the entries and of their signal elements, and the document's
    // name for the log lines ("Config.xml"; without one, "main document").
    void SetConfig(const Config::Gui& config, const Config::GuiLines& lines,
                   const QString& documentName = QString());

    // Called at the end of every attach that searched the section (Attach() in all its forms,
    // also the automatic attaching of new windows), with what it made of each entry; not called
    // for an object that was attached before. An empty sink (the default) switches the reports
    // off, and attaching then costs no more than without them. The report is made during the
    // attach only: watched objects' events cost the same either way.
    void SetAttachReportSink(AttachReportSink sink);

    // Searches every entry of the section below `root`. With a `target`, only `target` gets
    // hooks of its own (`object` entries excepted: they hook every object they find), and
    // `target` is the object that is marked as attached.
    void Attach(QObject* root, QObject* target);
    void Attach(QObject* root);
    // Attaches one action with the section's `action` entries only.
    void Attach(QAction* action);
    // Attaches each top-level widget (QApplication::topLevelWidgets()), in the list's order, with
    // `attachWindow` (by default Attach(window)), then each action the widgets list, once, with
    // Attach(action): one attach report for all of them.
    void AttachAllTopLevelWindows(const std::function<void(QWidget*)>& attachWindow = {});

private:
    Q_DISABLE_COPY(GuiHandler)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
