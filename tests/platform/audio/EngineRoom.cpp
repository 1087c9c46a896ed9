// SPDX-License-Identifier: GPL-3.0-or-later
#include "EngineRoom.h"

#include "MakeAudioEngine.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <unordered_map>

#ifdef __SANITIZE_THREAD__
// libpulse recycles the memory of packets between its threads without a lock; the library is not
// built so that this could be seen. These functions call nothing of ours. Nor can the lock be seen
// under which Qt posts an event to another thread.
extern "C" const char* __tsan_default_suppressions()
{
    return "race:pa_iochannel_read_with_ancil_data\n"
           "race:pa_packet_new_data\n"
           "race:pa_srbchannel_read\n"
           "race:pa_tagstruct_put\n"
           "race:QObject::event\n";
}
#endif

namespace lantern::test {

namespace {

constexpr std::int64_t kShortestMatch = 16;

void NeedApplication()
{
    static int argumentCount = 1;
    static std::array<char, 5> name = {'t', 'e', 's', 't', 0};
    static std::array<char*, 2> arguments = {name.data(), nullptr};
    static QCoreApplication application(argumentCount, arguments.data());
}

std::int16_t SampleAt(double angle)
{
    return static_cast<std::int16_t>(std::lround(16000.0 * std::sin(angle)));
}

std::int64_t FramesIn(int sampleRate, int milliseconds)
{
    return std::int64_t{sampleRate} * milliseconds / 1000;
}

Pcm Silence(int sampleRate, int milliseconds)
{
    Pcm pcm{.sampleRate = sampleRate, .channels = 2, .samples = {}};
    pcm.samples.resize(static_cast<std::size_t>(FramesIn(sampleRate, milliseconds)) * 2);
    return pcm;
}

// Both samples of a frame as the numbers they were made from.
std::uint32_t FrameKey(float left, float right)
{
    const auto number = [](float sample) {
        return static_cast<std::uint16_t>(std::lround(sample * 32768.0F));
    };
    return (std::uint32_t{number(left)} << 16U) | number(right);
}

} // namespace

EngineRoom::EngineRoom(const std::vector<PulseSink>& sinks)
    : m_lentServer(LendSoundServer(sinks)), m_server(*m_lentServer)
{
    NeedApplication();
    qputenv("PULSE_SERVER", m_server.Address().c_str());
    m_engine = MakeAudioEngine();
    m_engine->SoundDone = [this] {
        ++m_doneCount;
        m_doneAt = Clock::now();
    };
}

EngineRoom::~EngineRoom() = default;

void EngineRoom::Load(const Pcm& pcm)
{
    ASSERT_TRUE(m_engine->EngineInit());
    m_engine->CloseSound();
    m_image = WavImage(pcm);
    ASSERT_EQ(m_engine->LoadMemory(m_image), 0);
    m_lastMs = 0;
}

void EngineRoom::Look()
{
    const std::int32_t positionMs = m_engine->GetSoundPosition();
    EXPECT_GE(positionMs, m_lastMs) << "the position stepped back";
    m_lastMs = positionMs;
    m_glances.push_back({Clock::now(), positionMs});
}

bool EngineRoom::PassUntil(const std::function<bool()>& done, Clock::duration atMost)
{
    const Moment end = Clock::now() + atMost;
    while (Clock::now() < end) {
        QCoreApplication::processEvents();
        Look();
        if (done()) {
            return true;
        }
        std::this_thread::sleep_for(1ms);
    }
    return false;
}

void EngineRoom::Pass(Clock::duration time)
{
    PassUntil([] { return false; }, time);
}

bool EngineRoom::PassUntilStatus(SoundStatus status, Clock::duration atMost)
{
    return PassUntil([&] { return m_engine->GetSoundStatus() == status; }, atMost);
}

void EngineRoom::Seek(std::int32_t positionMs)
{
    m_engine->SeekSound(positionMs);
    m_lastMs = positionMs;
    EXPECT_EQ(m_engine->GetSoundPosition(), positionMs);
}

double EngineRoom::PositionAt(Moment moment) const
{
    const auto after = std::ranges::lower_bound(m_glances, moment, {}, &Glance::at);
    if (after == m_glances.begin() || after == m_glances.end()) {
        return -1e9;
    }
    const auto before = std::prev(after);
    const double part = Milliseconds(moment - before->at) / Milliseconds(after->at - before->at);
    return before->positionMs + part * (after->positionMs - before->positionMs);
}

Pcm MakeNoise(int sampleRate, int milliseconds)
{
    Pcm pcm = Silence(sampleRate, milliseconds);
    std::mt19937 random(3);
    for (std::int16_t& sample : pcm.samples) {
        sample = static_cast<std::int16_t>(static_cast<int>(random() % 20001) - 10000);
    }
    return pcm;
}

Pcm MakeTone(int sampleRate, int milliseconds, double hertz)
{
    Pcm pcm = Silence(sampleRate, milliseconds);
    for (std::size_t i = 0; i < pcm.samples.size(); ++i) {
        const auto frame = static_cast<double>(i / 2);
        pcm.samples[i] = SampleAt(2.0 * std::numbers::pi * hertz * frame / sampleRate);
    }
    return pcm;
}

Pcm MakeBursts(int sampleRate, int milliseconds, int periodMs)
{
    Pcm pcm = Silence(sampleRate, milliseconds);
    const std::int64_t length = FramesIn(sampleRate, 5);
    for (int ms = periodMs; FramesIn(sampleRate, ms) + length < pcm.FrameCount(); ms += periodMs) {
        for (std::int64_t i = 0; i < 2 * length; ++i) {
            const auto frame = static_cast<double>(i / 2);
            pcm.samples[static_cast<std::size_t>(2 * FramesIn(sampleRate, ms) + i)] =
                SampleAt(2.0 * std::numbers::pi * 1000.0 * frame / sampleRate);
        }
    }
    return pcm;
}

std::vector<Match> FindMatches(const std::vector<float>& recorded, const Pcm& noise)
{
    std::unordered_multimap<std::uint32_t, std::int64_t> places;
    std::vector<std::uint32_t> sound;
    for (std::size_t i = 0; i + 1 < noise.samples.size(); i += 2) {
        const auto left = static_cast<std::uint16_t>(noise.samples[i]);
        sound.push_back((std::uint32_t{left} << 16U) |
                        static_cast<std::uint16_t>(noise.samples[i + 1]));
        places.emplace(sound.back(), static_cast<std::int64_t>(i / 2));
    }
    const auto total = static_cast<std::int64_t>(recorded.size() / 2);
    const auto length = [&](std::int64_t from, std::int64_t place) {
        std::int64_t frames = 0;
        while (from + frames < total && place + frames < noise.FrameCount()) {
            const auto at = static_cast<std::size_t>(from + frames) * 2;
            // Exactly: a sample that only rounds to that of the sound is another one.
            const auto expected = static_cast<std::size_t>(place + frames) * 2;
            if (recorded[at] != static_cast<float>(noise.samples[expected]) / 32768.0F ||
                recorded[at + 1] != static_cast<float>(noise.samples[expected + 1]) / 32768.0F) {
                break;
            }
            ++frames;
        }
        return frames;
    };
    std::vector<Match> matches;
    for (std::int64_t frame = 0; frame < total;) {
        const auto at = static_cast<std::size_t>(frame) * 2;
        Match best;
        const auto [first, last] = places.equal_range(FrameKey(recorded[at], recorded[at + 1]));
        for (auto place = first; place != last; ++place) {
            const std::int64_t frames = length(frame, place->second);
            if (frames > best.frames) {
                best = {frame, place->second, frames};
            }
        }
        if (best.frames >= kShortestMatch) {
            matches.push_back(best);
        }
        frame += std::max<std::int64_t>(best.frames, 1);
    }
    return matches;
}

} // namespace lantern::test
