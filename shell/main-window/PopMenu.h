// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MenuEntry.h"
#include "ctlMenus.h"

#include <QPoint>

#include <functional>
#include <vector>

namespace lantern {

// The main window's pop-up menu, which shows the commands, the devices for the sound, or the
// screens. Everything else in the program goes on while it is open.
class PopMenu {
public:
    // The window is borrowed and outlives the menu.
    explicit PopMenu(QWidget& window);

    // The key of the item that the user chose; called within the calls below, with the menu closed.
    std::function<void(const QString& key)> Click;

    bool IsOpen() const { return m_isOpen; }

    // Each opens a menu, at the pointer if no place is given, and returns when it has closed. While
    // one is open, another one doesn't open. False if the window, and the menu with it, was
    // destroyed meanwhile.
    [[nodiscard]] bool ShowCommands(const std::vector<MenuEntry>& items);
    [[nodiscard]] bool ShowDevices(const std::vector<MenuEntry>& items);
    [[nodiscard]] bool ShowScreens(const std::vector<MenuEntry>& items, const QPoint& place);

private:
    bool Show(const QString& name, const std::vector<MenuEntry>& items,
              const PictureReference& sidePicture,
              const QPoint& place = {ctlMenus::kAtPointer, ctlMenus::kAtPointer});

    QWidget& m_window;
    ctlMenus m_menu;
    PictureReference m_menuSidePic;
    bool m_isOpen = false;
};

} // namespace lantern
