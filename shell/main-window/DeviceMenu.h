// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MenuEntry.h"

#include <QStringList>

#include <vector>

// What the menu of output devices offers.
namespace lantern {

std::vector<MenuEntry> DeviceMenuItems(const QStringList& deviceNames);

} // namespace lantern
