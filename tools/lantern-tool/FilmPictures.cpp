// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmPictures.h"

#include <algorithm>

namespace lantern::tool {
namespace {

std::uint32_t BorderOf(const PictureMemory& picture)
{
    const auto first = static_cast<std::size_t>(picture.BorderColour) * 3;
    const ColourBytes& table = picture.ColourTable;
    return 0xFF000000 | std::uint32_t{table[first]} << 16 | std::uint32_t{table[first + 1]} << 8 |
           table[first + 2];
}

} // namespace

QRect PictureInFilm(QSize film)
{
    const bool isNarrow = film.width() * kPictureHeight < film.height() * kPictureWidth;
    const int height = isNarrow ? film.width() * kVisibleHeight / kPictureWidth
                                : film.height() * kVisibleHeight / kPictureHeight;
    // Three to two by whole pixels.
    const QSize size(height / 2 * 3, height / 2 * 2);
    return {QPoint((film.width() - size.width()) / 2, (film.height() - size.height()) / 2), size};
}
static_assert(kVisibleWidth * 2 == kVisibleHeight * 3);

FilmPictures::FilmPictures(const OneBasedArray<CdgPacket>& packets, QSize size, PictureLook look)
    : m_packets(packets), m_size(size), m_place(PictureInFilm(size)), m_look(look),
      m_pixels(static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()))
{
    m_offline.Memory().Buffers().FGsetdc(this);
}

SurfaceImage FilmPictures::Image()
{
    const auto first =
        static_cast<std::size_t>(m_place.top()) * static_cast<std::size_t>(m_size.width()) +
        static_cast<std::size_t>(m_place.left());
    return {.pixels = m_pixels.data() + first,
            .width = m_place.width(),
            .height = m_place.height(),
            .stride = m_size.width(),
            .look = m_look};
}

void FilmPictures::Changed(const DeviceRect& rect)
{
    m_changed.push_back(
        QRect(rect.left, rect.top, rect.width, rect.height).translated(m_place.topLeft()));
}

void FilmPictures::Paint(const QRect& rect, const FilmClient::Paint& paint)
{
    paint({m_pixels.data(), m_size.width()},
          {rect.left(), rect.top(), rect.width(), rect.height()});
}

void FilmPictures::PaintBorder(const FilmClient::Paint& paint)
{
    const std::uint32_t colour = BorderOf(m_offline.Memory());
    if (m_border == colour)
        return;
    m_border = colour;
    const int right = m_place.left() + m_place.width();
    const int bottom = m_place.top() + m_place.height();
    const int width = m_size.width();
    for (const QRect& strip :
         {QRect(0, 0, width, m_place.top()), QRect(0, bottom, width, m_size.height() - bottom),
          QRect(0, m_place.top(), m_place.left(), m_place.height()),
          QRect(right, m_place.top(), width - right, m_place.height())}) {
        for (int y = strip.top(); y < strip.top() + strip.height(); ++y)
            std::fill_n(m_pixels.begin() + std::ptrdiff_t{y} * width + strip.left(), strip.width(),
                        colour);
        Paint(strip, paint);
    }
}

void FilmPictures::ShowAt(PacketIndex packet, const FilmClient::Paint& paint)
{
    m_offline.RunTo(m_packets, packet);
    m_changed.clear();
    ShowScaled(m_offline.Memory(), m_place.size());
    for (const QRect& rect : m_changed)
        Paint(rect, paint);
    PaintBorder(paint);
}

} // namespace lantern::tool
