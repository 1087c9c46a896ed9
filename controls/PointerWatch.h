// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QPointF>

#include <optional>

class QWidget;

namespace lantern {

// Tells whether the pointer is over a control, as often as one likes to ask.
//
// To ask the window system each time would cost a round trip, and some window systems tell the
// pointer's place only to the window that it is in. So the control's own events come first: while
// the pointer is over it they tell each move, and then the leaving. That something came in front
// of the control, or that it moved or went away under a resting pointer, shows in the tree of
// widgets. What neither can tell, such as a leaving that was lost to another program's grab, the
// window system is asked for now and then.
class PointerWatch {
public:
    // The control outlives the watch.
    explicit PointerWatch(const QWidget& control) : m_control(control) {}

    // By an event of the mouse, in the control's coordinates; outside of it during a press.
    void SeenAt(QPointF point);
    void Left() { m_pointer.reset(); }
    void AskWindowSystem();

    // A widget in front of the control, even a child of it, counts as outside.
    bool IsOver() const;

private:
    const QWidget& m_control;
    std::optional<QPoint> m_pointer; // in the window, on the pixel that the toolkit counts it to
};

} // namespace lantern
