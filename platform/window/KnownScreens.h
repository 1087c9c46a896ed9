// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ScreenIdentity.h"

#include <QStringList>

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

class QScreen;

namespace lantern {

using ScreenIdentities = std::vector<ScreenIdentity>;

ScreenIdentity IdentityOf(const QScreen& screen);

// Which of the screens is the one that is wanted. One that tells what it is, is known by that on
// any plug; of several that tell the same, the one on the same plug is meant. One that tells
// nothing is known by its plug.
std::optional<std::size_t> FindScreen(const ScreenIdentity& wanted,
                                      const ScreenIdentities& screens);
// The same; of those that nothing tells apart it is the first that is free.
std::optional<std::size_t> FindFreeScreen(const ScreenIdentity& wanted,
                                          const ScreenIdentities& screens,
                                          const std::function<bool(std::size_t)>& isFree);

// What people call each of the screens: by its model, and where several are called the same, by
// what tells them apart.
QStringList ScreenCaptions(const ScreenIdentities& screens);
QString ScreenCaption(const ScreenIdentity& screen);

} // namespace lantern
