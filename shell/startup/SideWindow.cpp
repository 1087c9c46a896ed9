// SPDX-License-Identifier: GPL-3.0-or-later
#include "SideWindow.h"

#include "ScreenMetrics.h"
#include "modAPI.h"

#include <QWidget>
#include <QWindow>

namespace lantern {

void CentreOnScreen(QWidget& window, TwipSize size, TwipsPerPixel twips)
{
    const QRect desktop = DesktopRect();
    const TwipRect place = CentredOn({desktop.width() * twips.x, desktop.height() * twips.y}, size);
    window.move(desktop.topLeft() + PixelsOf(place, twips).topLeft());
}

void StandBeforePlayer(QWidget& window, QWidget& mainWindow)
{
    // A window manager minimises it along with the player, and would do so again.
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    SetTopMost(window, true);
    window.windowHandle()->setTransientParent(mainWindow.windowHandle());
}

void ShowBeforePlayer(QWidget& window, QWidget& mainWindow, bool isShown)
{
    if (isShown && !window.isVisible())
        StandBeforePlayer(window, mainWindow);
    const bool hadKeyboard = window.isActiveWindow();
    window.setVisible(isShown);
    // Not every window system gives the keyboard back; a player out of sight is left there.
    if (!isShown && hadKeyboard && mainWindow.isVisible() && !mainWindow.isMinimized())
        mainWindow.activateWindow();
}

} // namespace lantern
