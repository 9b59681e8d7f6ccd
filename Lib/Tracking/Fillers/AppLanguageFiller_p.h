#pragma once

#include "Analytics/IDataFiller.h"

#include <functional>
#include <string>

namespace Velkor::KT::Tracking::Fillers
{

// Writes "APP_LANGUAGE" = the interface language, asked anew on every Fill so that a language
// switched while the application runs is reported. Without a language function it writes
// nothing.
class AppLanguageFiller : public Velkor::Tracking::IDataFiller
{
public:
    using LanguageFunction = std::function<std::string()>;

    explicit AppLanguageFiller(LanguageFunction language = LanguageFunction());

    void Fill(std::map<std::string, std::string>& params) override;

private:
    const LanguageFunction m_language;
};

}  // namespace Velkor::KT::Tracking::Fillers
