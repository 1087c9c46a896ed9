// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FilmOrder.h"
#include "VisiblePicture.h"

#include <QRect>
#include <QSize>

#include <optional>
#include <vector>

namespace lantern::tool {

// Where the picture lies in a film: as large as it gets with the border of the disc around it, in
// its own proportions, and in the middle.
QRect PictureInFilm(QSize film);

// The pictures of a song in a film, one after the other.
class FilmPictures final : ScaleSurface {
public:
    FilmPictures(const OneBasedArray<CdgPacket>& packets, QSize size, PictureLook look);

    // Paints what looks different since the last one.
    void ShowAt(PacketIndex packet, const FilmClient::Paint& paint);

private:
    SurfaceImage Image() override;
    void Changed(const DeviceRect& rect) override;
    void PaintBorder(const FilmClient::Paint& paint);
    void Paint(const QRect& rect, const FilmClient::Paint& paint);

    const OneBasedArray<CdgPacket>& m_packets;
    QSize m_size;
    QRect m_place; // of the picture
    PictureLook m_look;
    std::vector<std::uint32_t> m_pixels; // of the whole film's picture
    std::optional<std::uint32_t> m_border;
    std::vector<QRect> m_changed;
    OfflinePicture m_offline;
};

} // namespace lantern::tool
