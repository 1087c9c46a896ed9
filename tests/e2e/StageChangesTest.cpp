// SPDX-License-Identifier: GPL-3.0-or-later
// A hundred quick changes on the stage window, in an order that nobody would choose, while a song
// plays: what is heard, what is seen, and what is kept.
#include "SingerJourney.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace lantern::test {
namespace {

constexpr double kSongSeconds = 90.0;
constexpr int kAllChanges = 100;

// What Tab walks through, in its order.
enum Place : int {
    Delay,
    Flashes,
    Both,
    Left,
    Right,
    Tunes,
    Loudness,
    ForgetSong,
    ForgetAll,
    Letters,
    Screen,
    Hide
};
constexpr int kPlaces = Hide + 1;
constexpr std::array kChanged = {Delay,    Both,       Left,    Right, Tunes,
                                 Loudness, ForgetSong, Letters, Screen};

// What the changes add up to.
struct Kept {
    int delayMs = 0;
    int guide = Both;
    bool tunes = false;
    bool loudness = false;
    bool letters = false;
    int screen = 0; // none, the player's own, the other

    std::string File() const
    {
        std::string text;
        if (delayMs != 0)
            text += "delay.studio\t" + std::to_string(delayMs) + "\r\n";
        if (loudness)
            text += "evenloudness\tY\r\n";
        if (tunes)
            text += "remembertunes\tY\r\n";
        if (screen != 0)
            text += std::string("singerscreen\t") + (screen == 1 ? "own" : "stage") + "|||\r\n";
        if (letters)
            text += "smoothletters\tY\r\n";
        if (guide != Both)
            text += std::string("voiceguide\t") + (guide == Left ? "left" : "right") + "\r\n";
        return text;
    }
};

// Steps of the sound that no wave of the song and no fade has. Where the machine let the sound
// run dry, there is silence beside them.
int Clicks(const std::vector<float>& stereo)
{
    constexpr float kClick = 0.03F;
    constexpr std::size_t kBeside = 64; // frames
    int clicks = 0;
    std::size_t lastSilent = 0;
    const std::size_t frames = stereo.size() / 2;
    const auto isSilent = [&](std::size_t frame) {
        return stereo[2 * frame] == 0.0F && stereo[2 * frame + 1] == 0.0F;
    };
    for (std::size_t frame = 2; frame < frames; ++frame) {
        if (isSilent(frame) && isSilent(frame - 1))
            lastSilent = frame;
        for (const std::size_t side : {0U, 1U}) {
            const auto at = [&](std::size_t back) { return stereo[2 * (frame - back) + side]; };
            if (std::abs(at(0) - 2 * at(1) + at(2)) < kClick)
                continue;
            bool isDry = frame - lastSilent < kBeside;
            for (std::size_t ahead = frame; ahead < std::min(frame + kBeside, frames - 1); ++ahead)
                isDry = isDry || (isSilent(ahead) && isSilent(ahead + 1));
            clicks += !isDry;
        }
    }
    return clicks;
}

class StageChanges : public SingerJourney {
protected:
    std::filesystem::path WriteSong()
    {
        std::mt19937 random(3);
        PacketSheet packets(kSongSeconds);
        packets.Put(1, Packet::LoadColoursLow({0xFF000000, kPicture, kBorder, 0xFFFFFFFF}));
        packets.Put(2, Packet::MemoryPreset(1));
        packets.Put(3, Packet::BorderPreset(2));
        for (int packet = 1200; packet < 300 * 85; packet += 20) {
            std::array<std::uint8_t, 12> rows = {};
            for (std::uint8_t& row : rows)
                row = static_cast<std::uint8_t>(random() % 64);
            packets.Put(packet, Packet::Tile(static_cast<int>(random() % 50),
                                             static_cast<int>(random() % 18), 1, 3, rows));
        }
        packets.Write(folder / "song.cdg");
        SoundSheet sheet(kSongSeconds);
        sheet.Add({.length = kSongSeconds, .frequency = 440.0, .left = 0.4, .right = 0.0});
        sheet.Add({.length = kSongSeconds, .frequency = 660.0, .left = 0.0, .right = 0.2});
        sheet.WriteWav(folder / "song.wav");
        return folder / "song.cdg";
    }
    void GoTo(int place)
    {
        const int on = (place - m_focus + kPlaces) % kPlaces;
        if (on <= kPlaces / 2)
            Keys("Tab", on);
        else
            Keys("shift+Tab", kPlaces - on);
        m_focus = place;
    }
    void Change(int place, bool isUp)
    {
        GoTo(place);
        switch (place) {
        case Delay:
            hand.Key(isUp ? "Right" : "Left");
            kept.delayMs += isUp ? 5 : -5;
            return;
        case Screen:
            hand.Key(isUp ? "Down" : "Up");
            kept.screen = std::clamp(kept.screen + (isUp ? 1 : -1), 0, 2);
            return;
        case Tunes:
            kept.tunes = !kept.tunes;
            break;
        case Loudness:
            kept.loudness = !kept.loudness;
            break;
        case Letters:
            kept.letters = !kept.letters;
            break;
        case ForgetSong:
            break;
        default:
            kept.guide = place;
        }
        hand.Key("space");
    }
    QImage PlayersPicture() { return eyes.Area(main.Area().adjusted(30, 30, -30, -90)); }
    QImage SingersPicture() { return eyes.Area(kSingerArea); }
    // Once it stands still.
    template <typename Look>
    QImage Still(Look&& look)
    {
        QImage seen = look();
        Eventually(
            [&] {
                const QImage now = look();
                return std::exchange(seen, now) == now;
            },
            kPatience, 300ms);
        return seen;
    }

    Kept kept;

private:
    int m_focus = Delay;
};

TEST(StageClicks, AClickIsHeardAndADryMomentIsNone)
{
    std::vector<float> tone;
    for (int frame = 0; frame < 4410; ++frame) {
        const auto wave = static_cast<float>(0.4 * std::sin(0.0627 * frame));
        tone.insert(tone.end(), {wave, wave / 2});
    }
    EXPECT_EQ(Clicks(tone), 0);
    std::vector<float> stepped = tone;
    for (std::size_t i = 4000; i < stepped.size(); ++i)
        stepped[i] *= 0.5F;
    EXPECT_GT(Clicks(stepped), 0);
    std::vector<float> dry = tone;
    std::fill(dry.begin() + 4000, dry.begin() + 4400, 0.0F);
    EXPECT_EQ(Clicks(dry), 0);
}

TEST_F(StageChanges, AHundredOfThemInAnyOrderLeaveNoClickNoStalePictureAndNothingLost)
{
    ASSERT_NO_FATAL_FAILURE(OpenTrack(WriteSong()));
    hand.Key("F2");
    ASSERT_TRUE(stage.HasKeyboardSoon());
    std::mt19937 random(7);
    std::vector<int> order;
    for (int i = 0; i < kAllChanges; ++i)
        order.push_back(kChanged.at(static_cast<std::size_t>(i) % kChanged.size()));
    std::ranges::shuffle(order, random);
    const Moment begin = Clock::now();
    for (const int place : order)
        Change(place, random() % 3 != 0);
    std::this_thread::sleep_for(600ms); // the last fade
    const std::vector<float> heard = ears.Heard().Between(begin, Clock::now() - 100ms);
    EXPECT_GT(heard.size(), 2U * Recording::kRate);
    EXPECT_EQ(Clicks(heard), 0);

    for (int i = 0; i < 2; ++i)
        Change(Screen, true);
    ASSERT_TRUE(singer.IsThereSoon());
    hand.Key("Escape");
    EXPECT_TRUE(main.HasKeyboardSoon());
    EXPECT_EQ(ReadFile(StageFile()), kept.File());

    hand.Key("p");
    EXPECT_TRUE(AwaitSilence());
    const QImage own = Still([this] { return PlayersPicture(); });
    const QImage singers = Still([this] { return SingersPicture(); });
    Unplug();
    EXPECT_TRUE(singer.IsGoneSoon());
    Plug();
    EXPECT_TRUE(singer.IsThereSoon());
    hand.Key("3");
    hand.Key("2");
    EXPECT_TRUE(Eventually([&] { return PlayersPicture() == own; }, kPatience, 50ms));
    EXPECT_TRUE(Eventually([&] { return SingersPicture() == singers; }, kPatience, 50ms));
    KeepPicture(eyes.Screen(), "stage-changes");
}

} // namespace
} // namespace lantern::test
