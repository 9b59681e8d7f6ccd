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
}

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
//            "properties": {"state": "Configuring"},   // dynamic properties, as text
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
// StatisticsManager::AttachAllTopLevelWindows() attaches.
KT_TRACKING_EXPORT QJsonDocument DumpTopLevelWidgets();

// Matches `section` against a dumped tree the way StatisticsManager::AttachAllTopLevelWindows()
// attaches the same windows: each root in turn, then every action the roots' widgets list, each
// once, with the section's `action` entries. The report is made by the code that makes the
// report of a live attach, objects left null. `entryLines`: the lines of the section's entries
// (see CheckGuiSection()). A document that is not such a tree gives an empty report and its
// reason in `errorString`.
KT_TRACKING_EXPORT AttachReport MatchObjectTree(const QJsonDocument& tree,
                                                const Config::Gui& section,
                                                const std::vector<int>& entryLines = {},
                                                QString* errorString = nullptr);

}  // namespace Velkor::KT::Tracking
