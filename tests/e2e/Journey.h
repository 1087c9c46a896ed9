// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Ears.h"
#include "Eyes.h"
#include "Hand.h"
#include "Lent.h"
#include "Listening.h"
#include "PacketSheet.h"
#include "Player.h"
#include "SoundSheet.h"

#include <gtest/gtest.h>
#include <memory>

namespace lantern::test {

// What every journey starts with: a screen, a sound server, a user with empty folders, and the
// means to act. At its end the player, if it still runs, has to answer and to leave by Ctrl+Q with
// exit code 0. After a failure a picture of the screen is kept.
class Journey : public ::testing::Test {
protected:
    // The colours of a plain track: the whole picture, and the border around it.
    static constexpr QRgb kPicture = 0xFF3366CC;
    static constexpr QRgb kBorder = 0xFF116611;
    // What should come comes at once; the machine may be busy with something else.
    static constexpr Clock::duration kPatience = 20s;

    static constexpr QSize kScreenSize = {1600, 1200};

    explicit Journey(const QSize& screenSize = kScreenSize,
                     WindowManager manager = WindowManager::Openbox)
        : m_lentScreen(Lend<XServer>(screenSize.width(), screenSize.height(), manager))
    {
    }
    void TearDown() override;

    // A track of one picture, and a sound beside it.
    std::filesystem::path WritePlainTrack(const std::string& stem, double seconds,
                                          const SoundSheet& sound, QRgb picture = kPicture);
    // The same with one tone from start to end, whose wave goes up to that on both sides.
    static constexpr double kLoudness = 0.4;
    std::filesystem::path WriteToneTrack(const std::string& stem, double seconds,
                                         double frequency = 440.0, QRgb picture = kPicture);

    // A silent track: a second and a half of one colour, in which the picture can be found on the
    // screen, then a picture that uses every colour. That stands so long after the first is seen.
    static constexpr Clock::duration kTilesDrawn = 3500ms;
    std::filesystem::path WriteTiledTrack();

    // Starts the player, with nothing or with a file, and waits for its window.
    void StartPlayer(const std::vector<std::string>& arguments = {},
                     const EnvironmentChanges& environment = {});
    // The same with a track of ours, and waits for its picture and its sound.
    void OpenTrack(const std::filesystem::path& track, QRgb picture = kPicture);
    // The same with two minutes of clicks, one every half second.
    void OpenClicks();
    // Settings that the next start of the player finds.
    void WriteSettings(const std::string& lines);
    void Leave(); // by Ctrl+Q, with exit code 0

    void Keys(std::string_view chord, int times);
    bool AwaitPicture(QRgb colour, Clock::duration atMost = kPatience);
    bool AwaitColour(Point point, QRgb colour);
    QRect PictureArea(QRgb colour = kPicture);
    Point PicturePoint(QRgb colour = kPicture);
    bool AwaitSilence(Clock::duration atMost = kPatience) const;
    bool AwaitSound(Clock::duration atMost = kPatience) const;
    // Until the sound is that tone, or a side of it that loud.
    ::testing::AssertionResult AwaitTone(double frequency, double within = 3.0) const;
    ::testing::AssertionResult AwaitLevel(Side side, double level, double within) const;
    // Until the sound is short bursts that begin so far apart.
    ::testing::AssertionResult AwaitPace(double seconds) const;

private:
    const std::shared_ptr<XServer> m_lentScreen;
    const std::shared_ptr<SoundServer> m_lentSound = LendSoundServer();

protected:
    const XServer& screen = *m_lentScreen;
    SoundServer& sound = *m_lentSound;
    Ears ears{sound, "studio"};
    const PlayerHome home;
    const ScratchFolder folder;
    Hand hand{screen};
    Eyes eyes{screen};
    std::unique_ptr<Player> player;
};

} // namespace lantern::test
