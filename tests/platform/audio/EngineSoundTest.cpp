// SPDX-License-Identifier: GPL-3.0-or-later
// What is heard, and when: the sink's monitor against what the engine tells.
#include "EngineRoom.h"

#include "Listening.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

namespace lantern::test {
namespace {

class EngineSound : public EngineRoom {
protected:
    // The rest of what was played takes a moment to reach the ears.
    Recording HeardSoFar()
    {
        std::this_thread::sleep_for(200ms);
        return m_ears.Heard();
    }

    void PassUntilABurstIsOver(int periodMs);
    void ExpectBurstsWhereToldToBe(int periodMs, std::size_t atLeast);
    std::vector<float> HearChanges();

    Ears m_ears{m_server, "studio"};
};

// A millisecond of nothing; a tone passes through zero for one frame at most.
bool HasGap(std::span<const float> stereo)
{
    return !std::ranges::search_n(stereo, 2 * 44, 0.0F).empty();
}

double SharpestBend(std::span<const float> stereo)
{
    double sharpest = 0.0;
    for (std::size_t at = 4; at < stereo.size(); ++at) {
        const float bend = stereo[at] - 2.0F * stereo[at - 2] + stereo[at - 4];
        sharpest = std::max(sharpest, static_cast<double>(std::abs(bend)));
    }
    return sharpest;
}

// The first frame for which the level of the ten milliseconds from there on suits.
Moment FirstMoment(const Recording& heard, Moment from,
                   const std::function<bool(std::span<const float>)>& suits)
{
    constexpr std::int64_t kWindow = Recording::kRate / 100;
    for (std::int64_t frame = heard.FrameAt(from); frame + kWindow < heard.FrameCount();
         frame += 20) {
        const std::span<const float> all(heard.stereo);
        if (suits(all.subspan(static_cast<std::size_t>(frame) * 2, kWindow * 2))) {
            return heard.HeardAt(static_cast<double>(frame));
        }
    }
    ADD_FAILURE() << "never heard";
    return {};
}

// The old place sounds on until a seek is heard: no burst may be due by then.
void EngineSound::PassUntilABurstIsOver(int periodMs)
{
    const auto isOver = [&] {
        const std::int32_t sinceBurst = m_engine->GetSoundPosition() % periodMs;
        return sinceBurst >= 20 && sinceBurst < 80;
    };
    EXPECT_TRUE(PassUntil(isOver, 2s));
}

// The told position at the moment at which each burst was heard must be that of the burst.
void EngineSound::ExpectBurstsWhereToldToBe(int periodMs, std::size_t atLeast)
{
    const Recording heard = HeardSoFar();
    std::vector<double> errors;
    for (const Burst& burst : FindBursts(heard.stereo, Recording::kRate, 0.1)) {
        const double position = PositionAt(heard.HeardAt(burst.startFrame));
        if (position >= 0.0) {
            errors.push_back(std::remainder(position, periodMs));
        }
    }
    ASSERT_GE(errors.size(), atLeast);
    double sum = 0.0;
    double worst = 0.0;
    for (const double error : errors) {
        sum += error;
        worst = std::max(worst, std::abs(error));
    }
    const double mean = sum / static_cast<double>(errors.size());
    RecordProperty("mean_ms", std::to_string(mean));
    RecordProperty("worst_ms", std::to_string(worst));
    EXPECT_LT(std::abs(mean), 3.0 + m_server.TellsAheadInTheMean());
    EXPECT_LT(worst, 10.0 + m_server.TellsAheadAtMost());
}

TEST_F(EngineSound, ANeutralSoundIsHeardBitForBitFromItsFirstFrameToItsLast)
{
    const Pcm noise = MakeNoise(44100, 1500);
    Load(noise);
    m_engine->StartSound();
    EXPECT_TRUE(PassUntilStatus(SoundStatus::Stopped));
    const std::vector<Match> matches = FindMatches(HeardSoFar().stereo, noise);
    ASSERT_EQ(matches.size(), 1U);
    EXPECT_EQ(matches[0].soundFrame, 0);
    EXPECT_EQ(matches[0].frames, noise.FrameCount());
}

TEST_F(EngineSound, AFullVolumeAndEvenBalanceStayBitForBitAfterOtherValues)
{
    const Pcm noise = MakeNoise(44100, 1500);
    Load(noise);
    m_engine->SetEngineVolume(40);
    m_engine->SetEngineBalance(-20);
    m_engine->StartSound();
    Pass(300ms);
    m_engine->SetEngineVolume(100);
    m_engine->SetEngineBalance(0);
    EXPECT_TRUE(PassUntilStatus(SoundStatus::Stopped));
    const std::vector<Match> matches = FindMatches(HeardSoFar().stereo, noise);
    ASSERT_EQ(matches.size(), 1U);
    EXPECT_GT(matches[0].frames, 44100);
    EXPECT_EQ(matches[0].soundFrame + matches[0].frames, noise.FrameCount());
}

TEST_F(EngineSound, EachSeekWhilePlayingIsExactToTheSample)
{
    const Pcm noise = MakeNoise(44100, 4000);
    Load(noise);
    m_engine->StartSound();
    Pass(300ms);
    const std::vector<std::int32_t> places = {3001, 17, 2500, 2499, 1, 3333};
    for (const std::int32_t place : places) {
        Seek(place);
        Pass(250ms);
    }
    m_engine->PauseSound();
    const std::vector<Match> matches = FindMatches(HeardSoFar().stereo, noise);
    ASSERT_EQ(matches.size(), places.size() + 1);
    for (std::size_t i = 0; i < places.size(); ++i) {
        constexpr int kFadingOver = 441;
        EXPECT_EQ(matches[i + 1].soundFrame, std::int64_t{places[i]} * 44100 / 1000 + kFadingOver);
        EXPECT_GT(matches[i + 1].frames, 44100 / 10);
    }
}

TEST_F(EngineSound, APauseLosesNoFrame)
{
    const Pcm noise = MakeNoise(44100, 2000);
    Load(noise);
    m_engine->StartSound();
    for (int i = 0; i < 4; ++i) {
        Pass(230ms);
        m_engine->PauseSound();
        Pass(120ms);
        m_engine->StartSound();
    }
    EXPECT_TRUE(PassUntilStatus(SoundStatus::Stopped));
    std::int64_t next = 0;
    for (const Match& match : FindMatches(HeardSoFar().stereo, noise)) {
        // What is heard until the sound has faded is heard once more. The two fades are no match.
        EXPECT_LE(match.soundFrame, next + 2 * 221);
        EXPECT_GT(match.soundFrame, next - 4410);
        next = match.soundFrame + match.frames;
    }
    EXPECT_EQ(next, noise.FrameCount());
}

TEST_F(EngineSound, TheToldPositionIsWhatIsHeardAtTheNeutralTempo)
{
    Load(MakeBursts(44100, 4000, 200));
    m_engine->StartSound();
    Pass(1100ms);
    PassUntilABurstIsOver(200);
    Seek(2700);
    Pass(1000ms);
    m_engine->PauseSound();
    Pass(100ms);
    Seek(500);
    m_engine->StartSound();
    Pass(700ms);
    ExpectBurstsWhereToldToBe(200, 11);
}

TEST_F(EngineSound, TheToldPositionIsWhatIsHeardInEveryKeyAndTempo)
{
    Load(MakeBursts(44100, 12000, 250));
    m_engine->SetEnginePitch(3);
    m_engine->StartSound();
    Pass(700ms);
    for (const auto& [semitones, tempo] : std::vector<std::pair<int, float>>{
             {3, -20.0F}, {0, -20.0F}, {0, 45.0F}, {-10, 45.0F}, {10, 0.0F}, {0, 0.0F}}) {
        m_engine->SetEnginePitch(semitones);
        m_engine->SetEngineTempo(tempo);
        Pass(700ms);
    }
    PassUntilABurstIsOver(250);
    m_engine->SetEnginePitch(-4);
    m_engine->SetEngineTempo(30);
    Seek(10'100);
    Pass(900ms);
    ExpectBurstsWhereToldToBe(250, 20);
}

TEST_F(EngineSound, ManyChangesInARowNeitherDriftNorStepBack)
{
    Load(MakeBursts(44100, 12000, 250));
    m_engine->StartSound();
    for (int i = 0; i < 130; ++i) {
        m_engine->SetEngineTempo(static_cast<float>(40.0 * std::sin(i * 0.1)));
        Pass(15ms);
    }
    m_engine->SetEngineTempo(0);
    Pass(1000ms);
    ExpectBurstsWhereToldToBe(250, 8);
}

// Every value changes while a tone plays; what was heard meanwhile.
std::vector<float> EngineSound::HearChanges()
{
    Load(MakeTone(44100, 12000, 440));
    m_engine->StartSound();
    Pass(300ms);
    const Moment from = Clock::now();
    for (const float volume : {2.0F, 100.0F, 30.0F, 100.0F}) {
        m_engine->SetEngineVolume(volume);
        Pass(60ms);
    }
    for (const float balance : {-50.0F, 50.0F, 0.0F}) {
        m_engine->SetEngineBalance(balance);
        Pass(60ms);
    }
    for (const auto& [semitones, tempo] : std::vector<std::pair<int, float>>{
             {2, 0.0F}, {2, -20.0F}, {0, 30.0F}, {-5, 10.0F}, {0, 0.0F}}) {
        m_engine->SetEnginePitch(semitones);
        m_engine->SetEngineTempo(tempo);
        Pass(250ms);
    }
    const Moment to = Clock::now();
    const Recording heard = HeardSoFar();
    EXPECT_GT(Level(heard.Between(to - 100ms, to)), 0.3);
    return heard.Between(from, to);
}

// A machine too busy to play leaves a gap now and then, a fault leaves one each time.
TEST_F(EngineSound, NoChangeMakesAClickOrAGap)
{
    std::vector<float> changes = HearChanges();
    for (int i = 0; i < 3 && HasGap(changes); ++i) {
        changes = HearChanges();
    }
    EXPECT_FALSE(HasGap(changes));
    // The tone itself bends by 0.0019, two semitones up by 0.0025; a cut in it by some 0.1.
    EXPECT_LT(SharpestBend(changes), 0.006);
}

TEST_F(EngineSound, EachChangeIsHeardWithin150Milliseconds)
{
    Load(MakeTone(44100, 12000, 440));
    m_engine->StartSound();
    Pass(400ms);

    const Moment quieter = Clock::now();
    m_engine->SetEngineVolume(50);
    Pass(250ms);
    const Moment aside = Clock::now();
    m_engine->SetEngineBalance(50);
    Pass(250ms);
    m_engine->SetEngineVolume(100);
    m_engine->SetEngineBalance(0);
    Pass(250ms);
    const Moment higher = Clock::now();
    m_engine->SetEnginePitch(10);
    Pass(250ms);
    m_engine->SetEnginePitch(0);
    Pass(250ms);
    const Moment faster = Clock::now();
    const std::int32_t fasterFromMs = m_engine->GetSoundPosition();
    m_engine->SetEngineTempo(90);
    Pass(500ms);

    const Recording heard = HeardSoFar();
    const auto expectSoon = [](Moment asked, Moment came) {
        EXPECT_LT(Milliseconds(came - asked), 150.0);
        EXPECT_GT(Milliseconds(came - asked), 0.0);
    };
    expectSoon(quieter, FirstMoment(heard, quieter,
                                    [](auto sound) { return Level(sound, Side::Left) < 0.19; }));
    expectSoon(aside, FirstMoment(heard, aside,
                                  [](auto sound) { return Level(sound, Side::Left) < 0.01; }));
    expectSoon(higher, FirstMoment(heard, higher, [](auto sound) {
                   return Frequency(sound, Recording::kRate) > 700;
               }));
    // What the neutral tempo would have told by then, and what the new one told.
    const double gained = PositionAt(faster + 450ms) - fasterFromMs - 450.0;
    EXPECT_GT(gained, 0.9 * 300.0 - 10.0);
}

TEST_F(EngineSound, VolumeAndBalanceScaleAsDocumented)
{
    Load(MakeTone(44100, 3000, 440));
    m_engine->SetEngineVolume(50);
    m_engine->SetEngineBalance(-25);
    m_engine->StartSound();
    Pass(500ms);
    const Recording heard = HeardSoFar();
    const Moment to = Clock::now() - 250ms;
    const std::vector<float> middle = heard.Between(to - 200ms, to);
    const double full = 16000.0 / 32768.0 / std::numbers::sqrt2;
    EXPECT_NEAR(Level(middle, Side::Left), full * 0.5, 0.005);
    EXPECT_NEAR(Level(middle, Side::Right), full * 0.25, 0.005);
}

TEST_F(EngineSound, KeyAndTempoAreHeardEachForItself)
{
    Load(MakeTone(44100, 6000, 440));
    m_engine->SetEnginePitch(-5);
    m_engine->SetEngineTempo(50);
    m_engine->StartSound();
    Pass(200ms);
    const Moment from = Clock::now();
    Pass(600ms);
    const Moment to = Clock::now();
    const Moment last = to - 100ms;
    EXPECT_NEAR((PositionAt(last) - PositionAt(from)) / Milliseconds(last - from), 1.5, 0.03);
    const std::vector<float> heard = HeardSoFar().Between(from, to);
    EXPECT_NEAR(Frequency(heard, Recording::kRate), 440 * std::exp2(-5 / 12.0), 3.0);
}

TEST_F(EngineSound, TheEndIsToldWhenTheLastFrameIsHeard)
{
    for (const float tempo : {0.0F, -20.0F}) {
        Pcm tone = MakeTone(44100, 700, 440);
        Load(tone);
        m_engine->SetEngineTempo(tempo);
        m_engine->StartSound();
        ASSERT_TRUE(PassUntilStatus(SoundStatus::Stopped));
        const Recording heard = HeardSoFar();
        std::int64_t last = heard.FrameCount() - 1;
        while (last > 0 && std::abs(heard.stereo[static_cast<std::size_t>(last) * 2]) < 0.02F) {
            --last;
        }
        const double late = Milliseconds(m_doneAt - heard.HeardAt(static_cast<double>(last)));
        EXPECT_GT(late, -10.0);
        EXPECT_LT(late, 40.0);
        EXPECT_EQ(m_engine->GetSoundPosition(), 700);
    }
}

TEST_F(EngineSound, TheFirstFrameOfALongFileIsHeardWithin250Milliseconds)
{
    const ScratchFolder folder;
    const std::string file = (folder / "long.mp3").string();
    OutputOf({.arguments = {"ffmpeg", "-v", "error", "-f", "lavfi", "-i",
                            "sine=frequency=440:sample_rate=44100:duration=240", "-ac", "2", "-c:a",
                            "libmp3lame", "-b:a", "128k", file}});
    ASSERT_TRUE(m_engine->EngineInit());
    const Moment asked = Clock::now();
    ASSERT_EQ(m_engine->LoadFile(QString::fromStdString(file)), 0);
    m_engine->StartSound();
    Pass(400ms);
    const Recording heard = HeardSoFar();
    const Moment first = FirstMoment(heard, asked, [](auto sound) { return Level(sound) > 0.02; });
    EXPECT_LT(Milliseconds(first - asked), 250.0);
}

TEST_F(EngineSound, AFileThatEndsTooSoonEndsWhereItsFramesEnd)
{
    const ScratchFolder folder;
    const std::vector<std::uint8_t> image = WavImage(MakeNoise(44100, 3000));
    WriteFile(folder / "whole.wav", {reinterpret_cast<const char*>(image.data()), image.size()});
    const std::string whole = (folder / "whole.flac").string();
    OutputOf({.arguments = {"flac", "--silent", "-o", whole, (folder / "whole.wav").string()}});
    const std::string bytes = ReadFile(whole);
    const std::string cut = bytes.substr(0, bytes.size() / 2);
    WriteFile(folder / "cut.flac", cut);

    ASSERT_TRUE(m_engine->EngineInit());
    ASSERT_EQ(m_engine->LoadFile(QString::fromStdString((folder / "cut.flac").string())), 0);
    m_engine->StartSound();
    ASSERT_TRUE(PassUntilStatus(SoundStatus::Stopped));
    EXPECT_EQ(m_doneCount, 1);
    EXPECT_NEAR(m_engine->GetSoundPosition(), 1500, 150);
    EXPECT_EQ(m_engine->GetSoundPosition(), m_engine->GetLoadedDuration());
}

class EngineSoundAt48000 : public EngineRoom {
protected:
    EngineSoundAt48000() : EngineRoom({{"studio", "Studio Speakers", 48000}}) {}
};

TEST_F(EngineSoundAt48000, ASoundOfTheSinksRateIsHeardBitForBit)
{
    const ScratchFolder folder;
    Process recorder({.arguments = {"parec", "-d", "studio.monitor", "--raw", "--format=float32le",
                                    "--rate=48000", "--channels=2", "--latency-msec=20"},
                      .environment = m_server.Environment(),
                      .log = folder / "heard.raw"});
    ASSERT_TRUE(Eventually([&] { return !ReadFile(folder / "heard.raw").empty(); }));
    const Pcm noise = MakeNoise(48000, 700);
    Load(noise);
    m_engine->StartSound();
    EXPECT_TRUE(PassUntilStatus(SoundStatus::Stopped));
    Pass(200ms);
    recorder.End();
    const std::string bytes = ReadFile(folder / "heard.raw");
    std::vector<float> heard(bytes.size() / sizeof(float));
    std::memcpy(heard.data(), bytes.data(), heard.size() * sizeof(float));
    const std::vector<Match> matches = FindMatches(heard, noise);
    ASSERT_EQ(matches.size(), 1U);
    EXPECT_EQ(matches[0].soundFrame, 0);
    EXPECT_EQ(matches[0].frames, noise.FrameCount());
}

} // namespace
} // namespace lantern::test
