#pragma once

#include "HostExport.h"

#include <QAbstractButton>
#include <QString>

#include <memory>

namespace Velkor::KT::UI
{

// A push button that stands for one named preset (a capture or output preset, for example).
//
// It behaves like any push button (mouse click, Space key, checkable if asked) and in addition
// emits Clicked() with its preset name each time it emits clicked(). It paints itself as a push
// button showing its text, or the preset name when no text is set. Subclasses may paint more
// (an icon of the preset, a badge) by overriding paintEvent() and sizeHint().
class KT_HOST_EXPORT AbstractPresetButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit AbstractPresetButton(QWidget* parent = nullptr);
    AbstractPresetButton(const QString& presetName, QWidget* parent = nullptr);
    ~AbstractPresetButton() override;

    QString PresetName() const;
    void SetPresetName(const QString& presetName);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    // The preset name as it was when the button was clicked; may be empty.
    void Clicked(const QString& presetName);

protected:
    void paintEvent(QPaintEvent* event) override;

    // The text the button shows: its own text, or the preset name when it has none.
    QString DisplayText() const;

private:
    Q_DISABLE_COPY(AbstractPresetButton)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::UI
