// A small host: builds a chain of one rewriting stage in front of the debug viewer, tracks a
// few events from the GUI thread and from a worker thread, and prints the viewer's log lines.
//
//   KtSampleChain            runs headless and exits when every event has been shown
//   KtSampleChain --show     keeps the viewer window open until it is closed
//   KtSampleChain --screenshot FILE   also saves a picture of the viewer to FILE (PNG)

#include "Tracking/Tracking.h"

#include <glog/logging.h>

#include <QApplication>
#include <QListWidget>
#include <QTimer>

#include <atomic>
#include <cstring>
#include <memory>
#include <thread>

using namespace Velkor::KT::Tracking;

namespace
{

// A pass-through stage that stamps every event with the position it had in the stream.
class NumberingStage : public IKtTracker
{
public:
    explicit NumberingStage(const std::shared_ptr<IKtTracker>& next) : m_next(next) {}

    void Track(const Event& event) override
    {
        Event numbered = event;
        numbered.params.emplace("SEQ", std::to_string(++m_count));
        m_next->Track(numbered);
    }

private:
    NotNull<IKtTracker> m_next;
    std::atomic<int> m_count{0};
};

}  // namespace

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
    std::shared_ptr<IKtTracker> head = std::make_shared<NumberingStage>(viewer);

    head->Track({"APP_EVERY_START", {{"LANG", "en"}}});
    head->Track({"EMAIL_DIALOG_SHOWN", {{"LANG", "en"}}});
    std::thread worker([head] {
        head->Track({"CAPTURE_STOP", {{"DURATION", "90"}, {"AUDIO_SOURCES", ""}, {"FILE_SIZE", "5242880"}}});
    });
    worker.join();
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
