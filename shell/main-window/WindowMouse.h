// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "InteractiveMove.h"

#include <QObject>

#include <functional>

class QMouseEvent;

namespace lantern {

class WindowParts;

// What the mouse does on the main window, which has no title bar: the left button moves it, the
// right one asks for the menu, a double click goes to full screen, and there the pointer brings
// the toolbar and takes it away.
class WindowMouse : public QObject {
public:
    // Both are borrowed and outlive this.
    WindowMouse(QWidget& window, WindowParts& parts);

    // Either may run an event loop, in which the window may be closed.
    std::function<void()> RightButtonUp;
    std::function<void()> DoubleClick;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Press(const QMouseEvent& event);
    void DoublePress(const QObject& watched, const QMouseEvent& event);
    void Release(const QMouseEvent& event);
    void Move(const QObject& watched, const QMouseEvent& event);
    void ShowBarFor(const QObject& watched, QPoint pointer);

    QWidget& m_window;
    WindowParts& m_parts;
    InteractiveMove m_move;
    bool m_mayMove = false; // the left button went down, and the pointer has not moved since
    QPoint m_pressPlace;    // on the desktop
};

} // namespace lantern
