// SPDX-License-Identifier: GPL-3.0-or-later
// What the engine promises of its values and states.
#include "EngineRoom.h"

#include "Listening.h"
#include "MakeAudioEngine.h"

#include <QCoreApplication>

#include <random>
#include <sys/resource.h>

namespace lantern::test {
namespace {

class StudioEngine : public EngineRoom {
protected:
    void StartAndHear()
    {
        m_engine->StartSound();
        ASSERT_TRUE(PassUntil([this] { return m_engine->GetSoundPosition() > 20; }, 3s));
    }
};

TEST_F(StudioEngine, BeforeItsStartEveryOperationIsHarmless)
{
    const std::vector<std::uint8_t> image = WavImage(MakeNoise(44100, 100));
    EXPECT_NE(m_engine->LoadMemory(image), 0);
    m_engine->SeekSound(10);
    m_engine->StartSound();
    m_engine->PauseSound();
    m_engine->StopSound();
    m_engine->SetEngineTempo(10);
    m_engine->SelectDevice(1);
    m_engine->CloseSound();
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Empty);
    EXPECT_EQ(m_engine->GetSoundPosition(), 0);
    EXPECT_EQ(m_engine->GetLoadedDuration(), 0);
}

TEST_F(StudioEngine, ItStartsOnceAndStaysStarted)
{
    EXPECT_EQ(m_engine->GetDeviceCount(), 2);
    EXPECT_TRUE(m_engine->EngineInit());
    EXPECT_TRUE(m_engine->EngineInit());
}

TEST_F(StudioEngine, ALoadedSoundStandsStoppedAtItsBeginning)
{
    Load(MakeNoise(44100, 1500));
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Stopped);
    EXPECT_EQ(m_engine->GetSoundPosition(), 0);
    EXPECT_EQ(m_engine->GetLoadedDuration(), 1500);
    StartAndHear();
    Load(MakeNoise(48000, 700));
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Stopped);
    EXPECT_EQ(m_engine->GetSoundPosition(), 0);
    EXPECT_EQ(m_engine->GetLoadedDuration(), 700);
}

TEST_F(StudioEngine, AfterALoadThatFailsNothingIsLoaded)
{
    Load(MakeNoise(44100, 500));
    StartAndHear();
    const std::vector<std::uint8_t> rubbish(500, 0x5A);
    EXPECT_NE(m_engine->LoadMemory(rubbish), 0);
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Empty);
    EXPECT_EQ(m_engine->GetSoundPosition(), 0);
    m_engine->StartSound();
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Empty);
    EXPECT_NE(m_engine->LoadFile(QStringLiteral("/no/such/file.mp3")), 0);
    EXPECT_NE(m_engine->LoadMemory({}), 0);
    EXPECT_EQ(m_engine->GetFileDuration(QStringLiteral("/no/such/file.mp3")), 0);
}

TEST_F(StudioEngine, AFileCanBeMeasuredWhileAnotherSoundStaysLoaded)
{
    Load(MakeNoise(44100, 500));
    const ScratchFolder folder;
    const std::vector<std::uint8_t> image = WavImage(MakeNoise(22050, 1234));
    WriteFile(folder / "short.wav", {reinterpret_cast<const char*>(image.data()), image.size()});
    const QString path = QString::fromStdString((folder / "short.wav").string());
    EXPECT_EQ(m_engine->GetFileDuration(path), 1234);
    EXPECT_EQ(m_engine->GetLoadedDuration(), 500);
    EXPECT_EQ(m_engine->LoadFile(path), 0);
    EXPECT_EQ(m_engine->GetLoadedDuration(), 1234);
}

TEST_F(StudioEngine, ASeekIsReportedAsItWasAskedAtEveryRate)
{
    for (const int rate : {8000, 11025, 44100, 48000}) {
        Load(MakeNoise(rate, 1000));
        for (int ms = 0; ms <= 1000; ++ms) {
            m_engine->SeekSound(ms);
            ASSERT_EQ(m_engine->GetSoundPosition(), ms) << rate;
        }
        m_engine->SeekSound(5000);
        EXPECT_EQ(m_engine->GetSoundPosition(), 1000);
        m_engine->SeekSound(-5);
        EXPECT_EQ(m_engine->GetSoundPosition(), 0);
    }
}

TEST_F(StudioEngine, PausingWhatDoesNotPlayChangesNothing)
{
    Load(MakeNoise(44100, 500));
    m_engine->PauseSound();
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Stopped);
    m_engine->SeekSound(100);
    m_engine->PauseSound();
    EXPECT_EQ(m_engine->GetSoundPosition(), 100);
}

TEST_F(StudioEngine, APauseFreezesThePositionAndTheSoundGoesOnFromThere)
{
    Load(MakeNoise(44100, 5000));
    StartAndHear();
    Pass(300ms);
    m_engine->PauseSound();
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Paused);
    const std::int32_t frozen = m_engine->GetSoundPosition();
    Pass(300ms);
    EXPECT_EQ(m_engine->GetSoundPosition(), frozen);
    m_engine->StartSound();
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
    EXPECT_LT(m_engine->GetSoundPosition(), frozen + 30);
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > frozen + 100; }, 1s));
}

TEST_F(StudioEngine, ASeekInPauseIsWhereTheSoundGoesOn)
{
    Load(MakeNoise(44100, 5000));
    StartAndHear();
    m_engine->PauseSound();
    Seek(3000);
    Pass(100ms);
    EXPECT_EQ(m_engine->GetSoundPosition(), 3000);
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Paused);
    m_engine->StartSound();
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > 3100; }, 1s));
    EXPECT_LT(m_engine->GetSoundPosition(), 3200);
}

TEST_F(StudioEngine, StoppingReturnsToTheBeginning)
{
    Load(MakeNoise(44100, 5000));
    StartAndHear();
    m_engine->StopSound();
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Stopped);
    EXPECT_EQ(m_engine->GetSoundPosition(), 0);
}

TEST_F(StudioEngine, TheEndIsToldOnceWithTheSoundStoppedAtItsLength)
{
    Load(MakeNoise(44100, 300));
    SoundStatus statusThen = SoundStatus::Empty;
    m_engine->SoundDone = [&] {
        ++m_doneCount;
        statusThen = m_engine->GetSoundStatus();
    };
    m_engine->StartSound();
    EXPECT_TRUE(PassUntilStatus(SoundStatus::Stopped));
    Pass(100ms);
    EXPECT_EQ(m_doneCount, 1);
    EXPECT_EQ(statusThen, SoundStatus::Stopped);
    EXPECT_EQ(m_engine->GetSoundPosition(), 300);
}

TEST_F(StudioEngine, HeardToItsEndASoundPlaysFromTheBeginning)
{
    Load(MakeNoise(44100, 300));
    m_engine->StartSound();
    EXPECT_TRUE(PassUntilStatus(SoundStatus::Stopped));
    m_engine->StartSound();
    EXPECT_EQ(m_engine->GetSoundPosition(), 0);
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
    m_engine->StopSound();
    Seek(300);
    m_engine->StartSound();
    EXPECT_EQ(m_engine->GetSoundPosition(), 300) << "moved there, it ends there";
    EXPECT_TRUE(PassUntilStatus(SoundStatus::Stopped));
    EXPECT_EQ(m_doneCount, 2);
}

TEST_F(StudioEngine, ASeekToTheEndOfAPlayingSoundEndsIt)
{
    Load(MakeNoise(44100, 3000));
    StartAndHear();
    Seek(3000);
    EXPECT_TRUE(PassUntilStatus(SoundStatus::Stopped, 1s));
    EXPECT_EQ(m_doneCount, 1);
    EXPECT_EQ(m_engine->GetSoundPosition(), 3000);
}

TEST_F(StudioEngine, TheEndOfASoundThatWasReplacedIsNotTold)
{
    Load(MakeNoise(44100, 200));
    m_engine->StartSound();
    // The event loop stands still while the sound ends; then another sound comes.
    std::this_thread::sleep_for(700ms);
    EXPECT_EQ(m_doneCount, 0);
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
    Load(MakeNoise(44100, 2000));
    m_engine->StartSound();
    Pass(200ms);
    EXPECT_EQ(m_doneCount, 0);
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
}

TEST_F(StudioEngine, TheHandlerOfTheEndMayLoadAndStartTheNextSound)
{
    Load(MakeNoise(44100, 200));
    const std::vector<std::uint8_t> next = WavImage(MakeNoise(48000, 400));
    m_engine->SoundDone = [&] {
        if (++m_doneCount == 1) {
            EXPECT_EQ(m_engine->LoadMemory(next), 0);
            m_engine->StartSound();
        }
    };
    m_engine->StartSound();
    const Moment end = Clock::now() + 3s;
    while (m_doneCount < 2 && Clock::now() < end) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    EXPECT_EQ(m_doneCount, 2);
    EXPECT_EQ(m_engine->GetSoundPosition(), 400);
}

TEST_F(StudioEngine, TheFourValuesAreStoredAsGivenAndOutliveTheSound)
{
    ASSERT_TRUE(m_engine->EngineInit());
    EXPECT_EQ(m_engine->GetEngineVolume(), 100.0F);
    EXPECT_EQ(m_engine->GetEngineBalance(), 0.0F);
    EXPECT_EQ(m_engine->GetEnginePitch(), 0);
    EXPECT_EQ(m_engine->GetEngineTempo(), 0.0F);
    m_engine->SetEngineVolume(33.5F);
    m_engine->SetEngineBalance(-12.25F);
    m_engine->SetEnginePitch(-7);
    m_engine->SetEngineTempo(12.5F);
    Load(MakeNoise(44100, 100));
    m_engine->CloseSound();
    EXPECT_EQ(m_engine->GetEngineVolume(), 33.5F);
    EXPECT_EQ(m_engine->GetEngineBalance(), -12.25F);
    EXPECT_EQ(m_engine->GetEnginePitch(), -7);
    EXPECT_EQ(m_engine->GetEngineTempo(), 12.5F);
}

TEST_F(StudioEngine, PausedItCostsNextToNothing)
{
    Load(MakeNoise(44100, 3000));
    m_engine->SetEnginePitch(3);
    m_engine->StartSound();
    Pass(300ms);
    m_engine->PauseSound();
    Pass(100ms);
    const auto processorSeconds = [] {
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
               static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1e-6;
    };
    const double before = processorSeconds();
    std::this_thread::sleep_for(1s);
    EXPECT_LT(processorSeconds() - before, 0.02);
}

// A level that stays, after a start from silence: whatever steps is heard at once.
TEST_F(StudioEngine, NoOperationIsHeardAsAStep)
{
    Pcm level = {.sampleRate = 44100, .channels = 2, .samples = {}};
    for (int i = 0; i < 44100 * 2 * 4; ++i) {
        level.samples.push_back(static_cast<std::int16_t>(std::min(i / 2, 20'000)));
    }
    Load(level);
    const Ears ears(m_server, "studio");
    m_engine->StartSound();
    Pass(900ms);
    const std::vector<std::function<void()>> operations = {
        [this] { m_engine->SeekSound(2500); }, [this] { m_engine->PauseSound(); },
        [this] { m_engine->StartSound(); },    [this] { m_engine->SeekSound(1000); },
        [this] { m_engine->StopSound(); },     [this] { m_engine->SeekSound(1500); },
        [this] { m_engine->StartSound(); },    [this] { m_engine->CloseSound(); }};
    std::vector<Moment> asked;
    for (const auto& operation : operations) {
        asked.push_back(Clock::now());
        operation();
        std::this_thread::sleep_for(300ms);
    }
    const Recording heard = ears.Heard();
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const std::vector<float> then = heard.Between(asked[i], asked[i] + 200ms);
        float step = 0.0F;
        for (std::size_t sample = 2; sample < then.size(); ++sample) {
            step = std::max(step, std::abs(then[sample] - then[sample - 2]));
        }
        EXPECT_LT(step, 0.01F) << "operation " << i;
    }
    EXPECT_GT(Level(heard.Between(asked[0], asked[1])), 0.6);
    EXPECT_LT(Level(heard.Between(asked[1] + 200ms, asked[2])), 0.01);
}

TEST_F(StudioEngine, AnyOrderOfOperationsIsHarmless)
{
    const std::vector<std::vector<std::uint8_t>> images = {
        WavImage(MakeNoise(44100, 900)), WavImage(MakeNoise(48000, 60)),
        WavImage(MakeBursts(8000, 2500, 250)), std::vector<std::uint8_t>(77, 0xFF)};
    ASSERT_TRUE(m_engine->EngineInit());
    std::mt19937 random(11);
    const auto pick = [&](int from, int to) {
        return from + static_cast<int>(random() % static_cast<unsigned>(to - from + 1));
    };
    const std::vector<std::function<void()>> operations = {
        [&] { m_engine->LoadMemory(images[static_cast<std::size_t>(pick(0, 3))]); },
        [&] { m_engine->StartSound(); },
        [&] { m_engine->StartSound(); },
        [&] { m_engine->PauseSound(); },
        [&] { m_engine->StopSound(); },
        [&] { m_engine->SeekSound(pick(-100, 3000)); },
        [&] { m_engine->SetEngineVolume(static_cast<float>(pick(-10, 110))); },
        [&] { m_engine->SetEngineBalance(static_cast<float>(pick(-60, 60))); },
        [&] { m_engine->SetEnginePitch(pick(-12, 12)); },
        [&] { m_engine->SetEngineTempo(static_cast<float>(pick(-100, 100))); },
        [&] { m_engine->SelectDevice(pick(-1, 2)); },
        [&] { m_engine->GetDeviceCount(); },
        [&] { m_engine->CloseSound(); },
        [&] { QCoreApplication::processEvents(); },
        [&] { std::this_thread::sleep_for(std::chrono::milliseconds(pick(0, 30))); }};
    for (int i = 0; i < 1000; ++i) {
        operations[static_cast<std::size_t>(pick(0, static_cast<int>(operations.size()) - 1))]();
        const std::int32_t positionMs = m_engine->GetSoundPosition();
        ASSERT_GE(positionMs, 0);
        ASSERT_LE(positionMs, m_engine->GetLoadedDuration());
    }
    // And it still plays.
    m_engine->SetEngineTempo(0);
    m_engine->SetEnginePitch(0);
    Load(MakeNoise(44100, 300));
    m_engine->StartSound();
    EXPECT_TRUE(PassUntilStatus(SoundStatus::Stopped));
    EXPECT_EQ(m_engine->GetSoundPosition(), 300);
}

} // namespace
} // namespace lantern::test
