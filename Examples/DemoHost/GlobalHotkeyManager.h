#pragma once

#include "KT/ObservableSettings.h"

#include <QKeySequence>
#include <QObject>

#include <map>
#include <string>

namespace Velkor::KT
{
class HotkeySettings;
}

namespace Velkor::Demo
{

// The recorder's global hot keys: a key press anywhere in the application that matches one of
// the hot keys of the settings is consumed and reported by its id ("captureStartStop",
// "capturePauseResume", "takeScreenshot", ...), and the three capture commands also by a signal
// of their own. Follows changes of the settings at once.
class GlobalHotkeyManager : public QObject, private KT::ISettingsObserver
{
    Q_OBJECT

public:
    GlobalHotkeyManager(KT::HotkeySettings& settings, QObject* parent = nullptr);
    ~GlobalHotkeyManager() override;

    // The id a settings field's hot key is reported by; empty for a field without one.
    static QString IdOfField(const std::string& field);

signals:
    void HotkeyTriggeredId(const QString& id);
    void CaptureStartStopTriggered();
    void CapturePauseResumeTriggered();
    void TakeScreenshotTriggered();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void OnSettingChanged(const std::string& field, const QVariantList& value) override;

    KT::HotkeySettings& m_settings;
    std::map<std::string, QKeySequence> m_keys;
};

}  // namespace Velkor::Demo
