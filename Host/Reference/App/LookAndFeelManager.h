#pragma once

#include "App/ILookAndFeelManager.h"
#include "HostReferenceExport.h"

#include <QtGlobal>

#include <memory>
#include <string>

namespace Velkor::App
{

// Holds the interface language the user switched to; safe to read and change from any thread.
class KT_HOST_REFERENCE_EXPORT LookAndFeelManager : public ILookAndFeelManager
{
public:
    explicit LookAndFeelManager(std::string language);
    ~LookAndFeelManager() override;

    std::string GetLanguage() const override;
    void SetLanguage(const std::string& language);

private:
    Q_DISABLE_COPY(LookAndFeelManager)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::App
