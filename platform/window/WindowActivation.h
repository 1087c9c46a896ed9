// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <functional>

class QWidget;

namespace lantern {

// Asks for the keyboard for a window that is shown, and for a place in front. Under Wayland the
// compositor grants it by a token that another start of the program was given; empty if there is
// none. No program that is started later inherits the token.
void ActivateBy(const QByteArray& token, QWidget& window);
// Whatever asks, while the toolkit has the token.
void AskBy(const QByteArray& token, const std::function<void()>& ask);

} // namespace lantern
