// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MenuEntry.h"

#include <QStringList>

#include <vector>

// What the menu of output devices offers.
namespace lantern {

// One of the devices, by its place in the list, is the chosen one.
std::vector<MenuEntry> DeviceMenuItems(const QStringList& deviceNames, int chosen);

} // namespace lantern
