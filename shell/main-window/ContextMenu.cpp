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
    CommandId command = {};
    Condition condition = nullptr;
};

constexpr std::array kRows = {
    MenuRow{Row::Command, CommandId::Open},
    MenuRow{Row::Command, CommandId::Play, &ContextMenuState::canPlay},
    MenuRow{Row::Command, CommandId::Pause, &ContextMenuState::canPause},
    MenuRow{Row::Command, CommandId::Stop, &ContextMenuState::canStop},
    MenuRow{Row::Separator},
    MenuRow{Row::Command, CommandId::CopyPicture},
    MenuRow{Row::Separator, {}, &ContextMenuState::canSkip},
    MenuRow{Row::Command, CommandId::Forward10Seconds, &ContextMenuState::canSkip},
    MenuRow{Row::Command, CommandId::Forward60Seconds, &ContextMenuState::canSkip},
    MenuRow{Row::Command, CommandId::Back10Seconds, &ContextMenuState::canSkip},
    MenuRow{Row::Command, CommandId::Back60Seconds, &ContextMenuState::canSkip},
    MenuRow{Row::Separator},
    MenuRow{Row::FullScreenCommand, CommandId::FullScreen},
    MenuRow{Row::Command, CommandId::Larger},
    MenuRow{Row::Command, CommandId::Smaller},
    MenuRow{Row::Separator},
    MenuRow{Row::Options},
    MenuRow{Row::Command, CommandId::About},
    MenuRow{Row::Separator},
    MenuRow{Row::Command, CommandId::WebSite},
    MenuRow{Row::Command, CommandId::Exit},
};

MenuEntry ItemOf(const MenuRow& row, bool isMaximised)
{
    const QString key = QString::number(NumberOf(row.command));
    switch (row.row) {
    case Row::Separator:
        return MenuSeparator();
    case Row::Options:
        return {QStringLiteral("Options"), kOptionsKey};
    case Row::FullScreenCommand:
        if (isMaximised)
            return {QStringLiteral("Restore Screen Size"), key};
        break;
    case Row::Command:
        break;
    }
    return {MenuTextOf(row.command), key};
}

} // namespace

std::vector<MenuEntry> ContextMenuItems(const ContextMenuState& state)
{
    std::vector<MenuEntry> items;
    for (const MenuRow& row : kRows) {
        if (!row.condition || state.*row.condition)
            items.push_back(ItemOf(row, state.isMaximised));
    }
    return items;
}

} // namespace lantern
