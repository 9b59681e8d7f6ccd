#include "UI/ButtonWithPopUpList.h"

#include <QKeyEvent>
#include <QListWidget>
#include <QStyleOptionButton>
#include <QStylePainter>

#include <functional>
#include <utility>

namespace Velkor::KT
{

namespace
{

// The pop-up itself: a list in a popup window. Enter picks the highlighted row; a mouse click
// picks the row under the pointer (through itemClicked, connected by the owner).
class PopUpList : public QListWidget
{
public:
    PopUpList(std::function<void(int)> pick, QWidget* parent)
        : QListWidget(parent), pick(std::move(pick))
    {
        setWindowFlags(Qt::Popup);
        setSelectionMode(QAbstractItemView::SingleSelection);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        switch (event->key())
        {
            case Qt::Key_Return:
            case Qt::Key_Enter:
                pick(currentRow());
                event->accept();
                return;
            case Qt::Key_Escape:
                hide();
                event->accept();
                return;
            default:
                QListWidget::keyPressEvent(event);
        }
    }

private:
    const std::function<void(int)> pick;
};

const int kArrowWidth = 12;

}  // namespace

class ButtonWithPopUpList::Private
{
public:
    QStringList items;
    int currentIndex = -1;
    QListWidget* popUp = nullptr;  // a PopUpList
};

ButtonWithPopUpList::ButtonWithPopUpList(QWidget* parent)
    : QAbstractButton(parent), d(std::make_unique<Private>())
{
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, &ButtonWithPopUpList::ShowPopUp);
}

ButtonWithPopUpList::~ButtonWithPopUpList() = default;

void ButtonWithPopUpList::AddItem(const QString& text)
{
    d->items.append(text);
    updateGeometry();
    if (d->currentIndex < 0)
    {
        SetCurrentIndex(0);
    }
}

void ButtonWithPopUpList::SetItems(const QStringList& items)
{
    HidePopUp();
    d->items = items;
    updateGeometry();
    const int index = items.isEmpty() ? -1 : 0;
    if (index == d->currentIndex)
    {
        // Same index, other entry: still a different text to show.
        update();
        return;
    }
    SetCurrentIndex(index);
}

void ButtonWithPopUpList::Clear()
{
    SetItems({});
}

QStringList ButtonWithPopUpList::Items() const
{
    return d->items;
}

int ButtonWithPopUpList::Count() const
{
    return d->items.size();
}

int ButtonWithPopUpList::CurrentIndex() const
{
    return d->currentIndex;
}

QString ButtonWithPopUpList::CurrentText() const
{
    return d->currentIndex >= 0 ? d->items.at(d->currentIndex) : QString();
}

void ButtonWithPopUpList::SetCurrentIndex(int index)
{
    if (index < 0 || index >= d->items.size())
    {
        index = -1;
    }
    if (index == d->currentIndex)
    {
        return;
    }
    d->currentIndex = index;
    update();
    emit CurrentIndexChanged(index);
}

void ButtonWithPopUpList::ShowPopUp()
{
    if (d->items.isEmpty())
    {
        return;
    }
    if (!d->popUp)
    {
        d->popUp = new PopUpList([this](int row) { Pick(row); }, this);
        connect(d->popUp, &QListWidget::itemClicked, this,
                [this](QListWidgetItem* item) { Pick(d->popUp->row(item)); });
    }
    d->popUp->clear();
    d->popUp->addItems(d->items);
    d->popUp->setCurrentRow(d->currentIndex);

    const int rows = qMin(d->items.size(), 10);
    const int rowHeight = qMax(d->popUp->sizeHintForRow(0), fontMetrics().height());
    const int frame = 2 * d->popUp->frameWidth();
    const int width = qMax(this->width(), d->popUp->sizeHintForColumn(0) + frame);
    d->popUp->setGeometry(
        QRect(mapToGlobal(rect().bottomLeft()), QSize(width, rows * rowHeight + frame)));
    d->popUp->show();
    d->popUp->setFocus(Qt::PopupFocusReason);
}

void ButtonWithPopUpList::HidePopUp()
{
    if (d->popUp)
    {
        d->popUp->hide();
    }
}

QListWidget* ButtonWithPopUpList::PopUp() const
{
    return d->popUp;
}

bool ButtonWithPopUpList::IsPopUpVisible() const
{
    return d->popUp && d->popUp->isVisible();
}

void ButtonWithPopUpList::Pick(int index)
{
    HidePopUp();
    if (index >= 0 && index < d->items.size())
    {
        SetCurrentIndex(index);
    }
}

QSize ButtonWithPopUpList::sizeHint() const
{
    ensurePolished();
    int textWidth = fontMetrics().averageCharWidth() * 4;
    for (const QString& item : d->items)
    {
        textWidth = qMax(textWidth, fontMetrics().horizontalAdvance(item));
    }
    QStyleOptionButton option;
    option.initFrom(this);
    const QSize contents(textWidth + kArrowWidth + 4, fontMetrics().height());
    return style()->sizeFromContents(QStyle::CT_PushButton, &option, contents, this);
}

QSize ButtonWithPopUpList::minimumSizeHint() const
{
    return sizeHint();
}

void ButtonWithPopUpList::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionButton button;
    button.initFrom(this);
    button.features = QStyleOptionButton::None;
    button.state |= (isDown() || IsPopUpVisible()) ? QStyle::State_Sunken : QStyle::State_Raised;
    painter.drawControl(QStyle::CE_PushButtonBevel, button);

    const QRect contents = style()->subElementRect(QStyle::SE_PushButtonContents, &button, this);
    QStyleOptionButton label = button;
    label.text = CurrentText();
    label.rect = contents.adjusted(0, 0, -kArrowWidth, 0);
    painter.drawControl(QStyle::CE_PushButtonLabel, label);

    QStyleOption arrow;
    arrow.initFrom(this);
    arrow.rect =
        QRect(contents.right() - kArrowWidth + 1, contents.top(), kArrowWidth, contents.height());
    painter.drawPrimitive(QStyle::PE_IndicatorArrowDown, arrow);
}

}  // namespace Velkor::KT
