// SPDX-License-Identifier: GPL-3.0-or-later
#include "PopMenu.h"

#include "ArtPictures.h"
#include "PlayerLook.h"

#include <QPointer>

namespace lantern {

PopMenu::PopMenu(QWidget& window)
    : m_window(window), m_menu(&window), m_menuSidePic(MenuSidePicture())
{
    m_menu.setObjectName(QStringLiteral("PopMenu"));
    m_menu.SetFont(PlayerFont());
    m_menu.SetItemForeColor(kWhite);
    m_menu.SetItemHotForeColor(kBlack);
    m_menu.SetBackColor(kBlack);
    m_menu.SetItemHotBackColor(kAccentColour);
    m_menu.SetLeftPicBackColor(kBlack);
    m_menu.ItemClicked = [this](std::int16_t&, QString&, QString& key) {
        if (Click)
            Click(key);
    };
}

bool PopMenu::ShowCommands(const std::vector<MenuEntry>& items)
{
    return Show(QStringLiteral("Commands"), items, m_menuSidePic);
}

bool PopMenu::ShowDevices(const std::vector<MenuEntry>& items)
{
    return Show(QStringLiteral("Sound devices"), items, {});
}

bool PopMenu::ShowScreens(const std::vector<MenuEntry>& items, const QPoint& place)
{
    return Show(QStringLiteral("Screens"), items, {}, place);
}

bool PopMenu::Show(const QString& name, const std::vector<MenuEntry>& items,
                   const PictureReference& sidePicture, const QPoint& place)
{
    if (m_isOpen)
        return true;
    m_menu.setAccessibleName(name);
    m_menu.ResetMenu();
    for (const MenuEntry& item : items) {
        if (item.isChosen)
            m_menu.AddChoice(item.text, item.key, *item.isChosen);
        else
            m_menu.AddItem(item.text, item.key);
    }
    m_menu.SetUseLeftImage(sidePicture != nullptr);
    const QPointer<QWidget> window(&m_window);
    m_isOpen = true;
    m_menu.ShowMenu(place.x(), place.y(), sidePicture);
    if (!window)
        return false;
    m_isOpen = false;
    return true;
}

} // namespace lantern
