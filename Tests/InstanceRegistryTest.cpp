#include "Core/EventPublisher.h"
#include "KT/ICaptureInfo.h"
#include "KT/InstanceRegistry.h"
#include "KT/Scheduler.h"
#include "KT/Service/AbstractSharingManager.h"
#include "KT/SettingsKinds.h"
#include "Module/Editing/IVECommunicationObserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <ostream>
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
        int index = -1;
        for (std::size_t i = 0; i < m_pool->size(); ++i)
        {
            if (&(*m_pool)[i] == instance)
            {
                index = static_cast<int>(i);
            }
        }
        lines.push_back("-" + typeName + "@" + std::to_string(index));
    }

    std::vector<std::string> lines;

private:
    std::vector<int>* m_pool;
};

struct Step
{
    bool add;
    int object;
};

struct RegistrationRow
{
    const char* label;
    std::vector<Step> steps;
    std::vector<int> expectedLive;
    std::vector<std::string> expectedNotices;
};

void PrintTo(const RegistrationRow& row, std::ostream* out)
{
    *out << row.label;
}

class RegistrationTest : public testing::TestWithParam<RegistrationRow>
{
};

TEST_P(RegistrationTest, KeepsOrderAndTellsEachChangeOnce)
{
    const RegistrationRow& row = GetParam();
    std::vector<int> pool(3);
    InstanceRegistry registry;
    NoticeLog log(&pool);
    registry.AddObserver(&log);
    for (const Step& step : row.steps)
    {
        if (step.add)
        {
            registry.Register(&pool[step.object]);
        }
        else
        {
            registry.Unregister(&pool[step.object]);
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

INSTANTIATE_TEST_SUITE_P(
    Sequences, RegistrationTest,
    testing::Values(
        RegistrationRow{"RegistrationOrderKept", {{true, 2}, {true, 0}}, {2, 0}, {"+int", "+int"}},
        RegistrationRow{"SecondRegistrationIgnored", {{true, 1}, {true, 1}}, {1}, {"+int"}},
        RegistrationRow{"UnregisterTellsAddress",
                        {{true, 0}, {true, 1}, {false, 0}},
                        {1},
                        {"+int", "+int", "-int@0"}},
        RegistrationRow{"UnknownUnregisterSilent", {{true, 0}, {false, 2}}, {0}, {"+int"}},
        RegistrationRow{"ReRegisterGoesLast",
                        {{true, 0}, {true, 1}, {false, 0}, {true, 0}},
                        {1, 0},
                        {"+int", "+int", "-int@0", "+int"}}),
    [](const testing::TestParamInfo<RegistrationRow>& info) { return info.param.label; });

struct TypeNameRow
{
    const char* label;
    std::string actual;
    std::string expected;
};

void PrintTo(const TypeNameRow& row, std::ostream* out)
{
    *out << row.label;
}

// Compilers differ in the blank between closing template brackets.
std::string WithoutBlanks(std::string text)
{
    text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
    return text;
}

class TypeNameTest : public testing::TestWithParam<TypeNameRow>
{
};

TEST_P(TypeNameTest, IsTheQualifiedSourceName)
{
    EXPECT_EQ(GetParam().actual, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Interfaces, TypeNameTest,
    testing::Values(
        TypeNameRow{"Interface", KT::TypeNameOf<KT::IScheduler>(), "Velkor::KT::IScheduler"},
        TypeNameRow{"ConcreteSettings", KT::TypeNameOf<KT::HotkeySettings>(),
                    "Velkor::KT::HotkeySettings"},
        TypeNameRow{"NestedNamespace",
                    KT::TypeNameOf<KT::Service::Sharing::AbstractSharingManager>(),
                    "Velkor::KT::Service::Sharing::AbstractSharingManager"},
        TypeNameRow{"Template",
                    WithoutBlanks(KT::TypeNameOf<Module::Editing::VECommunicationEventPublisher>()),
                    "Velkor::Core::EventHandlerRegistrator<Velkor::Core::EventPublisher<"
                    "Velkor::Module::Editing::IVECommunicationObserver>>"}),
    [](const testing::TestParamInfo<TypeNameRow>& info) { return info.param.label; });

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

TEST(InstanceRegistryTest, PublisherFilesItselfForItsLifetime)
{
    InstanceRegistry registry;
    using Publisher = Module::Editing::VECommunicationEventPublisher;
    {
        Publisher publisher;
        EXPECT_EQ(registry.Get<Publisher>(), std::vector<Publisher*>{&publisher});
    }
    EXPECT_TRUE(registry.Get<Publisher>().empty());
}

}  // namespace
