#include "Tracking/Instances/SectionTable_p.h"

#include "Core/EventPublisher.h"
#include "KT/AbstractScreenshotTakerWrapper.h"
#include "KT/ICaptureInfo.h"
#include "KT/ICaptureMonitor.h"
#include "KT/IConverter.h"
#include "KT/IDurationLimiter.h"
#include "KT/IFileManager.h"
#include "KT/IScheduler.h"
#include "KT/InstanceRegistry.h"
#include "KT/ProductSettings.h"
#include "KT/Service/AbstractSharingManager.h"
#include "KT/Service/IPaintingController.h"
#include "KT/Service/ISelector.h"
#include "KT/Service/ITutorialManager.h"
#include "KT/SettingsKinds.h"
#include "Module/Editing/IVECommunicationObserver.h"
#include "Tracking/Instances/ServiceSectionAttachers_p.h"
#include "Tracking/Instances/SettingsSectionAttachers_p.h"

namespace Velkor::KT::Tracking
{

const std::vector<InstancesSection>& InstancesSections()
{
    static const std::vector<InstancesSection> kSections = {
        {KT::TypeNameOf<KT::IScheduler>(), AttachScheduler},
        {KT::TypeNameOf<KT::IDurationLimiter>(), AttachDurationLimiter},
        {KT::TypeNameOf<KT::ICaptureInfo>(), AttachCaptureInfo},
        {KT::TypeNameOf<KT::ICaptureMonitor>(), AttachCaptureMonitor},
        {KT::TypeNameOf<KT::IConverter>(), AttachConverter},
        {KT::TypeNameOf<KT::PathsSettings>(), AttachPaths},
        {KT::TypeNameOf<KT::CaptureGeneralSettings>(), AttachGeneral},
        {KT::TypeNameOf<KT::CaptureKeyboardSettings>(), AttachKeyboard},
        {KT::TypeNameOf<KT::WatermarkSettings>(), AttachWatermark},
        {KT::TypeNameOf<KT::CaptureAudioSettings>(), AttachAudio},
        {KT::TypeNameOf<KT::CaptureWebCameraSettings>(), AttachWebCamera},
        // Reached only by an explicit attach.
        {std::string(), AttachStreaming},
        {KT::TypeNameOf<KT::HotkeySettings>(), AttachHotkeys},
        {KT::TypeNameOf<KT::OverlaySettings>(), AttachOverlays},
        {KT::TypeNameOf<KT::ProductSettings>(), AttachProduct},
        // Reached only by an explicit attach.
        {std::string(), AttachFinishAction},
        {KT::TypeNameOf<KT::ConvertationSettings>(), AttachConvertation},
        {KT::TypeNameOf<KT::IUiSettings>(), AttachUi},
        {KT::TypeNameOf<KT::ICaptureDurationLimitSettings>(), AttachDurationLimit},
        {KT::TypeNameOf<KT::ICaptureSchedulerSettings>(), AttachSchedulerSettings},
        {KT::TypeNameOf<KT::CaptureVideoSettings>(), AttachVideo},
        {KT::TypeNameOf<KT::CaptureCursorSettings>(), AttachCursor},
        {KT::TypeNameOf<KT::AbstractScreenshotTakerWrapper>(), AttachScreenshots},
        {KT::TypeNameOf<KT::IFileManager>(), AttachFiles},
        {KT::TypeNameOf<KT::Service::Sharing::AbstractSharingManager>(), AttachSharing},
        {KT::TypeNameOf<KT::Service::ScreenPainting::IPaintingController>(), AttachPainting},
        {KT::TypeNameOf<KT::Service::Tutorial::ITutorialManager>(), AttachTutorial},
        {KT::TypeNameOf<Velkor::Module::Editing::VECommunicationEventPublisher>(),
         AttachVECommunication},
        {KT::TypeNameOf<KT::Service::AreaSelector::ISelector>(), AttachSelector},
    };
    return kSections;
}

}  // namespace Velkor::KT::Tracking
