#pragma once

#include "Tracking/Gui/AttachReport.h"
#include "Tracking/TrackingExport.h"

#include <QtGlobal>

#include <memory>
#include <vector>

class QAction;
class QObject;

namespace Velkor::KT::Tracking
{

class IKtTracker;

namespace Config
{
class Gui;
}

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
// of each entry, register a report sink (SetAttachReportSink()), or switch on verbose logging at
// level 1 (problems and a summary per attach) or 2 (the whole report), for example with
// GLOG_vmodule=GuiHandler=2.
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

private:
    Q_DISABLE_COPY(GuiHandler)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
