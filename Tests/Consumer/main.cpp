#include "Tracking/Tracking.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>
#include <memory>

// Builds the smallest chain a host can build and checks that an event reaches its endpoint.
class Counter : public Velkor::KT::Tracking::IKtTrackingEndpoint
{
public:
    void Track(const Velkor::KT::Tracking::Event&) override { ++count; }
    int count = 0;
};

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    auto counter = std::make_shared<Counter>();
    std::shared_ptr<Velkor::KT::Tracking::IKtTracker> head = counter;
    head->Track({"CONSUMER_EVENT", {{"K", "v"}}});

    auto viewer = std::make_shared<Velkor::KT::Tracking::DebugKtTracker>();
    viewer->Track({"CONSUMER_EVENT", {}});
    QTimer::singleShot(0, &application, &QApplication::quit);
    application.exec();

    std::printf("delivered %d\n", counter->count);
    return counter->count == 1 ? 0 : 1;
}
