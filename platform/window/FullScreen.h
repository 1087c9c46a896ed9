// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QTimer>

class QWidget;

namespace lantern {

// Takes a window to the window system's full-screen state and back to its normal geometry.
//
// Window systems answer a change of state late, and in their own ways: where no window manager
// runs, the geometry stays; on others, the geometry of before the full screen comes back after a
// new one was set. Hence the geometry is looked at a moment later, and set again if need be.
class FullScreen {
public:
    explicit FullScreen(QWidget& window);

    bool IsOn() const;
    void Enter();
    // The window has its normal geometry when this returns, moved if no screen shows it any more.
    void Leave();
    // Gives the window, which is not in full screen, another geometry.
    void Place(const QRect& geometry);

private:
    QRect OnSomeScreen(QRect geometry) const;
    void Settle();

    QWidget& m_window;
    QRect m_normalGeometry;
    QTimer m_settleTimer;
};

} // namespace lantern
