#pragma once

#include <QString>

namespace Velkor::Demo
{

struct DemoOptions
{
    // Where the analytics events, the application settings and the session markers go; a
    // temporary directory, removed at exit, when empty.
    QString dataDirectory;
    // Shows the windows for a person; without `script` the application runs until closed.
    bool interactive = false;
    // Plays the scripted session (always so when not interactive).
    bool script = false;
    // Saves a picture of the screen, right before the session quits, as PNG.
    QString screenshotFile;
    // Writes the viewer's items at exit, in its text form.
    QString viewerItemsFile;
    // Writes the object trees of all windows at exit, as JSON (for kttrack match).
    QString treeFile;
    // Records every event at the head of the chain, before the filter, as JSON Lines.
    QString rawSessionFile;
    // Prints machine facts as they are instead of "<machine>".
    bool machineValues = false;
    // "first": Config.xml and FilterConfig.xml; "second": ConfigGACA.xml and FilterConfigGACA.xml.
    QString variant = "first";
    // When set, the analytics service is the uploader (Kt::Analytics) posting to this ClickHouse
    // URL (database "kt", table "events") instead of the JSON Lines file; at exit the demo waits
    // until the upload has drained and tells its counters on stderr.
    QString uploadUrl;
};

// The recorder assembled as a host assembles it: services and settings objects in the instance
// registry, the tracker chain (filter, aggregator, delivery to the viewer, to the session
// printout on stdout and to the analytics service), the statistics manager over it, and the
// windows. Returns the process exit code.
int RunDemo(const DemoOptions& options);

}  // namespace Velkor::Demo
