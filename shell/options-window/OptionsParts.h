// SPDX-License-Identifier: GPL-3.0-or-later
// What stands on the options window besides the player's own controls.
#pragma once

#include "Picture.h"
#include "SkinParts.h"
#include "ctlPicBtn.h"

#include <QWidget>

namespace lantern {

class OptionsHost;

// A picture at its own size, crisp on every screen.
class PictureBox : public QWidget {
public:
    PictureBox(QWidget* parent, PictureReference picture);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    PictureReference m_picture;
};

// Opens the menu of the devices, and switches nothing, however it looks.
class DeviceButton : public ctlPicBtn {
public:
    using ctlPicBtn::ctlPicBtn;

    Spoken Speak() const override;
};

// The maker's address: a click with the left button opens it, any other button opens the menu.
class WebAddress : public WhiteLabel {
public:
    WebAddress(QWidget* parent, OptionsHost& player); // the player is borrowed

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    OptionsHost& m_player;
};

} // namespace lantern
