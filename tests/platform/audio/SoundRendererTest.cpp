// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundRenderer.h"

#include "EngineRoom.h"
#include "MemoryDecoder.h"

#include <atomic>

namespace lantern::test {
namespace {

// The renderer between a decoder of the test's and the real output.
class SoundRendererRoom : public testing::Test {
protected:
    SoundRendererRoom()
    {
        qputenv("PULSE_SERVER", m_server.Address().c_str());
        m_output = MakeAudioOutput();
        EXPECT_EQ(m_output->WaitForDevices(900ms).size(), 1U);
        const auto report = [this](SoundRenderer::Event event, std::uint64_t) {
            m_finished = m_finished || event == SoundRenderer::Event::Finished;
        };
        m_renderer = std::make_unique<SoundRenderer>(*m_output, report);
    }

    const std::shared_ptr<SoundServer> m_lentServer = LendSoundServer();
    SoundServer& m_server = *m_lentServer;
    std::unique_ptr<AudioOutput> m_output;
    std::unique_ptr<SoundRenderer> m_renderer;
    std::atomic<bool> m_finished = false;
};

std::vector<float> FloatsOf(const Pcm& pcm)
{
    std::vector<float> stereo;
    for (const std::int16_t sample : pcm.samples) {
        stereo.push_back(static_cast<float>(sample) / 32768.0F);
    }
    return stereo;
}

TEST_F(SoundRendererRoom, ASoundDecodedTooSlowlyHasGapsButLosesNoFrame)
{
    const Pcm noise = MakeNoise(44100, 900);
    const auto sound = std::make_shared<MemoryDecoder>(FloatsOf(noise));
    sound->DecodeTo(0);
    const Ears ears(m_server, "studio");
    m_renderer->SetWish(
        {.sound = sound, .serial = 1, .startFrame = 0, .shape = {}, .playing = true});
    double last = 0.0;
    for (std::int64_t frame = 0; frame <= noise.FrameCount() + 1500; frame += 1500) {
        sound->DecodeTo(frame);
        const Moment next = Clock::now() + 68ms; // at half the speed at which it is played
        while (Clock::now() < next) {
            const double heard = m_renderer->HeardMediaFrame(1).value_or(0.0);
            // After a gap the place may turn out to be a little less far than it seemed.
            EXPECT_GT(heard, last - 2205);
            last = std::max(last, heard);
            std::this_thread::sleep_for(2ms);
        }
    }
    EXPECT_TRUE(Eventually([&] { return m_finished.load(); }));
    std::this_thread::sleep_for(200ms);

    constexpr int kFade = 221; // out of the silence of a gap, and 0 is no match
    std::int64_t next = 0;
    const std::vector<Match> matches = FindMatches(ears.Heard().stereo, noise);
    for (const Match& match : matches) {
        EXPECT_LE(match.soundFrame, next + kFade);
        next = std::max(next, match.soundFrame + match.frames);
    }
    EXPECT_EQ(next, noise.FrameCount());
    EXPECT_GT(matches.size(), 3U); // or the decoder was not too slow
}

TEST_F(SoundRendererRoom, ASoundThatIsTakenAwayIsSoonLetGo)
{
    for (int i = 0; i < 20; ++i) {
        auto sound = std::make_shared<MemoryDecoder>(FloatsOf(MakeNoise(44100, 100)));
        const std::weak_ptr<SoundDecoder> held = sound;
        const auto serial = static_cast<std::uint64_t>(i);
        m_renderer->SetWish({.sound = std::move(sound),
                             .serial = serial,
                             .startFrame = 0,
                             .shape = {i % 3, 1.0},
                             .playing = true});
        std::this_thread::sleep_for(std::chrono::milliseconds(3 * i));
        m_renderer->SetWish({});
        EXPECT_TRUE(Eventually([&] { return held.expired(); }));
    }
    std::this_thread::sleep_for(250ms); // it fades
    const double silent = m_output->HeardFrames();
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(m_output->HeardFrames(), silent);
}

} // namespace
} // namespace lantern::test
