#pragma once

#include "Tracking/Gui/AttachReport.h"

#include <QHash>
#include <QPointer>
#include <QRect>
#include <QString>
#include <QStringList>

#include <map>
#include <vector>

class QObject;
class QWidget;

namespace Velkor::KT::Tracking::Gui
{

// From the least to the most telling; drawn in this order, so that the more telling wins where
// outlines meet.
enum class OutlineStyle
{
    Unhooked,
    Found,
    Hooked,
    HookedTwice,
};

// One rectangle to outline, in global coordinates, and what hovering it tells.
struct Outline
{
    QRect rect;
    OutlineStyle style;
    QString text;

    bool operator==(const Outline& other) const
    {
        return rect == other.rect && style == other.style && text == other.text;
    }
};

// What the attach reports said about each object they found, and where those objects show on
// the screen now. Objects are kept by guarded pointer: a destroyed object is forgotten, and a new
// one at its address starts afresh.
class HighlightMarks
{
public:
    void Add(const AttachReport& report);

    // The outlines of each visible top-level window: its found widgets and the widgets of its
    // found actions, clipped to their parents; with `unhooked`, also its named widgets that no
    // entry found. Windows of the tool-tip type (the highlight's own, and Qt's tool tips) are
    // left out. Larger rectangles come first within each style.
    std::map<QWidget*, std::vector<Outline>> OutlinesByWindow(bool unhooked) const;

private:
    struct Mark
    {
        QPointer<QObject> object;
        QStringList lines;
        int hooked = 0;
    };

    void AddOutline(std::map<QWidget*, std::vector<Outline>>& byWindow, QWidget* widget,
                    const QRect& rect, const Mark& mark) const;

    QHash<QObject*, Mark> m_marks;
};

// Whether a window is one the highlight outlines (a visible window of the host's).
bool IsOutlinedWindow(const QWidget* window);

}  // namespace Velkor::KT::Tracking::Gui
