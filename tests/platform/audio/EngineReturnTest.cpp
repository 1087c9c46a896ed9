// SPDX-License-Identifier: GPL-3.0-or-later
// A chosen device that goes and comes back, and a user who moves the sound elsewhere in a mixer.
#include "EngineRoom.h"

#include "Listening.h"

namespace lantern::test {
namespace {

class EngineReturn : public EngineRoom {
protected:
    void PlayOnStage()
    {
        ASSERT_TRUE(m_engine->EngineInit());
        m_engine->SelectDevice(1);
        Load(MakeTone(44100, 20'000, 440));
        m_engine->StartSound();
        ASSERT_TRUE(PassUntil([this] { return m_engine->GetSoundPosition() > 100; }, 3s));
    }
};

TEST_F(EngineReturn, AChosenDeviceThatComesBackGetsTheSoundAgain)
{
    const Ears studio(m_server, "studio");
    PlayOnStage();
    for (int round = 0; round < 2; ++round) {
        m_server.RemoveSink("stage");
        EXPECT_TRUE(PassUntil([&] { return Level(studio.HeardLately(100ms)) > kSomething; }, 3s));
        m_server.AddSink({"stage", "Stage HDMI Output"});
        const Ears stage(m_server, "stage");
        EXPECT_TRUE(PassUntil([&] { return Level(stage.HeardLately(100ms)) > kSomething; }, 3s));
        Pass(300ms);
        EXPECT_LT(Level(studio.HeardLately(100ms)), 1e-6);
    }
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
}

TEST_F(EngineReturn, AMoveThatTheUserMadeInAMixerStands)
{
    const Ears studio(m_server, "studio");
    PlayOnStage();
    const std::string streams = m_server.Control({"list", "short", "sink-inputs"});
    const std::string stream = streams.substr(0, streams.find('\t'));
    m_server.Control({"move-sink-input", stream, "studio"});
    EXPECT_TRUE(PassUntil([&] { return Level(studio.HeardLately(100ms)) > kSomething; }, 3s));
    m_server.AddSink({"third", "Third"}); // news of devices
    Pass(500ms);
    EXPECT_GT(Level(studio.HeardLately(200ms)), kSomething);
    m_server.RemoveSink("stage");
    m_server.AddSink({"stage", "Stage HDMI Output"});
    Pass(500ms);
    EXPECT_GT(Level(studio.HeardLately(200ms)), kSomething);
    Load(MakeTone(48000, 20'000, 440)); // a stream of its own
    m_engine->StartSound();
    Pass(800ms);
    EXPECT_GT(Level(studio.HeardLately(200ms)), kSomething);
    m_engine->SelectDevice(0); // whose list is from before
    m_engine->SelectDevice(1);
    Pass(500ms);
    EXPECT_LT(Level(studio.HeardLately(200ms)), 1e-6);
}

} // namespace
} // namespace lantern::test
