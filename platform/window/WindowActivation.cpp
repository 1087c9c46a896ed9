// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowActivation.h"

#include <QWidget>

namespace lantern {

void ActivateBy(const QByteArray& token, QWidget& window)
{
    AskBy(token, [&window] { window.activateWindow(); });
}

// The toolkit takes the token from its own environment, and only from there: Qt 6.4 has a function
// for it as well, but in no header for programs. Another thread that reads the environment in that
// very moment may meet it half changed. Only the sound server's does, as it looks for a new server.
void AskBy(const QByteArray& token, const std::function<void()>& ask)
{
    constexpr const char* kVariable = "XDG_ACTIVATION_TOKEN";
    if (!token.isEmpty())
        qputenv(kVariable, token);
    ask();
    qunsetenv(kVariable);
}

} // namespace lantern
