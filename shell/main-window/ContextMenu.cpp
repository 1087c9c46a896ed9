// SPDX-License-Identifier: GPL-3.0-or-later
#include "ContextMenu.h"

#include "CommandTable.h"

#include <array>

namespace lantern {
namespace {

enum class Row { Command, FullScreenCommand, Options, Separator };

// On what an item depends; none for an item that is always there.
using Condition = bool ContextMenuState::*;

struct MenuRow {
    Row row;
    std::int16_t number = 0;
    Condition condition = nullptr;
};

constexpr std::array kRows = {
    MenuRow{Row::Command, 0},
    MenuRow{Row::Command, 1, &ContextMenuState::canPlay},
    MenuRow{Row::Command, 2, &ContextMenuState::canPause},
    MenuRow{Row::Command, 3, &ContextMenuState::canStop},
    MenuRow{Row::Separator},
    MenuRow{Row::Command, 12},
    MenuRow{Row::Separator, 0, &ContextMenuState::canSkip},
    MenuRow{Row::Command, 4, &ContextMenuState::canSkip},
    MenuRow{Row::Command, 5, &ContextMenuState::canSkip},
    MenuRow{Row::Command, 24, &ContextMenuState::canSkip},
    MenuRow{Row::Command, 25, &ContextMenuState::canSkip},
    MenuRow{Row::Separator},
    MenuRow{Row::FullScreenCommand, 10},
    MenuRow{Row::Command, 41},
    MenuRow{Row::Command, 42},
    MenuRow{Row::Separator},
    MenuRow{Row::Options},
    MenuRow{Row::Command, 15},
    MenuRow{Row::Separator},
    MenuRow{Row::Command, 44},
    MenuRow{Row::Command, 16},
};

ContextMenuItem ItemOf(const MenuRow& row, bool isMaximised)
{
    const QString key = QString::number(row.number);
    switch (row.row) {
    case Row::Separator:
        return {QStringLiteral("-"), {}};
    case Row::Options:
        return {QStringLiteral("Options"), kOptionsKey};
    case Row::FullScreenCommand:
        if (isMaximised)
            return {QStringLiteral("Restore Screen Size"), key};
        break;
    case Row::Command:
        break;
    }
    return {MenuTextOf(row.number), key};
}

} // namespace

std::vector<ContextMenuItem> ContextMenuItems(const ContextMenuState& state)
{
    std::vector<ContextMenuItem> items;
    for (const MenuRow& row : kRows) {
        if (!row.condition || state.*row.condition)
            items.push_back(ItemOf(row, state.isMaximised));
    }
    return items;
}

} // namespace lantern
