// SPDX-License-Identifier: GPL-3.0-or-later
// Devices that are chosen, come and go, and a sound server that fails.
#include "EngineRoom.h"

#include "Listening.h"
#include "MakeAudioEngine.h"
#include "PulseConnection.h"

#include <thread>

namespace lantern::test {
namespace {

class EngineDevices : public EngineRoom {
protected:
    void PlayTone()
    {
        Load(MakeTone(44100, 20'000, 440));
        m_engine->StartSound();
        ASSERT_TRUE(PassUntil([this] { return m_engine->GetSoundPosition() > 100; }, 3s));
    }
    bool PassUntilDevices(int count)
    {
        return PassUntil([&] { return m_engine->GetDeviceCount() == count; }, 3s);
    }
    void ExpectAPauseUntilANewDeviceComes();
    void ExpectAPauseUntilANewServerComes();
    // The time of the slowest of all calls that could wait for the server. Closes the sound.
    Clock::duration SlowestCall();
};

Clock::duration EngineDevices::SlowestCall()
{
    Clock::duration slowest = {};
    const std::vector<std::function<void()>> calls = {
        [this] { m_engine->GetDeviceCount(); },    [this] { m_engine->EngineInit(); },
        [this] { m_engine->SelectDevice(0); },     [this] { m_engine->SeekSound(500); },
        [this] { m_engine->PauseSound(); },        [this] { m_engine->StartSound(); },
        [this] { m_engine->SetEngineVolume(80); }, [this] { m_engine->SetEnginePitch(2); },
        [this] { m_engine->GetSoundPosition(); },  [this] { m_engine->StopSound(); },
        [this] { m_engine->StartSound(); },        [this] { m_engine->DeviceInUse(); },
        [this] { m_engine->CloseSound(); }};
    for (const auto& call : calls) {
        const Moment start = Clock::now();
        call();
        slowest = std::max(slowest, Clock::now() - start);
    }
    return slowest;
}

void EngineDevices::ExpectAPauseUntilANewServerComes()
{
    EXPECT_TRUE(PassUntilStatus(SoundStatus::Paused));
    const std::int32_t kept = m_engine->GetSoundPosition();
    EXPECT_GT(kept, 100);
    EXPECT_EQ(m_engine->GetDeviceCount(), 0);
    m_server.Restart();
    EXPECT_TRUE(PassUntilDevices(2));
    Pass(200ms);
    EXPECT_EQ(m_engine->GetSoundPosition(), kept);
    m_engine->StartSound();
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > kept + 100; }, 2s));
    EXPECT_LT(m_engine->GetSoundPosition(), kept + 250);
}

double LevelOf(const Ears& ears, Clock::duration last)
{
    const Recording heard = ears.Heard();
    const auto frames = static_cast<std::int64_t>(Milliseconds(last) * Recording::kRate / 1000);
    const auto count = static_cast<std::size_t>(std::min(frames, heard.FrameCount())) * 2;
    return Level(std::span(heard.stereo).last(count));
}

void EngineDevices::ExpectAPauseUntilANewDeviceComes()
{
    EXPECT_TRUE(PassUntilStatus(SoundStatus::Paused));
    const std::int32_t kept = m_engine->GetSoundPosition();
    EXPECT_GT(kept, 100);
    EXPECT_TRUE(PassUntilDevices(0));
    m_engine->StartSound();
    Pass(300ms);
    EXPECT_EQ(m_engine->GetSoundPosition(), kept);
    EXPECT_TRUE(PassUntilStatus(SoundStatus::Paused));

    m_server.AddSink({"new", "New Speakers"});
    EXPECT_TRUE(PassUntilDevices(1));
    Pass(300ms);
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Paused);
    EXPECT_EQ(m_engine->GetSoundPosition(), kept);
    const Ears ears(m_server, "new");
    m_engine->StartSound();
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > kept + 100; }, 2s));
    EXPECT_LT(m_engine->GetSoundPosition(), kept + 250);
    Pass(200ms);
    EXPECT_GT(LevelOf(ears, 100ms), kSomething);
}

// By the name that the server knows it by, which is the same at each start.
TEST_F(EngineDevices, TheOneInUseIsTheOneThatTheSoundGoesTo)
{
    const auto comesToUse = [this](const char* id) {
        return PassUntil([&] { return m_engine->DeviceInUse().id == QLatin1String(id); }, 3s);
    };
    ASSERT_EQ(m_engine->GetDeviceCount(), 2);
    EXPECT_TRUE(comesToUse("studio")) << "the default, before anything plays";
    m_engine->SelectDevice(1);
    EXPECT_TRUE(comesToUse("stage"));
    EXPECT_EQ(m_engine->DeviceInUse().name, m_engine->GetDeviceName(1));
    m_engine->SelectDevice(0);
    ASSERT_NO_FATAL_FAILURE(PlayTone());
    EXPECT_TRUE(comesToUse("studio"));
    m_engine->SelectDevice(1);
    EXPECT_TRUE(comesToUse("stage")) << "while it plays, too";
    m_server.RemoveSink("stage");
    EXPECT_TRUE(comesToUse("studio"));
}

TEST_F(EngineDevices, OfTheServerIsKnownWhetherItCountsInSteps)
{
    PulseConnection connection([] {});
    connection.Start();
    connection.WaitUntilKnown(5s);
    EXPECT_EQ(connection.Devices().size(), 2U);
    const PulseConnection::Lock lock(connection);
    EXPECT_EQ(connection.CountsInSteps(), m_server.TellsAheadInTheMean() > 0.0);
}

TEST_F(EngineDevices, TheyAreToldByWhatPeopleReadTheDefaultFirst)
{
    EXPECT_EQ(m_engine->GetDeviceCount(), 2);
    EXPECT_EQ(m_engine->GetDeviceName(0), QStringLiteral("Studio Speakers"));
    EXPECT_EQ(m_engine->GetDeviceName(1), QStringLiteral("Stage HDMI Output"));
    EXPECT_EQ(m_engine->GetDeviceName(2), QString());
    EXPECT_EQ(m_engine->GetDeviceName(-1), QString());
    m_server.SetDefaultSink("stage");
    EXPECT_TRUE(PassUntil(
        [&] {
            m_engine->GetDeviceCount();
            return m_engine->GetDeviceName(0) == QStringLiteral("Stage HDMI Output");
        },
        3s));
    EXPECT_EQ(m_engine->GetDeviceName(1), QStringLiteral("Studio Speakers"));
}

TEST_F(EngineDevices, TheListFollowsWhatIsPluggedIn)
{
    EXPECT_EQ(m_engine->GetDeviceCount(), 2);
    m_server.AddSink({"third", "Kopfhörer"});
    EXPECT_TRUE(PassUntilDevices(3));
    EXPECT_EQ(m_engine->GetDeviceName(2), QStringLiteral("Kopfhörer"));
    m_server.RemoveSink("stage");
    EXPECT_TRUE(PassUntilDevices(2));
    EXPECT_EQ(m_engine->GetDeviceName(1), QStringLiteral("Kopfhörer"));
}

TEST_F(EngineDevices, AChosenDeviceIsWhereLaterSoundsPlay)
{
    const Ears studio(m_server, "studio");
    const Ears stage(m_server, "stage");
    ASSERT_TRUE(m_engine->EngineInit());
    m_engine->SelectDevice(1);
    PlayTone();
    Pass(300ms);
    EXPECT_GT(LevelOf(stage, 200ms), kSomething);
    EXPECT_LT(LevelOf(studio, 1s), 1e-6);
}

TEST_F(EngineDevices, APlayingSoundMovesToTheChosenDeviceAndBack)
{
    const Ears studio(m_server, "studio");
    const Ears stage(m_server, "stage");
    PlayTone();
    m_engine->SelectDevice(1);
    const std::int32_t moved = m_engine->GetSoundPosition();
    Pass(500ms);
    EXPECT_NEAR(m_engine->GetSoundPosition() - moved, 500, 120);
    EXPECT_GT(LevelOf(stage, 200ms), kSomething);
    EXPECT_LT(LevelOf(studio, 200ms), 1e-6);
    m_engine->SelectDevice(99);
    m_engine->SelectDevice(-1);
    m_engine->SelectDevice(0);
    Pass(500ms);
    EXPECT_GT(LevelOf(studio, 200ms), kSomething);
    EXPECT_LT(LevelOf(stage, 200ms), 1e-6);
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
}

TEST_F(EngineDevices, ASoundWhoseDeviceIsUnpluggedGoesOnOnTheDefault)
{
    const Ears studio(m_server, "studio");
    ASSERT_TRUE(m_engine->EngineInit());
    m_engine->SelectDevice(1);
    PlayTone();
    m_server.RemoveSink("stage");
    const std::int32_t then = m_engine->GetSoundPosition();
    Pass(600ms);
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
    EXPECT_NEAR(m_engine->GetSoundPosition() - then, 600, 150);
    EXPECT_GT(LevelOf(studio, 200ms), kSomething);
}

TEST_F(EngineDevices, WithoutAnyDeviceLeftTheSoundPausesAndKeepsItsPosition)
{
    PlayTone();
    m_server.RemoveSink("stage");
    m_server.RemoveSink("studio");
    ExpectAPauseUntilANewDeviceComes();
}

TEST_F(EngineDevices, ASinkThatStandsInForTheLastDeviceIsNone)
{
    m_server.KeepASinkAlways();
    PlayTone();
    m_server.RemoveSink("stage");
    m_server.RemoveSink("studio");
    ASSERT_TRUE(PassUntil([this] { return m_server.DefaultSink() == "auto_null"; }, 3s));
    ExpectAPauseUntilANewDeviceComes();
}

TEST_F(EngineDevices, ADeviceThatComesBackAtOnceIsPlayedOnAlsoAfterAStandIn)
{
    m_server.KeepASinkAlways();
    m_server.RemoveSink("stage");
    PlayTone();
    m_server.RemoveSink("studio");
    const std::int32_t then = m_engine->GetSoundPosition();
    Pass(300ms);
    EXPECT_LT(m_engine->GetSoundPosition(), then + 150);
    m_server.AddSink({"studio", "Studio Speakers"});
    const Ears ears(m_server, "studio");
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > then + 500; }, 4s));
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
    EXPECT_GT(LevelOf(ears, 200ms), kSomething);
}

TEST_F(EngineDevices, ADeadServerPausesTheSoundAndANewOnePlaysItOn)
{
    PlayTone();
    m_server.Kill();
    ExpectAPauseUntilANewServerComes();
}

TEST_F(EngineDevices, AServerThatDiesWithAllThatItRunsOnIsReplacedTheSameWay)
{
    PlayTone();
    m_server.KillWhole();
    ExpectAPauseUntilANewServerComes();
}

TEST_F(EngineDevices, AServerThatComesBackAtOnceWithAllThatItRunsOnIsReadyAtPlay)
{
    PlayTone();
    const std::int32_t then = m_engine->GetSoundPosition();
    m_server.KillWhole();
    m_server.Restart();
    EXPECT_TRUE(PassUntilDevices(2));
    m_engine->StartSound(); // unless it goes on by itself
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > then + 500; }, 4s));
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
    const Ears ears(m_server, "studio");
    Pass(400ms);
    EXPECT_GT(LevelOf(ears, 200ms), kSomething);
}

TEST_F(EngineDevices, ADeadServerHoldsUpNoCall)
{
    PlayTone();
    m_server.Kill();
    EXPECT_LT(Milliseconds(SlowestCall()), 200.0);
}

TEST_F(EngineDevices, AServerThatComesBackAtOnceIsHardlyNoticed)
{
    PlayTone();
    const std::int32_t then = m_engine->GetSoundPosition();
    m_server.Restart();
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > then + 500; }, 4s));
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
    const Ears ears(m_server, "studio");
    Pass(400ms);
    EXPECT_GT(LevelOf(ears, 200ms), kSomething);
}

// It is looked for less and less often while it is away, and often again after it was there.
TEST_F(EngineDevices, AServerThatWasAwayForLongIsFoundSoonTheNextTime)
{
    EXPECT_EQ(m_engine->GetDeviceCount(), 2);
    m_server.Kill();
    Pass(1600ms);
    m_server.Restart();
    EXPECT_TRUE(PassUntilDevices(2));
    m_server.Kill();
    EXPECT_TRUE(PassUntilDevices(0));
    m_server.Restart();
    const Moment back = Clock::now();
    EXPECT_TRUE(PassUntilDevices(2));
    EXPECT_LT(Milliseconds(Clock::now() - back), 1000.0);
}

// What it was asked and never answered is forgotten with it.
TEST_F(EngineDevices, AServerThatIsReplacedWhileItOwesAnAnswerIsHardlyNoticedEither)
{
    PlayTone();
    m_server.Freeze();
    Pass(200ms);
    const std::int32_t then = m_engine->GetSoundPosition();
    m_server.Restart();
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > then + 500; }, 4s));
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
}

TEST_F(EngineDevices, ASeekThatADyingServerNeverAnsweredHindersNoLaterOne)
{
    PlayTone();
    Pass(2500ms);
    Seek(3000);
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > 3100; }, 2s));
    m_server.Freeze();
    Seek(5000);
    Pass(200ms);
    m_server.Restart();
    EXPECT_TRUE(PassUntilDevices(2));
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > 5200; }, 2s))
        << "what the former stream had played does not count";
    Seek(1000);
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > 1300; }, 2s));
    EXPECT_LT(m_engine->GetSoundPosition(), 2000);
}

TEST_F(EngineDevices, AServerThatDoesNotAnswerHoldsUpNoCall)
{
    PlayTone();
    m_server.Freeze();
    const std::int32_t then = m_engine->GetSoundPosition();
    Pass(1s);
    EXPECT_LT(m_engine->GetSoundPosition(), then + 200);
    EXPECT_LT(Milliseconds(SlowestCall()), 200.0);
    m_server.Thaw();
    PlayTone();
}

TEST_F(EngineDevices, AShortFreezeLosesNothing)
{
    PlayTone();
    m_server.Freeze();
    Pass(300ms);
    m_server.Thaw();
    const std::int32_t then = m_engine->GetSoundPosition();
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > then + 300; }, 3s));
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
}

// One that has just been started, on a busy machine: its device is there.
TEST_F(EngineDevices, AServerThatIsSlowToBeginIsWaitedFor)
{
    Load(MakeTone(44100, 20'000, 440));
    m_server.Freeze();
    m_engine->StartSound();
    Pass(3s);
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
    EXPECT_EQ(m_engine->GetSoundPosition(), 0);
    m_server.Thaw();
    EXPECT_TRUE(PassUntil([&] { return m_engine->GetSoundPosition() > 300; }, 3s));
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
}

TEST_F(EngineDevices, WithoutAServerThereIsNoDeviceAndNoStart)
{
    m_server.Kill();
    const auto engine = MakeAudioEngine();
    const Moment start = Clock::now();
    EXPECT_EQ(engine->GetDeviceCount(), 0);
    EXPECT_FALSE(engine->EngineInit());
    EXPECT_LT(Milliseconds(Clock::now() - start), 500.0);
    EXPECT_EQ(engine->GetDeviceName(0), QString());
}

TEST_F(EngineDevices, AServerThatNeverAnswersAtTheStartIsGivenUp)
{
    m_server.Freeze();
    const auto engine = MakeAudioEngine();
    const Moment start = Clock::now();
    EXPECT_EQ(engine->GetDeviceCount(), 0);
    EXPECT_LT(Milliseconds(Clock::now() - start), 7000.0);
    m_server.Thaw();
}

TEST_F(EngineDevices, AServerThatAnswersLateAtTheStartIsWaitedFor)
{
    m_server.Freeze();
    const auto engine = MakeAudioEngine();
    std::jthread thaw([this] {
        std::this_thread::sleep_for(1500ms);
        m_server.Thaw();
    });
    EXPECT_EQ(engine->GetDeviceCount(), 2);
    EXPECT_TRUE(engine->EngineInit());
}

class EngineWithoutDevices : public EngineRoom {
protected:
    EngineWithoutDevices() : EngineRoom(std::vector<PulseSink>{}) {}
};

TEST_F(EngineWithoutDevices, ItDoesNotStartButDoesOnceThereIsOne)
{
    EXPECT_EQ(m_engine->GetDeviceCount(), 0);
    EXPECT_FALSE(m_engine->EngineInit());
    m_server.AddSink({"studio", "Studio Speakers"});
    EXPECT_TRUE(PassUntil([this] { return m_engine->GetDeviceCount() == 1; }, 3s));
    EXPECT_TRUE(m_engine->EngineInit());
}

TEST_F(EngineWithoutDevices, AStandInStartsNothing)
{
    m_server.KeepASinkAlways();
    ASSERT_TRUE(PassUntil([this] { return m_server.DefaultSink() == "auto_null"; }, 3s));
    EXPECT_EQ(m_engine->GetDeviceCount(), 0);
    EXPECT_FALSE(m_engine->EngineInit());
    m_server.AddSink({"studio", "Studio Speakers"});
    EXPECT_TRUE(PassUntil([this] { return m_engine->GetDeviceCount() == 1; }, 3s));
    EXPECT_EQ(m_engine->GetDeviceName(0), QStringLiteral("Studio Speakers"));
    EXPECT_TRUE(m_engine->EngineInit());
}

} // namespace
} // namespace lantern::test
