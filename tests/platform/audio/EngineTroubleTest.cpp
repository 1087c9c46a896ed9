// SPDX-License-Identifier: GPL-3.0-or-later
// A sink that is suspended under a sound, and sounds that are a lot of work.
#include "EngineRoom.h"

#include "Listening.h"

#include <algorithm>

namespace lantern::test {
namespace {

constexpr double kSomething = 0.05;

class EngineTrouble : public EngineRoom {
protected:
    void PlayTone(int rate)
    {
        ASSERT_TRUE(m_engine->EngineInit());
        Load(MakeTone(rate, 15'000, 440));
        m_engine->StartSound();
        ASSERT_TRUE(IsHeard());
    }
    bool IsHeard()
    {
        return PassUntil([this] { return Level(m_ears.HeardLately(100ms)) > kSomething; }, 3s);
    }

    Ears m_ears{m_server, "studio"};
};

TEST_F(EngineTrouble, WhileItsSinkIsSuspendedTheSoundStandsAndThenGoesOn)
{
    PlayTone(44100);
    for (int round = 0; round < 2; ++round) {
        m_server.Control({"suspend-sink", "studio", "1"});
        Pass(300ms);
        const std::int32_t stoodAt = m_engine->GetSoundPosition();
        Pass(800ms);
        EXPECT_LE(m_engine->GetSoundPosition(), stoodAt + 60) << "nothing is heard";
        m_server.Control({"suspend-sink", "studio", "0"});
        EXPECT_TRUE(IsHeard());
        EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
        const std::int32_t heardAgainAt = m_engine->GetSoundPosition();
        EXPECT_LT(heardAgainAt, stoodAt + 1500);
        Pass(500ms);
        EXPECT_NEAR(m_engine->GetSoundPosition(), heardAgainAt + 500, 150);
    }
}

TEST_F(EngineTrouble, ASuspendedSinkHoldsUpNoOperation)
{
    PlayTone(44100);
    m_server.Control({"suspend-sink", "studio", "1"});
    Pass(300ms);
    m_engine->SeekSound(9000);
    Pass(100ms);
    m_engine->SetEnginePitch(3);
    m_engine->PauseSound();
    Pass(300ms);
    m_engine->StartSound();
    Pass(300ms);
    EXPECT_GE(m_engine->GetSoundPosition(), 9000);
    m_server.Control({"suspend-sink", "studio", "0"});
    EXPECT_TRUE(IsHeard());
    EXPECT_GE(m_engine->GetSoundPosition(), 9000);
    EXPECT_LT(m_engine->GetSoundPosition(), 12000);
}

// A machine too busy to play leaves a gap now and then, a fault leaves one each time.
TEST_F(EngineTrouble, A192KilohertzSoundInAnotherKeyAndAtAnotherSpeedHasNoGap)
{
    PlayTone(192000);
    m_engine->SetEnginePitch(3);
    m_engine->SetEngineTempo(-20);
    Pass(400ms);
    int gaps = 0;
    for (int i = 0; i < 3; ++i) {
        Pass(700ms);
        const std::vector<float> heard = m_ears.HeardLately(600ms);
        gaps += std::ranges::search_n(heard, 2 * 44, 0.0F).empty() ? 0 : 1;
    }
    EXPECT_LT(gaps, 3);
}

} // namespace
} // namespace lantern::test
