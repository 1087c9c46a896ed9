// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QRect>
#include <QTimer>

class QWidget;

namespace lantern {

// Takes a window to the window system's full-screen state and back to its normal geometry.
//
// Window systems answer a change of state late, and in their own ways: where no window manager
// runs, the geometry stays; on others, the geometry of before the full screen comes back after a
// new one was set. Hence the geometry is looked at a moment later, and set again if need be.
//
// The window manager can take the window to full screen, too, and nobody asks first. So the normal
// geometry is followed all the time.
class FullScreen : public QObject {
public:
    explicit FullScreen(QWidget& window);

    bool IsOn() const;
    void Enter();
    // The window has its normal geometry when this returns, moved if no screen shows it any more.
    void Leave();
    // Gives the window, which is not in full screen, another geometry.
    void Place(const QRect& geometry);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QRect OnSomeScreen(QRect geometry) const;
    bool ComesBackMaximised() const;
    void EndMaximised();
    void FollowGeometry();
    void KeepGeometry();
    QRect Geometry() const;
    static bool FillsAScreen(const QRect& geometry);
    void Settle();

    QWidget& m_window;
    QRect m_normalGeometry;
    bool m_hasLeft = false; // to the normal geometry, which is yet to be seen
    QTimer m_settleTimer;   // runs while the window system's answer to a change of ours may come
    QTimer m_doubtTimer;    // runs while a geometry may be that of a full screen yet to be told
};

} // namespace lantern
