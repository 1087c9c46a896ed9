// SPDX-License-Identifier: GPL-3.0-or-later
// What stands on the options window besides the player's own controls.
#pragma once

#include "Control.h"
#include "Picture.h"
#include "ctlPicBtn.h"

#include <QLabel>
#include <QWidget>

namespace lantern {

class OptionsHost;

// Font and colours that the controls on the window start with.
const Ambient& OptionsAmbient();

// A picture at its own size, crisp on every screen.
class PictureBox : public QWidget {
public:
    PictureBox(QWidget* parent, PictureReference picture);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    PictureReference m_picture;
};

// Plain text, white on black.
class WhiteLabel : public QLabel {
public:
    explicit WhiteLabel(QWidget* parent);

    // A text that is wider than its place in this font spreads away from the sliders.
    void FitToText();
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
