#pragma once

#include "Tracking/Gui/AttachReport.h"
#include "Tracking/TrackingExport.h"

#include <QJsonDocument>
#include <QObjectList>
#include <QString>

#include <vector>

namespace Velkor::KT::Tracking
{

namespace Config
{
class Gui;
struct GuiLines;
}  // namespace Config

// A tree of objects as JSON: what the search of a `gui` section sees of a running application,
// so that a section can be matched against it later, away from the application
// (MatchObjectTree(), `kttrack match`). The document:
//
//   {"format": "KtTracking object tree", "version": 1,
//    "roots": [OBJECT, ...],
//    "otherObjects": [OBJECT, ...],
//    "classes": {"QPushButton": {"superClass": "QAbstractButton", "signals": []},
//                "QAbstractButton": {"superClass": "QWidget",
//                                    "signals": ["pressed()", "clicked(bool)", "clicked()", ...]},
//                ...}}
//
//   OBJECT: {"objectName": "stopButton", "className": "QPushButton",
//            "classChain": ["QPushButton", "QAbstractButton", "QWidget", "QObject"],
//            "path": "CaptureControlPanel/stopButton", "parentPath": "CaptureControlPanel",
//            "properties": {"state": "Configuring"},   // dynamic properties, and an action's
//                                                      // Qt properties, as text
//            "actions": ["MainWindow/ActionQuit"],       // widgets: QWidget::actions(), by path
//            "children": [OBJECT or {"seeRoot": PATH}, ...]}   // QObject::children() order
//
// Each object is written once. A root that lies in the tree of another root (a dialog whose
// parent is the main window) is written in "roots", and stands as {"seeRoot": its path} among
// its parent's children; actions that widgets list but that lie in no dumped tree (kept by an
// object that is not dumped) are written in "otherObjects". Classes are named as their
// meta-objects name them (a class without Q_OBJECT shows as its nearest Qt base), with the
// signals each declares itself, normalised as QMetaMethod::methodSignature() writes them. Paths
// are those of the attach report (see AttachReport::Match): object names from the top of the
// object's tree down, joined by "/".
//
// GUI thread only.

// The trees below `roots`, in that order.
KT_TRACKING_EXPORT QJsonDocument DumpObjectTree(const QObjectList& roots);

// The trees of all top-level widgets (QApplication::topLevelWidgets()): the windows
// StatisticsManager::AttachAllTopLevelWindows() attaches; the library's own windows (the viewer,
// the highlight's overlays) are left out.
KT_TRACKING_EXPORT QJsonDocument DumpTopLevelWidgets();

// Matches `section` against a dumped tree the way GuiHandler::AttachAllTopLevelWindows()
// attaches the same windows: each root in turn, then every action the roots' widgets list, each
// once, with the section's `action` entries. A dump taken after the section was attached (its
// objects carry the attached marker) is matched as the windows were attached: only the roots and
// actions that carry the marker, so a window that was attached by itself after start-up, whose
// actions had no pass of their own, is matched so too. The library's own windows are left out.
// The report is made by the code that makes the report of a live attach, objects left null.
// `lines`: those of the section's entries and signals (see CheckGuiSection()). A document that is
// not such a tree gives an empty report and its reason in `errorString`.
KT_TRACKING_EXPORT AttachReport MatchObjectTree(const QJsonDocument& tree,
                                                const Config::Gui& section,
                                                const Config::GuiLines& lines,
                                                QString* errorString = nullptr);
// The same with the lines of the entries only.
KT_TRACKING_EXPORT AttachReport MatchObjectTree(const QJsonDocument& tree,
                                                const Config::Gui& section,
                                                const std::vector<int>& entryLines = {},
                                                QString* errorString = nullptr);

}  // namespace Velkor::KT::Tracking
