// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>
#include <QString>

#include <cstdint>
#include <optional>

namespace lantern::tool {

// Nothing for what is no such value.

// Of the form 1920x1280, in pixels.
std::optional<QSize> SizeFrom(const QString& text);
// Milliseconds, from seconds, to the nearest.
std::optional<std::int32_t> MsFromSeconds(const QString& text);
std::optional<int> NumberFrom(const QString& text, int least, int most);

} // namespace lantern::tool
