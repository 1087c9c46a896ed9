// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowActivation.h"

#include <QWidget>

namespace lantern {

// The toolkit takes the token from its own environment, and only from there.
void ActivateBy(const QByteArray& token, QWidget& window)
{
    constexpr const char* kVariable = "XDG_ACTIVATION_TOKEN";
    if (!token.isEmpty())
        qputenv(kVariable, token);
    window.activateWindow();
    qunsetenv(kVariable);
}

} // namespace lantern
