// The host's reference instance registry, on which the instances handler relies: order of
// registration, one notice per change, observers removed while they are told.

#include "Core/EventPublisher.h"
#include "KT/InstanceRegistry.h"
#include "KT/Scheduler.h"
#include "Module/Editing/IVECommunicationObserver.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Velkor;
using KT::InstanceRegistry;

namespace
{

// Records every notice as "+type" or "-type@index" (index of the object in the test's pool).
class NoticeLog : public KT::IInstanceRegistryObserver
{
public:
    explicit NoticeLog(std::vector<int>* pool) : m_pool(pool) {}

    void OnInstanceRegistered(const std::string& typeName) override
    {
        lines.push_back("+" + typeName);
    }
    void OnInstanceUnregistered(const std::string& typeName, void* instance) override
    {
        const auto index = static_cast<int*>(instance) - m_pool->data();
        lines.push_back("-" + typeName + "@" + std::to_string(index));
    }

    std::vector<std::string> lines;

private:
    std::vector<int>* m_pool;
};

// Steps: "+N" registers the pool's object N, "-N" unregisters it.
struct RegistrationRow
{
    const char* label;
    std::string steps;
    std::vector<int> expectedLive;
    std::vector<std::string> expectedNotices;
};
using RegistrationTest = KtTest::Table<RegistrationRow>;

TEST_P(RegistrationTest, KeepsOrderAndTellsEachChangeOnce)
{
    const RegistrationRow& row = GetParam();
    std::vector<int> pool(3);
    InstanceRegistry registry;
    NoticeLog log(&pool);
    registry.AddObserver(&log);
    for (std::size_t i = 0; i + 1 < row.steps.size(); i += 2)
    {
        int* const object = &pool[row.steps[i + 1] - '0'];
        if (row.steps[i] == '+')
        {
            registry.Register(object);
        }
        else
        {
            registry.Unregister(object);
        }
    }
    std::vector<int*> expected;
    for (int index : row.expectedLive)
    {
        expected.push_back(&pool[index]);
    }
    EXPECT_EQ(registry.Get<int>(), expected);
    EXPECT_EQ(log.lines, row.expectedNotices);
    EXPECT_TRUE(registry.DoGet("double").empty());
    registry.RemoveObserver(&log);
}

KT_ROWS(RegistrationTest,
        {{"RegistrationOrderKept", "+2+0", {2, 0}, {"+int", "+int"}},
         {"SecondRegistrationIgnored", "+1+1", {1}, {"+int"}},
         {"UnregisterTellsAddress", "+0+1-0", {1}, {"+int", "+int", "-int@0"}},
         {"UnknownUnregisterSilent", "+0-2", {0}, {"+int"}},
         {"ReRegisterGoesLast", "+0+1-0+0", {1, 0}, {"+int", "+int", "-int@0", "+int"}}});

TEST(InstanceRegistryTest, ExistsOnlyWhileAlive)
{
    EXPECT_EQ(InstanceRegistry::Instance(), nullptr);
    {
        InstanceRegistry registry;
        EXPECT_EQ(InstanceRegistry::Instance(), &registry);
        EXPECT_THROW(InstanceRegistry{}, std::logic_error);
        EXPECT_EQ(InstanceRegistry::Instance(), &registry);
    }
    EXPECT_EQ(InstanceRegistry::Instance(), nullptr);
}

// An observer that unsubscribes itself and the next observer on its first notice: neither may be
// told anything afterwards, including later in the same round.
class Unsubscriber : public KT::IInstanceRegistryObserver
{
public:
    KT::IInstanceRegistryObserver* other = nullptr;
    int notices = 0;

    void OnInstanceRegistered(const std::string&) override
    {
        ++notices;
        InstanceRegistry::Instance()->RemoveObserver(this);
        InstanceRegistry::Instance()->RemoveObserver(other);
    }
    void OnInstanceUnregistered(const std::string&, void*) override { ++notices; }
};

TEST(InstanceRegistryTest, ObserverRemovedDuringNoticeIsNotCalledAgain)
{
    InstanceRegistry registry;
    Unsubscriber first;
    Unsubscriber second;
    first.other = &second;
    registry.AddObserver(&first);
    registry.AddObserver(&second);
    registry.AddObserver(&first);  // a second add changes nothing
    KT::Scheduler scheduler;
    registry.Register<KT::IScheduler>(&scheduler);
    registry.Unregister<KT::IScheduler>(&scheduler);
    EXPECT_EQ(first.notices, 1);
    EXPECT_EQ(second.notices, 0);
}

}  // namespace
