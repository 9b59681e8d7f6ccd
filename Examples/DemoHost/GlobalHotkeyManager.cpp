#include "GlobalHotkeyManager.h"

#include "KT/SettingsKinds.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace Velkor::Demo
{

GlobalHotkeyManager::GlobalHotkeyManager(KT::HotkeySettings& settings, QObject* parent)
    : QObject(parent), m_settings(settings)
{
    setObjectName("GlobalHotkeyManager");
    for (const std::string& field : settings.Fields())
    {
        OnSettingChanged(field, settings.Get(field));
    }
    settings.AddObserver(this);
    QCoreApplication::instance()->installEventFilter(this);
}

GlobalHotkeyManager::~GlobalHotkeyManager()
{
    m_settings.RemoveObserver(this);
}

QString GlobalHotkeyManager::IdOfField(const std::string& field)
{
    static const std::map<std::string, QString> ids{
        {"startStop", "captureStartStop"},
        {"audioStartStop", "audioCaptureStartStop"},
        {"webCameraStartStop", "webCameraCaptureStartStop"},
        {"startStopStreaming", "streamingStartStop"},
        {"pauseResume", "capturePauseResume"},
        {"takeScreenshot", "takeScreenshot"},
        {"showHideOverlays", "showHideOverlays"},
    };
    const auto found = ids.find(field);
    return found == ids.end() ? QString() : found->second;
}

void GlobalHotkeyManager::OnSettingChanged(const std::string& field, const QVariantList& value)
{
    if (IdOfField(field).isEmpty())
    {
        return;
    }
    m_keys[field] = QKeySequence(value.value(0).toString());
}

bool GlobalHotkeyManager::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress)
    {
        auto* key = static_cast<QKeyEvent*>(event);
        const QKeySequence pressed(int(key->modifiers()) | key->key());
        for (const auto& [field, sequence] : m_keys)
        {
            if (!sequence.isEmpty() && sequence == pressed)
            {
                const QString id = IdOfField(field);
                emit HotkeyTriggeredId(id);
                if (id == "captureStartStop")
                {
                    emit CaptureStartStopTriggered();
                }
                else if (id == "capturePauseResume")
                {
                    emit CapturePauseResumeTriggered();
                }
                else if (id == "takeScreenshot")
                {
                    emit TakeScreenshotTriggered();
                }
                return true;
            }
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace Velkor::Demo
