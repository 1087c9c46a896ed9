// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "KnownScreens.h"
#include "MenuEntry.h"
#include "SingerScreen.h"

#include <vector>

// What the menu of the singer's screen offers, and what the stage window says of it.
namespace lantern {

// The screens that can be chosen: those that are there, and the chosen one.
ScreenIdentities OfferedScreens(const ScreenIdentity& chosen, ScreenIdentities there);

// None, and each of the screens offered.
std::vector<MenuEntry> ScreenMenuItems(const ScreenIdentity& chosen, const ScreenIdentities& there);

// The place in the list that an item of the menu stands for, -1 for none; nothing for an item of
// another menu.
std::optional<int> ScreenOfKey(const QString& key);

QString ChosenCaption(const ScreenIdentity& chosen, const ScreenIdentities& there);
QString SingerStatus(SingerState state, const ScreenIdentities& there);

} // namespace lantern
