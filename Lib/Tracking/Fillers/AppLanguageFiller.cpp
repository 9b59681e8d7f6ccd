#include "Tracking/Fillers/AppLanguageFiller_p.h"

#include <utility>

namespace Velkor::KT::Tracking::Fillers
{

AppLanguageFiller::AppLanguageFiller(LanguageFunction language) : m_language(std::move(language)) {}

void AppLanguageFiller::Fill(std::map<std::string, std::string>& params)
{
    if (m_language)
    {
        params["APP_LANGUAGE"] = m_language();
    }
}

}  // namespace Velkor::KT::Tracking::Fillers
