// SPDX-License-Identifier: GPL-3.0-or-later
#include "DeviceMenu.h"

#include "CommandId.h"

namespace lantern {
namespace {

constexpr int kCancelNumber = -1; // no command has it

} // namespace

std::vector<MenuEntry> DeviceMenuItems(const QStringList& deviceNames, int chosen)
{
    std::vector<MenuEntry> items;
    for (const QString& name : deviceNames) {
        const int device = static_cast<int>(items.size());
        items.push_back({name, QString::number(kFirstDeviceCommand + device), device == chosen});
    }
    items.push_back(MenuSeparator());
    items.push_back({QStringLiteral("Cancel"), QString::number(kCancelNumber)});
    return items;
}

} // namespace lantern
