// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PictureMemory.h"
#include "Track.h"

#include <QImage>

namespace lantern::tool {

// Only so much of a song is looked at for the picture that tells most of it.
inline constexpr PacketIndex kTellingPackets = 600 * kPacketsPerSecond;

// Of the pictures of a song, a second apart, the one with the most words that can be read. Titles
// and credits count only where there is nothing else.
QImage TellingPicture(const OneBasedArray<CdgPacket>& packets);

// How many tiles of the picture look lettered: some edges in them, but no pattern.
int LetteredTiles(std::span<const std::uint8_t> indexes, const ColourBytes& colours);

// As large as fits in a square, and sharp if it is enlarged.
QImage ScaledToSquare(const QImage& image, int side);

} // namespace lantern::tool
