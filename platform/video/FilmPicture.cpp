// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmPicture.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

namespace lantern {
namespace {

constexpr int kFractionBits = 16;

// What red, green and blue give of a component, as fractions of 1 << kFractionBits.
struct Weights {
    int red = 0;
    int green = 0;
    int blue = 0;
};

constexpr int Fraction(double value)
{
    const double scaled = value * (1 << kFractionBits);
    return static_cast<int>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
}

constexpr double kRedShare = 0.2126;
constexpr double kBlueShare = 0.0722;
constexpr double kGreenShare = 1.0 - kRedShare - kBlueShare;
constexpr double kBrightnessRange = 219.0 / 255.0;
constexpr double kColourRange = 224.0 / 255.0 / 2.0;
constexpr int kDarkest = 16;
constexpr int kNoColour = 128;

constexpr Weights kBrightness = {Fraction(kRedShare * kBrightnessRange),
                                 Fraction(kGreenShare* kBrightnessRange),
                                 Fraction(kBlueShare* kBrightnessRange)};
constexpr Weights kBlueness = {Fraction(-kRedShare / (1.0 - kBlueShare) * kColourRange),
                               Fraction(-kGreenShare / (1.0 - kBlueShare) * kColourRange),
                               Fraction(kColourRange)};
constexpr Weights kRedness = {Fraction(kColourRange),
                              Fraction(-kGreenShare / (1.0 - kRedShare) * kColourRange),
                              Fraction(-kBlueShare / (1.0 - kRedShare) * kColourRange)};

int Red(std::uint32_t pixel)
{
    return static_cast<int>(pixel >> 16 & 0xFF);
}
int Green(std::uint32_t pixel)
{
    return static_cast<int>(pixel >> 8 & 0xFF);
}
int Blue(std::uint32_t pixel)
{
    return static_cast<int>(pixel & 0xFF);
}

// Of a sum of pixels that is as many times a pixel as two to the power of the bits.
std::uint8_t Weighed(const Weights& weights, int red, int green, int blue, int bits, int zero)
{
    const int shift = kFractionBits + bits;
    const int sum = weights.red * red + weights.green * green + weights.blue * blue;
    return static_cast<std::uint8_t>((sum + (zero << shift) + (1 << (shift - 1))) >> shift);
}

std::uint8_t* RowOf(AVFrame& frame, std::size_t plane, int y)
{
    return frame.data[plane] + std::ptrdiff_t{frame.linesize[plane]} * y;
}

} // namespace

FilmPicture::FilmPicture(int width, int height, bool isExact)
    : m_frame(MadeForFilm(av_frame_alloc()))
{
    m_frame->width = width;
    m_frame->height = height;
    m_frame->format = isExact ? AV_PIX_FMT_0RGB32 : AV_PIX_FMT_YUV420P;
    if (av_frame_get_buffer(m_frame.get(), 0) < 0)
        throw std::bad_alloc();
    if (!isExact) {
        m_frame->color_range = AVCOL_RANGE_MPEG;
        m_frame->colorspace = AVCOL_SPC_BT709;
        m_frame->color_primaries = AVCOL_PRI_BT709;
        m_frame->color_trc = AVCOL_TRC_BT709;
        m_frame->chroma_location = AVCHROMA_LOC_LEFT;
    }
    const std::vector<std::uint32_t> black(static_cast<std::size_t>(width), 0xFF000000);
    Paint({black.data(), 0}, {0, 0, width, height});
}

void FilmPicture::Paint(const FilmPixels& from, const FilmRect& rect)
{
    const int left = std::clamp(rect.left, 0, m_frame->width);
    const int top = std::clamp(rect.top, 0, m_frame->height);
    const int right = std::clamp(rect.left + rect.width, left, m_frame->width);
    const int bottom = std::clamp(rect.top + rect.height, top, m_frame->height);
    if (left == right || top == bottom)
        return;
    if (av_frame_make_writable(m_frame.get()) < 0)
        throw std::bad_alloc();
    if (m_frame->format == AV_PIX_FMT_0RGB32) {
        PaintExact(from, left, top, right, bottom);
        return;
    }
    PaintBrightness(from, left, top, right, bottom);
    PaintColours(from, left, top, right, bottom);
}

void FilmPicture::PaintExact(const FilmPixels& from, int left, int top, int right, int bottom)
{
    const auto bytes = static_cast<std::size_t>(right - left) * sizeof(std::uint32_t);
    for (int y = top; y < bottom; ++y) {
        const std::uint32_t* const row = from.pixels + std::ptrdiff_t{from.stride} * y;
        std::memcpy(RowOf(*m_frame, 0, y) + std::ptrdiff_t{left} * 4, row + left, bytes);
    }
}

void FilmPicture::PaintBrightness(const FilmPixels& from, int left, int top, int right, int bottom)
{
    for (int y = top; y < bottom; ++y) {
        const std::uint32_t* const row = from.pixels + std::ptrdiff_t{from.stride} * y;
        std::uint8_t* const out = RowOf(*m_frame, 0, y);
        for (int x = left; x < right; ++x)
            out[x] = Weighed(kBrightness, Red(row[x]), Green(row[x]), Blue(row[x]), 0, kDarkest);
    }
}

// A colour is that of its pixel, twice, and of its two neighbours, in two rows.
void FilmPicture::PaintColours(const FilmPixels& from, int left, int top, int right, int bottom)
{
    constexpr int kPixelBits = 3;
    for (int y = top / 2; y < (bottom + 1) / 2; ++y) {
        const std::uint32_t* const upper = from.pixels + std::ptrdiff_t{from.stride} * 2 * y;
        const std::uint32_t* const lower = upper + from.stride;
        std::uint8_t* const blueness = RowOf(*m_frame, 1, y);
        std::uint8_t* const redness = RowOf(*m_frame, 2, y);
        for (int x = left / 2; x < std::min(right / 2 + 1, m_frame->width / 2); ++x) {
            const int before = std::max(2 * x - 1, 0);
            const int after = 2 * x + 1;
            const auto sum = [&](auto part) {
                return part(upper[before]) + part(lower[before]) + part(upper[after]) +
                       part(lower[after]) + 2 * (part(upper[2 * x]) + part(lower[2 * x]));
            };
            const int red = sum(Red);
            const int green = sum(Green);
            const int blue = sum(Blue);
            blueness[x] = Weighed(kBlueness, red, green, blue, kPixelBits, kNoColour);
            redness[x] = Weighed(kRedness, red, green, blue, kPixelBits, kNoColour);
        }
    }
}

} // namespace lantern
