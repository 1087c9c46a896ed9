// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QEvent>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QSize>
#include <QWidget>

#include <cstdint>
#include <functional>

namespace lantern {

// What of a window's frame the mouse has hold of. The numbers are those of the design data.
enum class HitCode : std::uint16_t {
    Caption = 2, // moves the window; the others size it
    Left = 10,
    Right = 11,
    Top = 12,
    TopLeft = 13,
    TopRight = 14,
    Bottom = 15,
    BottomLeft = 16,
    BottomRight = 17,
};

Qt::Edges EdgesOf(HitCode code);

// Where a window lies when the pointer has gone that distance with it. The edges that the pointer
// has no hold of stay where they are, whatever the limits of the size.
QRect DraggedGeometry(const QRect& start, QPoint distance, HitCode code, QSize minimum,
                      QSize maximum);

// Whether an event tells that the window system has ended a move or size that it was doing: no
// system tells it in one way. A deactivation is part of the operation; what follows it ends it.
bool EndsOperation(QEvent::Type type, Qt::MouseButtons buttons, bool wasDeactivated);

// Lets the user move or size a window with the mouse until he lets go, by the window system where
// it knows how, else by setting the geometry. Meanwhile no other widget gets the mouse, and it
// doesn't get the release that ends it either.
//
// Start it from the first movement with the button held, not from the press: a window manager that
// takes over after the release keeps the window at the pointer until the next click.
class InteractiveMove : public QObject {
public:
    // Called once for each Start, when the user has let go. It may destroy this object.
    using Ended = std::function<void()>;

    ~InteractiveMove() override;

    // The pointer is where it is on the desktop. Nothing happens while another operation runs.
    void Start(QWidget& window, HitCode code, QPoint pointer, Ended ended = {});
    bool IsRunning() const { return m_running; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool AskWindowSystem() const;
    bool WatchWindowSystem(QObject& watched, QEvent& event);
    bool Drag(QObject& watched, QEvent& event);
    void End();

    bool m_running = false;
    bool m_bySystem = false;
    bool m_wasDeactivated = false;
    QPointer<QWidget> m_window;
    HitCode m_code = HitCode::Caption;
    QPoint m_startPointer;
    QRect m_startGeometry;
    Ended m_ended;
};

} // namespace lantern
