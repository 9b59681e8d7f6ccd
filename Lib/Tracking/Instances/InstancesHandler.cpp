#include "Tracking/Instances/InstancesHandler.h"

#include "KT/InstanceRegistry.h"
#include "Tracking/Events/IKtTracker.h"
#include "Tracking/Events/NotNull_p.h"
#include "Tracking/Instances/ObserversHolder_p.h"
#include "Tracking/Instances/ParseContext_p.h"
#include "Tracking/Instances/SectionTable_p.h"

#include "Tracking/Config/KtmStat.hxx"

#include <map>
#include <string>

namespace Velkor::KT::Tracking
{

class InstancesHandler::Private : public KT::IInstanceRegistryObserver
{
public:
    Private(const std::shared_ptr<IKtTracker>& tracker, AcceleratorProperties accelerators)
        : tracker(tracker), accelerators(std::move(accelerators))
    {
        for (const InstancesSection& section : InstancesSections())
        {
            if (!section.hostType.empty())
            {
                const auto attach = section.attach;
                dispatch.emplace(section.hostType, [this, attach](const ParseContext& context)
                                 { Attach(attach, context); });
            }
        }
        if (auto* registry = KT::InstanceRegistry::Instance())
        {
            registry->AddObserver(this);
        }
    }

    ~Private() override
    {
        if (auto* registry = KT::InstanceRegistry::Instance())
        {
            registry->RemoveObserver(this);
        }
        dispatch.clear();
    }

    ParseContext Context()
    {
        return ParseContext{tracker.get(), KT::InstanceRegistry::Instance(), &holder,
                            &accelerators};
    }

    void Attach(void (*attach)(const Config::Instances&, const ParseContext&),
                const ParseContext& context)
    {
        if (config)
        {
            attach(*config, context);
        }
    }

    void OnInstanceRegistered(const std::string& typeName) override
    {
        const auto found = dispatch.find(typeName);
        if (found != dispatch.end())
        {
            found->second(Context());
        }
    }

    void OnInstanceUnregistered(const std::string&, void*) override {}

    std::unique_ptr<Config::Instances> config;
    const NotNull<IKtTracker> tracker;
    const AcceleratorProperties accelerators;
    BadMemoryManagment::ObserversHolder holder;
    std::map<std::string, std::function<void(const ParseContext&)>> dispatch;
};

InstancesHandler::InstancesHandler(const std::shared_ptr<IKtTracker>& tracker,
                                   AcceleratorProperties accelerators)
    : d(std::make_unique<Private>(tracker, std::move(accelerators)))
{
}

InstancesHandler::~InstancesHandler() = default;

void InstancesHandler::SetConfig(const Config::Instances& config)
{
    d->config = std::make_unique<Config::Instances>(config);
}

void InstancesHandler::AttachInstances()
{
    const ParseContext context = d->Context();
    for (const InstancesSection& section : InstancesSections())
    {
        d->Attach(section.attach, context);
    }
}

}  // namespace Velkor::KT::Tracking
