// SPDX-License-Identifier: GPL-3.0-or-later
#include "StageParts.h"

#include "PlayerLook.h"
#include "SystemColours.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

namespace lantern {

Spoken ChoiceButton::Speak() const
{
    Spoken spoken = ctlPicBtn::Speak();
    spoken.role = QAccessible::RadioButton;
    return spoken;
}

Spoken MenuButton::Speak() const
{
    Spoken spoken = ctlPicBtn::Speak();
    spoken.role = QAccessible::ButtonMenu;
    spoken.hasPopup = true;
    return spoken;
}

void MenuButton::keyPressEvent(QKeyEvent* event)
{
    const int key = event->key();
    const bool goesOn = key == Qt::Key_Right || key == Qt::Key_Down;
    const bool goesBack = key == Qt::Key_Left || key == Qt::Key_Up;
    if (!goesOn && !goesBack)
        ctlPicBtn::keyPressEvent(event);
    else if (Step)
        Step(goesOn ? 1 : -1);
}

FocusMark::FocusMark(QWidget& window) : QFocusFrame(&window), m_window(window)
{
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* now) { Follow(now); });
}

void FocusMark::Follow(QWidget* focus)
{
    const bool isHere = focus && focus != &m_window && m_window.isAncestorOf(focus);
    setWidget(isHere ? focus : nullptr);
}

void FocusMark::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(QPen(QColor::fromRgb(ResolveColour(kAccentColour)), 1));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
}

} // namespace lantern
