// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"

#include <cmath>

namespace lantern::test {
namespace {

constexpr double kTone = 440.0;
// What a change of key, speed, volume or balance may take to be heard, with the hand's own time.
constexpr Clock::duration kHeardWithin = 400ms;

class Hearing : public Journey {
protected:
    void OpenTone() { OpenTrack(WriteToneTrack("tone", 120.0, kTone)); }

    // Clicks every half second.
    void OpenClicks()
    {
        SoundSheet sheet(120.0);
        for (int i = 0; i < 238; ++i)
            sheet.Add({.start = 0.5 + 0.5 * i, .length = 0.06, .frequency = 1000.0});
        OpenTrack(WritePlainTrack("clicks", 120.0, sheet));
    }
    double SecondsBetweenClicks(const std::vector<float>& heard)
    {
        const std::vector<Burst> bursts = FindBursts(heard, Recording::kRate);
        if (bursts.size() < 3)
            return 0.0;
        // The first and the last may be cut.
        return (bursts[bursts.size() - 2].startFrame - bursts[1].startFrame) /
               static_cast<double>(bursts.size() - 3) / Recording::kRate;
    }
    std::vector<float> AfterSettling(Clock::duration howLong = 500ms)
    {
        std::this_thread::sleep_for(kHeardWithin + howLong);
        return ears.HeardLately(howLong);
    }
};

TEST_F(Hearing, TheSoundArrivesUnchangedAtNeutral)
{
    OpenTone();
    const std::vector<float> heard = AfterSettling();
    EXPECT_NEAR(Level(heard, Side::Left), 0.4 / std::sqrt(2.0), 0.002);
    EXPECT_NEAR(Level(heard, Side::Right), 0.4 / std::sqrt(2.0), 0.002);
    EXPECT_NEAR(Frequency(heard, Recording::kRate), kTone, 0.5);
}

TEST_F(Hearing, VolumeByWheelAndKeys)
{
    OpenTone();
    const double full = Level(AfterSettling());
    hand.MoveTo(PicturePoint());
    hand.Wheel(-25);
    EXPECT_NEAR(Level(AfterSettling()) / full, 0.5, 0.03);
    Keys("Up", 10);
    EXPECT_NEAR(Level(AfterSettling()) / full, 0.7, 0.03);
    hand.Key("m");
    EXPECT_EQ(Level(AfterSettling()), 0.0);
    hand.Key("m");
    EXPECT_NEAR(Level(AfterSettling()) / full, 0.7, 0.03);
    Leave();
    EXPECT_EQ(home.Setting("volume"), "70");
}

TEST_F(Hearing, BalanceMovesTheSoundToOneSide)
{
    OpenTone();
    const double full = Level(AfterSettling());
    hand.Key("b");
    Keys("Up", 26);
    std::vector<float> heard = AfterSettling();
    EXPECT_LT(Level(heard, Side::Left), 0.001);
    EXPECT_NEAR(Level(heard, Side::Right) / full, 1.0, 0.05);
    Keys("Down", 50);
    heard = AfterSettling();
    EXPECT_LT(Level(heard, Side::Right), 0.001);
    EXPECT_NEAR(Level(heard, Side::Left) / full, 1.0, 0.05);
}

TEST_F(Hearing, KeyChangesThePitchAndNotThePace)
{
    OpenTone();
    hand.Key("k");
    Keys("Up", 3);
    EXPECT_NEAR(Frequency(AfterSettling(), Recording::kRate), kTone * std::pow(2.0, 3.0 / 12.0),
                3.0);
    Keys("Down", 8);
    EXPECT_NEAR(Frequency(AfterSettling(), Recording::kRate), kTone * std::pow(2.0, -5.0 / 12.0),
                3.0);
    Leave();
    EXPECT_EQ(home.Setting("keypitch"), "-5");

    OpenClicks(); // with the key that was saved
    EXPECT_NEAR(SecondsBetweenClicks(AfterSettling(5s)), 0.5, 0.005);
}

TEST_F(Hearing, SpeedChangesThePaceAndNotThePitch)
{
    OpenClicks();
    hand.Key("s");
    Keys("Up", 10);
    EXPECT_NEAR(SecondsBetweenClicks(AfterSettling(5s)), 0.5 / 1.2, 0.005);
    Keys("Down", 25);
    EXPECT_NEAR(SecondsBetweenClicks(AfterSettling(5s)), 0.5 / 0.7, 0.008);
    hand.Key("q"); // back to normal speed
    EXPECT_NEAR(SecondsBetweenClicks(AfterSettling(5s)), 0.5, 0.005);
    hand.Key("q"); // and to the speed before
    Leave();
    EXPECT_EQ(home.Setting("speed"), "-30");

    OpenTone();
    EXPECT_NEAR(Frequency(AfterSettling(), Recording::kRate), kTone, 2.0);
}

TEST_F(Hearing, AChangeIsHeardSoon)
{
    OpenTone();
    std::this_thread::sleep_for(500ms);
    const Moment pressed = Clock::now();
    hand.Key("m");
    ASSERT_TRUE(AwaitSilence());
    const Recording heard = ears.Heard();
    std::int64_t frame = heard.FrameCount();
    while (frame > 0 && std::abs(heard.stereo[static_cast<std::size_t>(2 * frame - 2)]) < 0.02F)
        --frame;
    const double milliseconds = Milliseconds(heard.HeardAt(static_cast<double>(frame)) - pressed);
    std::cout << "Silent " << milliseconds << " ms after the key was pressed\n";
    EXPECT_GT(milliseconds, 0.0);
    EXPECT_LT(milliseconds, 250.0);
}

} // namespace
} // namespace lantern::test
