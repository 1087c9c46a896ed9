// SPDX-License-Identifier: GPL-3.0-or-later
// What stands on the stage window besides the player's own controls.
#pragma once

#include "ctlPicBtn.h"

#include <QFocusFrame>

#include <functional>

namespace lantern {

// One of several, of which exactly one is down. The user can put it down, not up.
class ChoiceButton : public ctlPicBtn {
public:
    using ctlPicBtn::ctlPicBtn;

    Spoken Speak() const override;
};

// It opens a menu. No key walks in that: on the button itself the arrow keys go from choice to
// choice.
class MenuButton : public ctlPicBtn {
public:
    using ctlPicBtn::ctlPicBtn;

    std::function<void(int by)> Step;

    Spoken Speak() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

// A line around the control that has the keyboard. The controls show nothing of that themselves,
// and here the keyboard walks.
class FocusMark : public QFocusFrame {
public:
    explicit FocusMark(QWidget& window);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void Follow(QWidget* focus);

    QWidget& m_window;
};

} // namespace lantern
