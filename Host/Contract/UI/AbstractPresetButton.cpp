#include "UI/AbstractPresetButton.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace Velkor::KT::UI
{

class AbstractPresetButton::Private
{
public:
    QString presetName;
};

AbstractPresetButton::AbstractPresetButton(QWidget* parent)
    : AbstractPresetButton(QString(), parent)
{
}

AbstractPresetButton::AbstractPresetButton(const QString& presetName, QWidget* parent)
    : QAbstractButton(parent), d(std::make_unique<Private>())
{
    d->presetName = presetName;
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, [this] { emit Clicked(d->presetName); });
}

AbstractPresetButton::~AbstractPresetButton() = default;

QString AbstractPresetButton::PresetName() const
{
    return d->presetName;
}

void AbstractPresetButton::SetPresetName(const QString& presetName)
{
    if (d->presetName == presetName)
    {
        return;
    }
    d->presetName = presetName;
    if (text().isEmpty())
    {
        updateGeometry();
        update();
    }
}

QString AbstractPresetButton::DisplayText() const
{
    return text().isEmpty() ? d->presetName : text();
}

QSize AbstractPresetButton::sizeHint() const
{
    ensurePolished();
    QStyleOptionButton option;
    option.initFrom(this);
    option.text = DisplayText();
    const QSize textSize = fontMetrics().size(Qt::TextShowMnemonic, option.text);
    const QSize contents(qMax(textSize.width(), fontMetrics().averageCharWidth() * 4),
                         qMax(textSize.height(), fontMetrics().height()));
    return style()->sizeFromContents(QStyle::CT_PushButton, &option, contents, this);
}

QSize AbstractPresetButton::minimumSizeHint() const
{
    return sizeHint();
}

void AbstractPresetButton::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    option.initFrom(this);
    option.text = DisplayText();
    option.features = QStyleOptionButton::None;
    if (isDown())
    {
        option.state |= QStyle::State_Sunken;
    }
    if (isCheckable())
    {
        option.state |= isChecked() ? QStyle::State_On : QStyle::State_Off;
    }
    else if (!isDown())
    {
        option.state |= QStyle::State_Raised;
    }
    painter.drawControl(QStyle::CE_PushButton, option);
}

}  // namespace Velkor::KT::UI
