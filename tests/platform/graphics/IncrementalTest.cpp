// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureFixture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <random>
#include <tuple>
#include <vector>

namespace lantern {
namespace {

// Random drawing, shown after each few operations: what stands on the retained image must equal,
// bit for bit, a picture drawn whole on a fresh one, and only told rectangles may have changed.
class Incremental : public View,
                    public testing::WithParamInterface<std::tuple<PictureLook, double, int, int>> {
protected:
    int Below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    void DrawSomething()
    {
        buffers.FGsetcolor(Below(16));
        switch (Below(12)) {
        case 0:
            return buffers.FGputpixel(Below(310) - 5, Below(226) - 5);
        case 1:
            return DrawRect();
        case 2:
            return SetColour(static_cast<std::size_t>(Below(16)),
                             static_cast<std::uint8_t>(Below(3) * 100));
        case 3:
            return buffers.FGvbcopy(Below(100), 100 + Below(100), Below(100), 100 + Below(100),
                                    Below(300), Below(216), picture, picture);
        case 4:
            return Below(8) == 0 ? buffers.FGfillpage() : DrawRect();
        case 5:
            return Below(2) == 0 ? buffers.FGcopypage(picture, spare)
                                 : buffers.FGcopypage(spare, picture);
        default:
            return DrawTile();
        }
    }
    void DrawRect()
    {
        const int x = Below(300);
        const int y = Below(216);
        buffers.FGrect(x, x + Below(40), y, y + Below(40));
    }
    void DrawTile()
    {
        std::array<std::uint8_t, 12> rows{};
        for (std::uint8_t& row : rows)
            row = static_cast<std::uint8_t>(Below(64));
        buffers.DrawTile(Below(50) * 6, Below(18) * 12, rows, static_cast<std::uint8_t>(Below(16)),
                         static_cast<std::uint8_t>(Below(16)), Below(2) == 0);
    }
    void ShowWindow(VirtualBuffers& shown) const
    {
        shown.FGvbscale(viewLeft, viewLeft + 287, viewTop, viewTop + 191, 0,
                        std::get<2>(GetParam()), 0, std::get<3>(GetParam()));
    }
    // What the same picture looks like on a surface that has seen nothing yet.
    RetainedImage DrawnWhole() const
    {
        RetainedImage whole(image.width, image.height, image.ratio);
        whole.look = image.look;
        VirtualBuffers fresh;
        fresh.FGvbinit();
        fresh.FGvbopen(fresh.FGvballoc(300, 216));
        fresh.FGsetdc(&whole);
        fresh.FGsetdacs(0, 16, colours);
        for (int y = 0; y < 216; ++y) {
            int begin = 0; // of a run of one colour
            int colour = buffers.FGgetpixel(0, y);
            for (int x = 1; x <= 300; ++x) {
                const int next = x < 300 ? buffers.FGgetpixel(x, y) : -1;
                if (next == colour)
                    continue;
                fresh.FGsetcolor(colour);
                fresh.FGrect(begin, x - 1, y, y);
                begin = x;
                colour = next;
            }
        }
        ShowWindow(fresh);
        return whole;
    }
    void ExpectChangedOnlyWhereTold(const std::vector<std::uint32_t>& before)
    {
        std::vector<std::uint32_t> seen = before;
        for (const DeviceRect& rect : image.changes) {
            for (int y = rect.top; y < rect.top + rect.height; ++y) {
                const auto begin = static_cast<std::ptrdiff_t>(image.Index(rect.left, y));
                std::copy_n(image.pixels.begin() + begin, rect.width, seen.begin() + begin);
            }
        }
        ASSERT_EQ(seen, image.pixels);
    }

    std::mt19937 random{41};
    int viewLeft = 6;
    int viewTop = 12;
};

TEST_P(Incremental, EqualsAFullRedrawBitForBit)
{
    const auto& [look, ratio, width, height] = GetParam();
    image.look = look;
    image.Replace(static_cast<int>(std::lround(width * ratio)),
                  static_cast<int>(std::lround(height * ratio)), ratio);
    for (int round = 0; round < 40; ++round) {
        for (int operations = Below(6); operations >= 0; --operations)
            DrawSomething();
        if (Below(12) == 0) {
            viewLeft = 6 + Below(8);
            viewTop = 12 + Below(16);
        }
        const std::vector<std::uint32_t> before = image.pixels;
        image.changes.clear();
        ShowWindow(buffers);
        ExpectChangedOnlyWhereTold(before);
        ASSERT_EQ(image.pixels, DrawnWhole().pixels) << "round " << round;
    }
}

#ifdef __SANITIZE_ADDRESS__ // which takes its time: larger pictures are drawn no other way
constexpr auto kRatios = {1.0, 1.25, 2.0};
#else
constexpr auto kRatios = {1.0, 1.25, 1.5, 2.0, 3.0};
#endif

INSTANTIATE_TEST_SUITE_P(Sizes, Incremental,
                         testing::Combine(testing::Values(PictureLook::Sharp, PictureLook::Smooth),
                                          testing::ValuesIn(kRatios),
                                          testing::Values(288, 433, 577, 101),
                                          testing::Values(192, 289, 67)));

} // namespace
} // namespace lantern
