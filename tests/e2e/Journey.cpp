// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"

#include <cmath>
#include <iostream>
#include <random>

namespace lantern::test {
namespace {

constexpr double kSilence = 0.0005;
constexpr Clock::duration kListeningTime = 100ms;
constexpr Clock::duration kHearingTime = 300ms; // for a pitch or a level

// Listens until what is heard is near enough.
template <typename Measure>
::testing::AssertionResult AwaitHeard(const Ears& ears, double wanted, double within,
                                      Clock::duration atMost, Measure&& measure)
{
    double heard = 0.0;
    const auto isHeard = [&] {
        heard = measure(ears.HeardLately(kHearingTime));
        return std::abs(heard - wanted) <= within;
    };
    if (Eventually(isHeard, atMost, 20ms))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "heard " << heard << " instead of " << wanted;
}

// 0 if too few are heard to tell.
double SecondsBetweenBursts(const std::vector<float>& heard)
{
    const std::vector<Burst> bursts = FindBursts(heard, Recording::kRate);
    if (bursts.size() < 5)
        return 0.0;
    // The first and the last may be cut. A stall of the machine lengthens one or the other of the
    // distances, and leaves the middle one.
    std::vector<double> distances;
    for (std::size_t i = 2; i + 1 < bursts.size(); ++i)
        distances.push_back(bursts[i].startFrame - bursts[i - 1].startFrame);
    const auto middle = distances.begin() + std::ssize(distances) / 2;
    std::ranges::nth_element(distances, middle);
    return *middle / Recording::kRate;
}

} // namespace

void Journey::TearDown()
{
    const QImage lastPicture = eyes.Screen();
    if (player && player->Program().IsRunning()) {
        EXPECT_TRUE(player->AnswerTime(kPatience)) << "the player does not answer";
        Leave();
    }
    if (HasFailure()) {
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        KeepPicture(lastPicture, std::string(test->test_suite_name()) + "." + test->name());
        if (player)
            std::cout << "The player said:\n" << player->Log() << '\n';
    }
}

std::filesystem::path Journey::WritePlainTrack(const std::string& stem, double seconds,
                                               const SoundSheet& soundSheet, QRgb picture)
{
    PacketSheet packets(seconds);
    packets.Put(1, Packet::LoadColoursLow({0xFF000000, picture, kBorder}));
    packets.Put(2, Packet::MemoryPreset(1));
    packets.Put(3, Packet::BorderPreset(2));
    const std::filesystem::path path = folder / (stem + ".cdg");
    packets.Write(path);
    soundSheet.WriteWav(folder / (stem + ".wav"));
    return path;
}

std::filesystem::path Journey::WriteToneTrack(const std::string& stem, double seconds,
                                              double frequency, QRgb picture)
{
    SoundSheet sheet(seconds);
    sheet.Add({.start = 0.0,
               .length = seconds,
               .frequency = frequency,
               .left = kLoudness,
               .right = kLoudness});
    return WritePlainTrack(stem, seconds, sheet, picture);
}

std::filesystem::path Journey::WriteTiledTrack()
{
    constexpr double kSeconds = 20.0;
    constexpr int kFirstTilePacket = 450;
    constexpr int kTiles = 280;
    std::mt19937 random(5);
    Packet::Colours low = {};
    Packet::Colours high = {};
    for (QRgb* colour : {low.data(), high.data()}) {
        for (int i = 0; i < 8; ++i)
            colour[i] =
                qRgb(17 * static_cast<int>(random() % 16), 17 * static_cast<int>(random() % 16),
                     17 * static_cast<int>(random() % 16));
    }
    low[1] = kPicture;
    PacketSheet packets(kSeconds);
    packets.Put(1, Packet::LoadColoursLow(low));
    packets.Put(2, Packet::LoadColoursHigh(high));
    packets.Put(3, Packet::MemoryPreset(1));
    for (int i = 0; i < kTiles; ++i) {
        std::array<std::uint8_t, 12> rows = {};
        for (std::uint8_t& row : rows)
            row = static_cast<std::uint8_t>(random() % 64);
        packets.Put(kFirstTilePacket + i,
                    Packet::Tile(static_cast<int>(random() % 50), static_cast<int>(random() % 18),
                                 static_cast<int>(random() % 16), static_cast<int>(random() % 16),
                                 rows));
    }
    packets.Write(folder / "tiles.cdg");
    return folder / "tiles.cdg";
}

void Journey::StartPlayer(const std::vector<std::string>& arguments,
                          const EnvironmentChanges& environment)
{
    player =
        std::make_unique<Player>(screen, sound.Environment(), home,
                                 PlayerStart{.arguments = arguments, .environment = environment});
    ASSERT_TRUE(player->AwaitWindow()) << "no window came\n" << player->Account();
}

void Journey::OpenTrack(const std::filesystem::path& track, QRgb picture)
{
    ASSERT_NO_FATAL_FAILURE(StartPlayer({track.string()}));
    ASSERT_TRUE(AwaitPicture(picture)) << "the picture did not come";
    ASSERT_TRUE(AwaitSound()) << "the sound did not come";
}

void Journey::WriteSettings(const std::string& lines)
{
    std::filesystem::create_directories(home.SettingsFile().parent_path());
    WriteFile(home.SettingsFile(), lines);
}

void Journey::Leave()
{
    hand.Key("ctrl+q");
    EXPECT_EQ(player->Program().WaitForExit(kPatience), 0) << player->Log();
}

void Journey::Keys(std::string_view chord, int times)
{
    for (int i = 0; i < times; ++i)
        hand.Key(chord);
}

bool Journey::AwaitPicture(QRgb colour, Clock::duration atMost)
{
    return Eventually(
        [&] {
            const QRect area = player->WindowArea();
            return !area.isEmpty() &&
                   eyes.At({area.center().x(), area.top() + area.height() / 3}) == colour;
        },
        atMost);
}

bool Journey::AwaitColour(Point point, QRgb colour)
{
    return Eventually([&] { return eyes.At(point) == colour; }, kPatience);
}

QRect Journey::PictureArea(QRgb colour)
{
    return BoundsOfColour(eyes.Screen(), colour);
}

Point Journey::PicturePoint(QRgb colour)
{
    const QPoint centre = PictureArea(colour).center();
    return {centre.x(), centre.y()};
}

bool Journey::AwaitSilence(Clock::duration atMost) const
{
    return Eventually([&] { return Level(ears.HeardLately(kListeningTime)) < kSilence; }, atMost,
                      20ms);
}

bool Journey::AwaitSound(Clock::duration atMost) const
{
    return Eventually([&] { return Level(ears.HeardLately(kListeningTime)) > kSilence; }, atMost,
                      20ms);
}

::testing::AssertionResult Journey::AwaitTone(double frequency, double within) const
{
    return AwaitHeard(ears, frequency, within, kPatience, [](const std::vector<float>& heard) {
        return Frequency(heard, Recording::kRate);
    });
}

::testing::AssertionResult Journey::AwaitLevel(Side side, double level, double within) const
{
    return AwaitHeard(ears, level, within, kPatience,
                      [&](const std::vector<float>& heard) { return Level(heard, side); });
}

void Journey::OpenClicks()
{
    SoundSheet sheet(120.0);
    for (int i = 0; i < 238; ++i)
        sheet.Add({.start = 0.5 + 0.5 * i, .length = 0.06, .frequency = 1000.0});
    OpenTrack(WritePlainTrack("clicks", 120.0, sheet));
}

::testing::AssertionResult Journey::AwaitPace(double seconds) const
{
    double heard = 0.0;
    const auto isHeard = [&] {
        heard = SecondsBetweenBursts(ears.HeardLately(4s));
        return std::abs(heard - seconds) < 0.005;
    };
    if (Eventually(isHeard, kPatience, 100ms))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "bursts every " << heard << " s, not " << seconds;
}

} // namespace lantern::test
