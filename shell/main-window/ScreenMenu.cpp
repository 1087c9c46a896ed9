// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenMenu.h"

namespace lantern {
namespace {

constexpr int kNoScreenNumber = -1;
const QString kScreenKey = QStringLiteral("screen ");
const QString kNoScreen = QStringLiteral("None");

QString ScreenKey(int number)
{
    return kScreenKey + QString::number(number);
}

} // namespace

ScreenIdentities OfferedScreens(const ScreenIdentity& chosen, ScreenIdentities there)
{
    if (!chosen.IsNone() && !FindScreen(chosen, there))
        there.push_back(chosen);
    return there;
}

std::vector<MenuEntry> ScreenMenuItems(const ScreenIdentity& chosen, const ScreenIdentities& there)
{
    std::vector<MenuEntry> items = {{kNoScreen, ScreenKey(kNoScreenNumber), chosen.IsNone()},
                                    MenuSeparator()};
    const ScreenIdentities offered = OfferedScreens(chosen, there);
    const QStringList captions = ScreenCaptions(offered);
    const std::optional<std::size_t> found = FindScreen(chosen, offered);
    for (std::size_t i = 0; i < offered.size(); ++i) {
        const int number = static_cast<int>(i);
        const QString caption = captions.at(number);
        items.push_back({i < there.size() ? caption : caption + QStringLiteral(" (not connected)"),
                         ScreenKey(number), i == found});
    }
    return items;
}

std::optional<int> ScreenOfKey(const QString& key)
{
    if (!key.startsWith(kScreenKey))
        return std::nullopt;
    return key.mid(kScreenKey.size()).toInt();
}

QString ChosenCaption(const ScreenIdentity& chosen, const ScreenIdentities& there)
{
    const ScreenIdentities offered = OfferedScreens(chosen, there);
    const std::optional<std::size_t> found = FindScreen(chosen, offered);
    return found ? ScreenCaptions(offered).at(static_cast<qsizetype>(*found)) : kNoScreen;
}

QString SingerStatus(SingerState state, const ScreenIdentities& there)
{
    switch (state) {
    case SingerState::Off:
        return there.size() > 1 ? QStringLiteral("Shows the picture alone")
                                : QStringLiteral("There is no other screen");
    case SingerState::Shown:
        return QStringLiteral("Shows the picture");
    case SingerState::NotThere:
        return QStringLiteral("Not connected");
    case SingerState::PlayersOwn:
        return QStringLiteral("Move the player to another screen");
    case SingerState::Closed:
        return QStringLiteral("Closed: choose it again to open it");
    }
    return {}; // the switch is complete
}

} // namespace lantern
