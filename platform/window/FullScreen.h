// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QTimer>

class QWidget;

namespace lantern {

// Takes a window to the window system's full-screen state and back to its normal geometry.
//
// Where no window manager answers, the state changes and the geometry does not. This is looked at
// a moment later, and the geometry then set by hand.
class FullScreen {
public:
    explicit FullScreen(QWidget& window);

    bool IsOn() const;
    void Enter();
    // The window has its normal geometry, or the one that is set next, when this returns.
    void Leave();

private:
    void FillScreen();

    QWidget& m_window;
    QRect m_normalGeometry;
    QTimer m_settleTimer;
};

} // namespace lantern
