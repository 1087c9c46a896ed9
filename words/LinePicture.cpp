// SPDX-License-Identifier: GPL-3.0-or-later
#include "LinePicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace lantern {
namespace {

constexpr int kMargin = 8;
constexpr int kScale = 2;
constexpr double kBlur = 0.9;

// One row or column of a plane.
struct Lane {
    float* first;
    std::ptrdiff_t step;
    int count;

    float At(int i) const { return i < 0 || i >= count ? 0.0F : first[i * step]; }
    void Set(int i, float value) const { first[i * step] = value; }
};

// The middle of a small pixel is a quarter of a large one away from that one's.
void Double(const Lane& from, const Lane& to)
{
    constexpr std::array<float, 4> kCubic = {-0.0703125F, 0.8671875F, 0.2265625F, -0.0234375F};
    for (int i = 0; i < to.count; ++i) {
        const int near = i / 2;
        const int side = i % 2 == 0 ? -1 : 1;
        float sum = 0;
        for (int tap = -1; tap < 3; ++tap)
            sum += kCubic[static_cast<std::size_t>(tap + 1)] * from.At(near + tap * side);
        to.Set(i, sum);
    }
}

void Blur(const Lane& lane)
{
    constexpr int kReach = 3;
    std::array<float, kReach + 1> weights{};
    float whole = 0;
    for (int i = 0; i <= kReach; ++i) {
        weights[std::size_t(i)] = static_cast<float>(std::exp(-i * i / (2 * kBlur * kBlur)));
        whole += weights[std::size_t(i)] * (i == 0 ? 1.0F : 2.0F);
    }
    std::vector<float> blurred(static_cast<std::size_t>(lane.count));
    for (int i = 0; i < lane.count; ++i) {
        float sum = 0;
        for (int away = -kReach; away <= kReach; ++away)
            sum += weights[std::size_t(std::abs(away))] * lane.At(i + away);
        blurred[static_cast<std::size_t>(i)] = sum / whole;
    }
    for (int i = 0; i < lane.count; ++i)
        lane.Set(i, blurred[static_cast<std::size_t>(i)]);
}

struct Plane {
    Plane(int planeWidth, int planeHeight)
        : width(planeWidth), height(planeHeight),
          values(static_cast<std::size_t>(planeWidth) * static_cast<std::size_t>(planeHeight))
    {
    }
    Lane Row(int y) { return {values.data() + std::ptrdiff_t{y} * width, 1, width}; }
    Lane Column(int x) { return {values.data() + x, width, height}; }

    int width;
    int height;
    std::vector<float> values;
};

} // namespace

GreyPicture PictureOf(const LineMask& mask, LetterEdges edges)
{
    Plane letters(mask.width, mask.height);
    std::ranges::copy(mask.pixels, letters.values.begin());
    Plane wide(kScale * mask.width, mask.height);
    for (int y = 0; y < mask.height; ++y)
        Double(letters.Row(y), wide.Row(y));
    Plane large(kScale * mask.width + 2 * kMargin, kScale * mask.height + 2 * kMargin);
    for (int x = 0; x < wide.width; ++x) {
        Lane column = large.Column(x + kMargin);
        column.first += std::ptrdiff_t{kMargin} * large.width;
        column.count = kScale * mask.height;
        Double(wide.Column(x), column);
    }
    for (int y = 0; y < large.height; ++y)
        Blur(large.Row(y));
    for (int x = 0; x < large.width; ++x)
        Blur(large.Column(x));

    GreyPicture picture;
    picture.width = large.width;
    picture.height = large.height;
    picture.pixels.reserve(large.values.size());
    for (const float value : large.values) {
        const float grey = edges == LetterEdges::Crisp ? (value > 0.5F ? 0.0F : 1.0F) : 1 - value;
        picture.pixels.push_back(static_cast<std::uint8_t>(std::clamp(grey, 0.0F, 1.0F) * 255));
    }
    return picture;
}

int MaskColumn(int pictureColumn)
{
    return (pictureColumn - kMargin) / kScale;
}

} // namespace lantern
