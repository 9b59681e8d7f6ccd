// The demo host: a small screen recorder whose statistics go through the whole library.
//
//   KtDemoHost                    plays a scripted session headless and prints every delivered
//                                 event on stdout, in the viewer's text form
//   KtDemoHost --interactive      shows the recorder and the live viewer until they are closed;
//                                 F12 (or Developer > Highlight hooked widgets) outlines the
//                                 widgets that the gui section hooked
//   KtDemoHost --interactive --script [--screenshot FILE]
//                                 plays the session visibly; FILE gets the screen before it quits
//
// Options:
//   --data-dir DIR          analytics events (JSON Lines under DIR/analytics), application
//                           settings and session markers; default: a temporary directory
//   --variant first|second  the main and filter documents: Config.xml and FilterConfig.xml, or
//                           ConfigGACA.xml and FilterConfigGACA.xml (same aggregator rules)
//   --viewer-items FILE     writes the viewer's items to FILE at exit
//   --dump-tree FILE        writes the object trees of all windows to FILE at exit, as JSON, for
//                           kttrack match
//   --record-raw FILE       records every event before the rules touch it to FILE, as JSON Lines
//                           (kttrack replay, coverage and diff read it)
//   --machine-values        prints machine facts (system, hardware, screens, acceleration,
//                           country, bitness) as they are; by default they print as <machine>
//                           so the printout is the same everywhere. The analytics file always
//                           holds the real values.
//   --upload URL            the analytics service uploads to the ClickHouse server at URL
//                           (database "kt", table "events") instead of writing JSON Lines; at
//                           exit it waits until the upload has drained (at most a minute) and
//                           tells its counters on stderr

#include "DemoApplication.h"

#include <glog/logging.h>

#include <QApplication>
#include <QStringList>

#include <iostream>

namespace
{

int Usage()
{
    std::cerr << "usage: KtDemoHost [--interactive [--script] [--screenshot FILE]]"
                 " [--data-dir DIR] [--variant first|second] [--viewer-items FILE]"
                 " [--dump-tree FILE] [--record-raw FILE] [--machine-values] [--upload URL]\n";
    return 2;
}

}  // namespace

int main(int argc, char** argv)
{
    Velkor::Demo::DemoOptions options;
    for (int i = 1; i < argc; ++i)
    {
        const std::string argument = argv[i];
        const bool hasValue = i + 1 < argc;
        if (argument == "--interactive")
        {
            options.interactive = true;
        }
        else if (argument == "--script")
        {
            options.script = true;
        }
        else if (argument == "--machine-values")
        {
            options.machineValues = true;
        }
        else if (argument == "--data-dir" && hasValue)
        {
            options.dataDirectory = QString::fromLocal8Bit(argv[++i]);
        }
        else if (argument == "--screenshot" && hasValue)
        {
            options.screenshotFile = QString::fromLocal8Bit(argv[++i]);
        }
        else if (argument == "--viewer-items" && hasValue)
        {
            options.viewerItemsFile = QString::fromLocal8Bit(argv[++i]);
        }
        else if (argument == "--dump-tree" && hasValue)
        {
            options.treeFile = QString::fromLocal8Bit(argv[++i]);
        }
        else if (argument == "--record-raw" && hasValue)
        {
            options.rawSessionFile = QString::fromLocal8Bit(argv[++i]);
        }
        else if (argument == "--upload" && hasValue)
        {
            options.uploadUrl = QString::fromLocal8Bit(argv[++i]);
        }
        else if (argument == "--variant" && hasValue)
        {
            options.variant = QString::fromLocal8Bit(argv[++i]);
            if (options.variant != "first" && options.variant != "second")
            {
                return Usage();
            }
        }
        else
        {
            return Usage();
        }
    }
    if (!options.interactive && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }

    google::InitGoogleLogging(argv[0]);
    FLAGS_logtostderr = true;
    // The viewer's "Stat:" lines would repeat stdout; warnings and errors still show, and so do
    // the attach reports when verbose logging is on (GLOG_v=1 or 2, GLOG_vmodule=GuiHandler=1).
    FLAGS_minloglevel = google::GLOG_WARNING;

    QApplication application(argc, argv);
    return Velkor::Demo::RunDemo(options);
}
