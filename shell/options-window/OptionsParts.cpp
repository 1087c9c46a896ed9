// SPDX-License-Identifier: GPL-3.0-or-later
#include "OptionsParts.h"

#include "OptionsHost.h"

#include <QMouseEvent>
#include <QPainter>

#include <utility>

namespace lantern {

PictureBox::PictureBox(QWidget* parent, PictureReference picture)
    : QWidget(parent), m_picture(std::move(picture))
{
}

void PictureBox::paintEvent(QPaintEvent*)
{
    QPainter(this).drawImage(0, 0, m_picture->ImageAt(devicePixelRatioF()));
}

Spoken DeviceButton::Speak() const
{
    Spoken spoken = ctlPicBtn::Speak();
    spoken.role = QAccessible::ButtonMenu;
    spoken.hasPopup = true;
    spoken.isCheckBox = false;
    spoken.isChecked = false;
    if (!spoken.action.isEmpty())
        spoken.action = QAccessibleActionInterface::pressAction();
    return spoken;
}

WebAddress::WebAddress(QWidget* parent, OptionsHost& player) : WhiteLabel(parent), m_player(player)
{
    setAlignment(Qt::AlignCenter);
    QFont underlined = font();
    underlined.setUnderline(true);
    setFont(underlined);
    setCursor(Qt::PointingHandCursor);
}

void WebAddress::mouseReleaseEvent(QMouseEvent* event)
{
    const MouseReport report = PressReport(*event);
    if (report.button == LeftButton)
        m_player.OpenWebSite();
    else if (report.button != 0)
        m_player.ShowPopMenu();
}

} // namespace lantern
