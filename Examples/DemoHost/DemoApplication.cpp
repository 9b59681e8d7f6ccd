#include "DemoApplication.h"

#include "HostServices.h"
#include "MachineValues.h"
#include "MainWindow.h"
#include "Recorder.h"
#include "SessionPrinter.h"
#include "SessionScript.h"

#include "Analytics/ApplicationTrackerFactory.h"
#include "Analytics/JsonLinesApplicationTracker.h"
#include "Analytics/UploadingApplicationTracker.h"
#include "Tracking/Manager/StatisticsManager.h"
#include "Tracking/Tracking.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>

#include <chrono>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace Velkor::Demo
{

namespace
{

using namespace KT::Tracking;

struct Documents
{
    const char* main;
    const char* filter;
};

Documents DocumentsOf(const QString& variant)
{
    if (variant == "second")
    {
        return {"/KT/Tracking/ConfigGACA.xml", "/KT/Tracking/FilterConfigGACA.xml"};
    }
    return {"/KT/Tracking/Config.xml", "/KT/Tracking/FilterConfig.xml"};
}

// The debug viewer's window: the top-level list that is not a pop-up of one of our buttons.
QListWidget* ViewerWindow()
{
    for (QWidget* widget : QApplication::topLevelWidgets())
    {
        auto* list = qobject_cast<QListWidget*>(widget);
        if (list && list->windowType() == Qt::Window)
        {
            return list;
        }
    }
    return nullptr;
}

bool WriteViewerItems(const QString& path, bool maskMachineValues)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
    {
        std::cerr << "Can't write " << path.toStdString() << "\n";
        return false;
    }
    if (QListWidget* viewer = ViewerWindow())
    {
        for (int row = 0; row < viewer->count(); ++row)
        {
            std::string text = viewer->item(row)->text().toStdString();
            if (maskMachineValues)
            {
                text = MaskMachineValues(text);
            }
            file.write(text.data(), qint64(text.size()));
        }
    }
    return true;
}

bool WriteTree(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write(DumpTopLevelWidgets().toJson()) < 0)
    {
        std::cerr << "Can't write " << path.toStdString() << "\n";
        return false;
    }
    return true;
}

// The Developer menu's entry, also on F12 in every window, switches the outlines of the hooked
// widgets on and off.
void AddHighlightSwitch(QMainWindow& window, HookHighlight& highlight)
{
    QAction* const toggle =
        window.menuBar()->addMenu("&Developer")->addAction("Highlight hooked widgets");
    toggle->setCheckable(true);
    toggle->setShortcut(QKeySequence(Qt::Key_F12));
    toggle->setShortcutContext(Qt::ApplicationShortcut);
    QObject::connect(toggle, &QAction::toggled, &window,
                     [&highlight](bool on) { highlight.SetShown(on); });
}

void SaveScreen(const QString& path)
{
    QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen || !screen->grabWindow(0).save(path, "PNG"))
    {
        std::cerr << "Can't save the screen to " << path.toStdString() << "\n";
    }
}

}  // namespace

int RunDemo(const DemoOptions& options)
{
    QTemporaryDir temporary;
    const QString dataDirectory =
        options.dataDirectory.isEmpty() ? temporary.path() : options.dataDirectory;
    QDir().mkpath(dataDirectory);

    HostServices services(dataDirectory);

    // The analytics service: the JSON Lines file, or with an upload URL the uploader, installed
    // the way a host installs it.
    Analytics::RefPtr<Analytics::UploadingApplicationTracker> uploader;
    if (!options.uploadUrl.isEmpty())
    {
        Analytics::UploadOptions upload;
        upload.url = options.uploadUrl.toStdString();
        upload.applicationVersion = HostServices::kProductVersion;
        upload.productSettings = services.productSettings;
        try
        {
            uploader = Analytics::UploadingApplicationTracker::Create(upload);
        }
        catch (const std::invalid_argument& error)
        {
            std::cerr << error.what() << "\n";
            return 2;
        }
    }
    Analytics::ScopedApplicationTrackerCreator analytics(
        [uploader]
        {
            if (uploader)
            {
                return Analytics::RefPtr<Analytics::IApplicationTracker>(uploader);
            }
            return Analytics::RefPtr<Analytics::IApplicationTracker>(
                Analytics::JsonLinesApplicationTracker::Create());
        });

    // The chain, back to front.
    const Documents documents = DocumentsOf(options.variant);
    auto viewer = std::make_shared<DebugKtTracker>();
    auto printer = std::make_shared<SessionPrinter>(std::cout, !options.machineValues);
    auto delivery = std::make_shared<ForwardKtTracker>(
        services.customization, services.productSettings, services.sessionId,
        App::ioPath(QDir(dataDirectory).filePath("analytics")),
        std::vector<std::shared_ptr<IKtTrackingEndpoint>>{viewer, printer});
    auto aggregator = std::make_shared<AggregatorKtTracker>(delivery);
    aggregator->SetConfig(LoadConfigFromQrc("/KT/Tracking/AggregatorConfig.xml"));
    auto filter = std::make_shared<FilterKtTracker>(aggregator);
    filter->SetConfig(LoadConfigFromQrc(documents.filter));
    std::shared_ptr<IKtTracker> head = filter;
    if (!options.rawSessionFile.isEmpty())
    {
        auto recorder = std::make_shared<RecordingKtTracker>(filter, options.rawSessionFile);
        if (!recorder->IsRecording())
        {
            return 1;
        }
        head = recorder;
    }

    auto manager = std::make_unique<StatisticsManager>(
        head, services.lookAndFeel, services.productSettingsManager, services.applicationSettings,
        services.launchType, services.crashTracker, services.convertationSettings,
        std::vector<FillerTypes>{FillerTypes::Accelerators, FillerTypes::HyperPass,
                                 FillerTypes::AppLanguage, FillerTypes::CountryName,
                                 FillerTypes::MonitorsConfig, FillerTypes::AppConfig,
                                 FillerTypes::HardwareConfig, FillerTypes::OSConfig});
    manager->SetConfig(LoadConfigFromQrc(documents.main), std::string(":") + documents.main);

    // An interactive session can outline what the gui section hooked; the highlight takes the
    // report of every attach.
    std::unique_ptr<HookHighlight> highlight;
    if (options.interactive)
    {
        highlight = std::make_unique<HookHighlight>();
        manager->SetAttachReportSink(highlight->ReportSink());
    }

    SimulatedClock clock;
    Recorder recorder(services, clock);
    auto window = std::make_unique<MainWindow>(
        services, recorder, [&manager](QWidget* created) { manager->AttachQObject(created); });
    if (highlight)
    {
        AddHighlightSwitch(*window, *highlight);
    }
    manager->AttachAllTopLevelWindows();
    manager->AttachInstances();
    window->show();

    const bool script = options.script || !options.interactive;
    std::unique_ptr<SessionScript> session;
    if (script)
    {
        session = std::make_unique<SessionScript>(*window, recorder, clock, services,
                                                  options.interactive ? 150 : 0);
        QTimer::singleShot(0, window.get(),
                           [&]
                           {
                               session->Play(
                                   [&]
                                   {
                                       if (!options.screenshotFile.isEmpty())
                                       {
                                           SaveScreen(options.screenshotFile);
                                       }
                                   });
                           });
    }
    const int result = QApplication::exec();
    // The windows the session opened are all there still, hidden.
    const bool treeWritten = options.treeFile.isEmpty() || WriteTree(options.treeFile);

    // The exit event, then everything still queued for the viewer.
    manager.reset();
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    bool drained = true;
    if (uploader)
    {
        drained = uploader->Flush(std::chrono::seconds(60));
        const Analytics::UploadCounters counters = uploader->Counters();
        std::cerr << "upload: " << counters.spooled << " spooled, " << counters.sent << " sent, "
                  << counters.backlog << " left" << (drained ? "" : ": " + counters.lastError)
                  << "\n";
    }
    bool written = true;
    if (!options.viewerItemsFile.isEmpty())
    {
        written = WriteViewerItems(options.viewerItemsFile, !options.machineValues);
    }
    session.reset();
    window.reset();
    return result != 0 ? result : (written && treeWritten && drained ? 0 : 1);
}

}  // namespace Velkor::Demo
