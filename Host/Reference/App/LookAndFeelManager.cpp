#include "App/LookAndFeelManager.h"

#include <mutex>
#include <utility>

namespace Velkor::App
{

class LookAndFeelManager::Private
{
public:
    explicit Private(std::string language) : language(std::move(language)) {}

    mutable std::mutex mutex;
    std::string language;
};

LookAndFeelManager::LookAndFeelManager(std::string language)
    : d(std::make_unique<Private>(std::move(language)))
{
}

LookAndFeelManager::~LookAndFeelManager() = default;

std::string LookAndFeelManager::GetLanguage() const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->language;
}

void LookAndFeelManager::SetLanguage(const std::string& language)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->language = language;
}

}  // namespace Velkor::App
