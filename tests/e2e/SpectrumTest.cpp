// SPDX-License-Identifier: GPL-3.0-or-later
// The live spectrum of the options window, while a track plays.
#include "Journey.h"

#include <algorithm>
#include <cmath>

namespace lantern::test {
namespace {

// On this screen: the options window stands in its middle.
constexpr QRect kField(594 + 79, 490 + 167, 275, 36);
constexpr int kBarPitch = 5;
constexpr int kBars = 55;
constexpr QRgb kBlackPixel = 0xFF000000;

class SpectrumJourney : public Journey {
protected:
    // How high each bar stands, in pixels.
    std::vector<int> BarHeights()
    {
        const QImage field = eyes.Area(kField);
        std::vector<int> heights;
        for (int bar = 0; bar < kBars; ++bar) {
            int height = 0;
            while (height < field.height() &&
                   field.pixel(bar * kBarPitch + 1, field.height() - 1 - height) != kBlackPixel)
                ++height;
            heights.push_back(height);
        }
        return heights;
    }

    // The tone's bar is as high as the tone is loud, and no bar is higher.
    ::testing::AssertionResult AwaitBarOf(double frequency)
    {
        const auto tone =
            static_cast<std::size_t>(kBars * std::log(frequency / 40.0) / std::log(16000.0 / 40.0));
        const double decibels = 20.0 * std::log10(kLoudness);
        const auto wanted = static_cast<int>(std::lround((1.0 + decibels / 66.0) * 34.0));
        std::vector<int> heights;
        const auto isThere = [&] {
            heights = BarHeights();
            return std::ranges::max(heights) == heights[tone] &&
                   std::abs(heights[tone] - wanted) <= 1;
        };
        if (Eventually(isThere, kPatience, 20ms))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "bar " << tone << " is not " << wanted
                                             << " high: " << ::testing::PrintToString(heights);
    }

    bool AwaitNothing()
    {
        const auto isNothing = [this] {
            QImage black = eyes.Area(kField);
            const QImage field = black;
            black.fill(kBlackPixel);
            return field == black;
        };
        return Eventually(isNothing, kPatience, 20ms);
    }
};

TEST_F(SpectrumJourney, TheBarOfTheToneStandsWhileItPlaysAndFallsInPause)
{
    OpenTrack(WriteToneTrack("tone", 60, 1000.0));
    hand.Key("Escape");
    EXPECT_TRUE(AwaitBarOf(1000.0));
    hand.Key("p");
    EXPECT_TRUE(AwaitNothing());
    hand.Key("p");
    EXPECT_TRUE(AwaitBarOf(1000.0));
    hand.Key("m");
    EXPECT_TRUE(AwaitNothing());
    hand.Key("m");
    EXPECT_TRUE(AwaitBarOf(1000.0));
}

TEST_F(SpectrumJourney, HiddenAndShownAgainItGoesOn)
{
    OpenTrack(WriteToneTrack("tone", 60, 3000.0));
    hand.Key("Escape");
    EXPECT_TRUE(AwaitBarOf(3000.0));
    hand.Key("Escape");
    EXPECT_TRUE(AwaitColour({kField.x() - 5, kField.y() - 5}, kPicture));
    hand.Key("Escape");
    EXPECT_TRUE(AwaitBarOf(3000.0));
    hand.Key("period"); // stop
    EXPECT_TRUE(AwaitNothing());
}

} // namespace
} // namespace lantern::test
