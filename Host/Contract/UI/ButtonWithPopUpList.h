#pragma once

#include "HostExport.h"

#include <QAbstractButton>
#include <QString>
#include <QStringList>

#include <memory>

class QListWidget;

namespace Velkor::KT
{

// A push button that shows its current entry and, when clicked, pops up the list of all entries
// below itself. Picking an entry (clicking it, or moving to it and pressing Enter) makes it the
// current one and closes the list; Escape or a click elsewhere closes the list unchanged.
//
// CurrentIndexChanged() is emitted whenever the current index changes, by the user or by the
// program, and only then: picking the entry that is already current emits nothing. An empty
// button has the index -1; the first entry added becomes current.
class KT_HOST_EXPORT ButtonWithPopUpList : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ButtonWithPopUpList(QWidget* parent = nullptr);
    ~ButtonWithPopUpList() override;

    void AddItem(const QString& text);
    // Replaces every entry; the current index becomes 0, or -1 without entries.
    void SetItems(const QStringList& items);
    void Clear();
    QStringList Items() const;
    int Count() const;

    int CurrentIndex() const;
    QString CurrentText() const;
    // Indexes outside the entries make the index -1.
    void SetCurrentIndex(int index);

    void ShowPopUp();
    void HidePopUp();
    // The pop-up list while it exists (from its first showing on), else null.
    QListWidget* PopUp() const;
    bool IsPopUpVisible() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void CurrentIndexChanged(int index);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void Pick(int index);

    Q_DISABLE_COPY(ButtonWithPopUpList)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT
