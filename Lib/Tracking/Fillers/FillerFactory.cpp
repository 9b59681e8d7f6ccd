#include "Tracking/Fillers/FillerFactory_p.h"

#include "Analytics/AcceleratorsPropertiesFiller.h"
#include "Analytics/HardwareConfigFiller.h"
#include "Analytics/OSConfigFiller.h"
#include "App/ILookAndFeelManager.h"
#include "Tracking/Fillers/AppConfigFiller_p.h"
#include "Tracking/Fillers/AppLanguageFiller_p.h"
#include "Tracking/Fillers/CountryNameFiller_p.h"
#include "Tracking/Fillers/HyperPassPropertiesFiller_p.h"
#include "Tracking/Fillers/MonitorsConfigFiller_p.h"

#include <algorithm>

namespace Velkor::KT::Tracking::Fillers
{

FillerMap CreateAvailableFillers(const std::shared_ptr<App::ILookAndFeelManager>& lookAndFeel,
                                 const std::shared_ptr<ConvertationSettings>& convertation,
                                 const std::vector<FillerTypes>& requested)
{
    auto isRequested = [&requested](FillerTypes type)
    { return std::find(requested.begin(), requested.end(), type) != requested.end(); };

    FillerMap fillers;
    if (isRequested(FillerTypes::Accelerators))
    {
        fillers[FillerTypes::Accelerators] =
            std::make_unique<Analytics::AcceleratorsPropertiesFiller>();
    }
    if (isRequested(FillerTypes::AppConfig))
    {
        fillers[FillerTypes::AppConfig] = std::make_unique<AppConfigFiller>();
    }
    if (isRequested(FillerTypes::AppLanguage))
    {
        AppLanguageFiller::LanguageFunction language;
        if (lookAndFeel)
        {
            language = [lookAndFeel] { return lookAndFeel->GetLanguage(); };
        }
        fillers[FillerTypes::AppLanguage] = std::make_unique<AppLanguageFiller>(language);
    }
    if (isRequested(FillerTypes::CountryName))
    {
        fillers[FillerTypes::CountryName] = std::make_unique<CountryNameFiller>();
    }
    if (isRequested(FillerTypes::HardwareConfig))
    {
        fillers[FillerTypes::HardwareConfig] = std::make_unique<Analytics::HardwareConfigFiller>();
    }
    if (isRequested(FillerTypes::OSConfig))
    {
        fillers[FillerTypes::OSConfig] = std::make_unique<Analytics::OSConfigFiller>();
    }
    if (isRequested(FillerTypes::MonitorsConfig))
    {
        fillers[FillerTypes::MonitorsConfig] = std::make_unique<MonitorsConfigFiller>();
    }
    if (isRequested(FillerTypes::HyperPass))
    {
        fillers[FillerTypes::HyperPass] = std::make_unique<HyperPassPropertiesFiller>(convertation);
    }
    return fillers;
}

void RunFillers(const FillerMap& fillers, const std::vector<FillerTypes>& order,
                std::map<std::string, std::string>& params)
{
    for (FillerTypes type : order)
    {
        const auto found = fillers.find(type);
        if (found != fillers.end())
        {
            found->second->Fill(params);
        }
    }
}

}  // namespace Velkor::KT::Tracking::Fillers
