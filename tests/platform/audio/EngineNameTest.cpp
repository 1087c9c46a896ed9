// SPDX-License-Identifier: GPL-3.0-or-later
// What the desktop's mixer shows of what plays.
#include "EngineRoom.h"

#include <gmock/gmock.h>

namespace lantern::test {
namespace {

using ::testing::HasSubstr;

class EngineName : public EngineRoom {
protected:
    void Play(int sampleRate = 44100)
    {
        Load(MakeTone(sampleRate, 20'000, 440));
        m_engine->StartSound();
        ASSERT_TRUE(PassUntil([this] { return m_engine->GetSoundPosition() > 50; }, 3s));
    }
    // All that the server tells of the streams that play.
    std::string Streams() const { return m_server.Control({"list", "sink-inputs"}); }
    bool PassUntilShown(const std::string& name)
    {
        const std::string shown = "media.name = \"" + name + "\"\n";
        return PassUntil([&] { return Streams().find(shown) != std::string::npos; }, 3s);
    }
};

TEST_F(EngineName, AStreamTellsWhoPlaysAndWhat)
{
    m_engine->NameSound(QStringLiteral("Für Elise \"live\""));
    Play();
    const std::string shown = Streams();
    EXPECT_THAT(shown, HasSubstr("media.name = \"Für Elise \\\"live\\\"\"\n"));
    EXPECT_THAT(shown, HasSubstr("media.role = \"music\"\n"));
    EXPECT_THAT(shown, HasSubstr("application.name = \"Lyric Lantern CDG Player\"\n"));
    EXPECT_THAT(shown, HasSubstr("application.id = \"io.github.lyric_lantern.player\"\n"));
    EXPECT_THAT(shown, HasSubstr("application.icon_name = \"io.github.lyric_lantern.player\"\n"));
}

TEST_F(EngineName, TheNameChangesWithTheSound)
{
    m_engine->NameSound(QStringLiteral("First"));
    Play();
    EXPECT_TRUE(PassUntilShown("First"));
    m_engine->NameSound(QStringLiteral("Second"));
    EXPECT_TRUE(PassUntilShown("Second"));
    Play(); // the stream stays
    EXPECT_TRUE(PassUntilShown("Second"));
    Play(48000); // a new one
    EXPECT_TRUE(PassUntilShown("Second"));
}

TEST_F(EngineName, ANameGivenWhileTheStreamIsMadeIsShown)
{
    Load(MakeTone(44100, 20'000, 440));
    for (int i = 0; i < 200; ++i) {
        m_engine->StartSound();
        m_engine->NameSound(QString::number(i));
        Pass(1ms);
    }
    EXPECT_TRUE(PassUntilShown("199"));
}

TEST_F(EngineName, WithoutANameItIsThePlayers)
{
    Play();
    EXPECT_TRUE(PassUntilShown("Lyric Lantern CDG Player"));
    m_engine->NameSound(QStringLiteral("Song"));
    EXPECT_TRUE(PassUntilShown("Song"));
    m_engine->NameSound({});
    EXPECT_TRUE(PassUntilShown("Lyric Lantern CDG Player"));
}

TEST_F(EngineName, ANameThatIsNoTextHoldsUpNothing)
{
    m_engine->NameSound(QString(QChar(0xDC80)) + QStringLiteral("odd"));
    Play();
    EXPECT_THAT(Streams(), HasSubstr("odd\"\n"));
    m_engine->NameSound(QString(100'000, u'x'));
    Pass(200ms);
    Play();
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
}

TEST_F(EngineName, ItSurvivesTheServer)
{
    m_engine->NameSound(QStringLiteral("Song"));
    Play();
    m_server.Restart();
    EXPECT_TRUE(PassUntilShown("Song"));
}

} // namespace
} // namespace lantern::test
