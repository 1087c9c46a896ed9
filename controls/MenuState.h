// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Picture.h"
#include "SystemColours.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace lantern {

struct MenuItem {
    QString key; // the caller's token, told with the click
    QString caption;
    bool enabled = true;
    PictureReference picture = {};
    ColourValue foreColor = 0;
    ColourValue hotForeColor = 0;
    ColourValue hotBackColor = 0;
    // Of one among several of which one holds. It is drawn as any other.
    std::optional<bool> isChosen = {};

    // A separator is never enabled.
    bool IsSeparator() const { return caption == QLatin1String("-"); }
};

// What the collector of the items and the window that shows them have in common. There is one for
// the whole program: only one menu can be open at a time.
struct MenuState {
    static constexpr std::int16_t kNone = -1;

    std::vector<MenuItem> items;
    std::int16_t hotItem = kNone; // under the pointer, counted from 1; may lie beyond the items
    std::int16_t previousHotItem = kNone;
    bool closed = true;
    PictureReference sidePicture;
    bool useIcons = false;
    bool useLeftImage = false;
    ColourValue backColor = SystemReference(SystemColour::ButtonFace);
    ColourValue leftPicBackColor = SystemReference(SystemColour::ButtonFace);

    // The item to be told if the menu closed now; null for none.
    const MenuItem* Choice() const
    {
        if (hotItem < 1 || static_cast<std::size_t>(hotItem) > items.size())
            return nullptr;
        const MenuItem& item = items[static_cast<std::size_t>(hotItem) - 1];
        return item.enabled ? &item : nullptr;
    }
};

} // namespace lantern
