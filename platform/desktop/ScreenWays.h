// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ScreenGuard.h"

#include <QDBusConnection>
#include <QString>

#include <memory>
#include <vector>

namespace lantern {

// Who wants the screen on, and why, as the desktop may show it.
struct ScreenWish {
    QString program; // its desktop entry
    QString reason;
};

// By the bus: the portal, which is there inside a sandbox, too; the service of the session.
std::unique_ptr<ScreenWay> PortalScreenWay(const QDBusConnection& bus, const ScreenWish& wish);
std::unique_ptr<ScreenWay> SessionScreenWay(const QDBusConnection& bus, const ScreenWish& wish);
// By the display itself, where the toolkit is on one of X11.
std::unique_ptr<ScreenWay> DisplayScreenWay();

// All of them that this process should try, in their order. The bus may be none.
std::vector<std::unique_ptr<ScreenWay>> ScreenWays(const QDBusConnection& bus,
                                                   const ScreenWish& wish);

} // namespace lantern
