// SPDX-License-Identifier: GPL-3.0-or-later
// What becomes of the window when the track, or the place in it, is another one.
#include "WindowHand.h"

#include <gmock/gmock.h>

namespace lantern {
namespace {

class WindowTracksTest : public WindowHand {
protected:
    static constexpr int kSeconds = 25;

    // One colour from the first packet to the last, as 0xRGB.
    QString MakePlainTrack(std::uint16_t colour)
    {
        return MakeTrack({packets::Colours(false, {colour, 0, 0, 0, 0, 0, 0, 0}),
                          packets::Colours(true, {}), packets::MemoryPreset(0)},
                         kSeconds);
    }
    void PlayTo(std::int32_t positionMs)
    {
        engine.PositionMs = positionMs;
        window.UpdatePlayer();
    }
    QRgb Middle()
    {
        QWidget& picture = PartNamed("pic");
        return picture.grab().toImage().pixel(picture.rect().center());
    }
    QPoint OnSlider(double part)
    {
        QWidget& slider = PartNamed("ctlSlider");
        const int way = slider.width() - 4;
        return slider.mapTo(&window, QPoint(2 + static_cast<int>(part * way), 6));
    }
};

TEST_F(WindowTracksTest, NoPictureOfTheLastTrackComesBackByASkip)
{
    engine.DurationMs = kSeconds * 1000;
    Load(MakePlainTrack(0x00F));
    PlayTo(24000);
    ASSERT_EQ(Middle(), 0xFF0000FFU);
    window.OpenMedia(MakePlainTrack(0xF00));
    PlayTo(100);
    ASSERT_EQ(Middle(), 0xFFFF0000U);
    window.MainPopup(CommandId::Forward10Seconds);
    window.MainPopup(CommandId::Forward10Seconds);
    PlayTo(engine.PositionMs);
    ASSERT_GE(engine.PositionMs, 20000);
    EXPECT_EQ(Middle(), 0xFFFF0000U);
    window.MainPopup(CommandId::Back10Seconds);
    EXPECT_EQ(Middle(), 0xFFFF0000U);
}

// The sound may have gone on by the first tick.
TEST_F(WindowTracksTest, ANewTrackIsSeenFromItsFirstPacketWhereverTheLastOneWas)
{
    Load(MakePlainTrack(0x00F));
    PlayTo(100);
    ASSERT_EQ(Middle(), 0xFF0000FFU);
    window.OpenMedia(MakePlainTrack(0xF00));
    PlayTo(200);
    EXPECT_EQ(Middle(), 0xFFFF0000U);
}

TEST_F(WindowTracksTest, WhatKeepsASoundFromPlayingToItsEndIsToldOnce)
{
    Load(MakeBlueTrack());
    window.UpdatePlayer();
    EXPECT_EQ(Status(), QString());
    engine.SoundTrouble = ENOSPC;
    window.UpdatePlayer();
    EXPECT_EQ(Status(), QString::fromLocal8Bit(strerror(ENOSPC)));
    Press('V');
    const QString other = Status();
    window.UpdatePlayer();
    EXPECT_EQ(Status(), other) << "once";
    engine.SoundTrouble = 0;
    window.OpenMedia(MakeBlueTrack());
    window.UpdatePlayer();
    EXPECT_EQ(Status(), QString());
    engine.SoundTrouble = ENOSPC;
    window.UpdatePlayer();
    EXPECT_EQ(Status(), QString::fromLocal8Bit(strerror(ENOSPC))) << "and of the next one";
}

TEST_F(WindowTracksTest, AnOpenedTrackTakesTheMessageAway)
{
    Load();
    EXPECT_FALSE(Message().isVisible());
    Press('V');
    ASSERT_TRUE(Message().isVisible());
    window.OpenMedia(MakeBlueTrack());
    EXPECT_FALSE(Message().isVisible());
}

TEST_F(WindowTracksTest, APausedTrackLeavesTheSliderInTheHand)
{
    Load(MakeBlueTrack());
    window.MainPopup(CommandId::Pause);
    ASSERT_EQ(engine.Status, SoundStatus::Paused);
    auto& slider = PartNamed<ctlSlide>("ctlSlider");
    MouseDown(OnSlider(0.2));
    MouseMove(OnSlider(1.2));
    EXPECT_EQ(slider.Value(), slider.Max());
    MouseMove(OnSlider(0.2));
    EXPECT_NEAR(slider.Value(), 2000, 100);
    MouseUp(OnSlider(0.2));
}

// The sound is shorter than the packets: silence follows it, as a clip of its own.
TEST_F(WindowTracksTest, APausedTrackThatIsMovedIntoAnotherClipStaysSilent)
{
    const QString track = MakeBlueTrack(20);
    QFile sound(QString(track).replace(QStringLiteral(".cdg"), QStringLiteral(".wav")));
    ASSERT_TRUE(sound.open(QIODevice::WriteOnly));
    engine.FileDurations[sound.fileName()] = 10000;
    Load(track);
    PlayTo(5000);
    window.MainPopup(CommandId::Pause);
    ASSERT_EQ(engine.Status, SoundStatus::Paused);
    engine.Log.clear();
    Press(KeyCode::Right);
    EXPECT_THAT(engine.Log, ::testing::Contains(::testing::StartsWith("LoadMemory")));
    EXPECT_THAT(engine.Log, ::testing::Not(::testing::Contains("StartSound")));
    EXPECT_NE(engine.Status, SoundStatus::Playing);
    EXPECT_EQ(PartNamed<ctlSlide>("ctlSlider").Value(), 15000);
    Press('P');
    EXPECT_EQ(engine.Status, SoundStatus::Playing);
    EXPECT_EQ(engine.PositionMs, 5000);
}

} // namespace
} // namespace lantern
