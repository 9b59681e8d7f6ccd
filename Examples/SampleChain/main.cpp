// A small host: builds the usual chain (the shipped filter and aggregator rules in front of the
// debug viewer), tracks a few events from the GUI thread and from a worker thread, and prints the
// viewer's log lines. A stop button's click is held back by the aggregator and reaches the viewer
// on the recorder's stop report, which the filter has classified.
//
//   KtSampleChain            runs headless and exits when every event has been shown
//   KtSampleChain --show     keeps the viewer window open until it is closed
//   KtSampleChain --screenshot FILE   also saves a picture of the viewer to FILE (PNG)

#include "Tracking/Tracking.h"

#include <glog/logging.h>

#include <QApplication>
#include <QListWidget>
#include <QTimer>

#include <cstring>
#include <memory>
#include <thread>

using namespace Velkor::KT::Tracking;


int main(int argc, char** argv)
{
    const bool show = argc > 1 && std::strcmp(argv[1], "--show") == 0;
    const char* screenshot =
        argc > 2 && std::strcmp(argv[1], "--screenshot") == 0 ? argv[2] : nullptr;
    if (!show && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    google::InitGoogleLogging(argv[0]);
    FLAGS_logtostderr = true;

    QApplication application(argc, argv);

    auto viewer = std::make_shared<DebugKtTracker>();
    auto aggregator = std::make_shared<AggregatorKtTracker>(viewer);
    aggregator->SetConfig(LoadConfigFromQrc("/KT/Tracking/AggregatorConfig.xml"));
    auto filter = std::make_shared<FilterKtTracker>(aggregator);
    filter->SetConfig(LoadConfigFromQrc("/KT/Tracking/FilterConfig.xml"));
    std::shared_ptr<IKtTracker> head = filter;

    head->Track({"EMAIL_DIALOG_SHOWN", {{"LANG", "en"}}});
    head->Track({"HOTKEY_TRIGGERED", {{"HOTKEY_ID", "openEditor"}}});  // dropped by the rules
    head->Track({"BUTTON_CAPTURE_STOP_EVENT", {{"METHOD", "BUTTON"}}});  // held back
    std::thread recorder([head] {
        head->Track({"CAPTURE_STOP",
                     {{"DURATION", "90"}, {"AUDIO_SOURCES", ""}, {"FILE_SIZE", "5242880"}}});
    });
    recorder.join();
    head->Track({"APP_EXIT", {}});

    if (!show)
    {
        // Every event has been queued; the viewer shows them when the loop runs, then we stop.
        QTimer::singleShot(0, &application, [&application, screenshot] {
            for (QWidget* window : QApplication::topLevelWidgets())
            {
                if (screenshot && qobject_cast<QListWidget*>(window) && window->isVisible())
                {
                    window->grab().save(QString::fromLocal8Bit(screenshot));
                }
            }
            application.quit();
        });
    }
    const int result = application.exec();
    head.reset();
    viewer.reset();
    return result;
}
