// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PictureSurface.h"
#include "WindowInput.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>

class QScreen;

namespace lantern {

// Whether the window manager looks after a window.
enum class WindowCare : std::uint8_t { Managed, Unmanaged };

// The picture alone on the whole of a screen: as large as its shape lets it be, the border's colour
// around it, no pointer. It never asks for the keyboard. Where a window system gives it the
// keyboard all the same, its keys are the player's, and it says so, that somebody may take it back.
//
// Life cycle: construct for one screen, set the functions, FillScreen. Whoever owns it lets it go
// with the screen.
class SingerWindow : public QWidget {
public:
    // The player is borrowed and outlives the window.
    SingerWindow(QScreen& screen, InputTarget& player, WindowCare care);

    // The window system was asked to close it. It stays until its owner lets it go.
    std::function<void()> CloseAsked;
    std::function<void()> GotKeyboard;
    // It does not get to its screen by asking.
    std::function<void()> Refused;

    // At first, and again after its screen has another place or size.
    void FillScreen();
    PictureSurface& Pic() { return m_pic; }
    void SetBorderColour(QRgb colour);
    // Brings to the screen what has been drawn.
    void Flush();

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void Settle();

    QPointer<QScreen> m_screen;
    WindowInput m_input;
    PictureSurface m_pic;
    QRgb m_borderColour = 0xFF000000;
    QTimer m_settleTimer; // until the window system has had time to answer
    int m_triesLeft = 0;
};

// Where the picture lies on a screen of that size, in the middle.
QRect SingerPictureRect(const QSize& screen);

} // namespace lantern
