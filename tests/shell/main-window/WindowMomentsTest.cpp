// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowFixture.h"
#include "frmOptions.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

namespace lantern {
namespace {

// An engine of which a test sees some moments.
class WatchedEngine : public FakeAudioEngine {
public:
    std::function<void()> WhileStopping;
    std::function<void()> WhileAsked;

    void StopSound() override
    {
        FakeAudioEngine::StopSound();
        if (WhileStopping)
            WhileStopping();
    }

    std::int32_t GetSoundPosition() override
    {
        if (WhileAsked)
            WhileAsked();
        return FakeAudioEngine::GetSoundPosition();
    }
};

class WatchedTest : public WindowFixture {
protected:
    WatchedTest() : WatchedTest(std::make_unique<WatchedEngine>()) {}

    WatchedEngine& watched;

private:
    explicit WatchedTest(std::unique_ptr<WatchedEngine> made)
        : WindowFixture(std::move(made)), watched(dynamic_cast<WatchedEngine&>(engine))
    {
    }
};

TEST_F(WatchedTest, TheCloseReleasesTheLockStopsTheSoundAndThenKeepsTheSettings)
{
    Load(MakeBlueTrack());
    window.MainPopup(CommandId::Options);
    const auto areOptionsVisible = [] {
        return std::ranges::any_of(QApplication::topLevelWidgets(), [](QWidget* widget) {
            return dynamic_cast<frmOptions*>(widget) != nullptr && widget->isVisible();
        });
    };
    EXPECT_TRUE(areOptionsVisible());
    bool wasStopped = false;
    watched.WhileStopping = [&] {
        wasStopped = true;
        EXPECT_FALSE(areOptionsVisible());
        EXPECT_FALSE(state.InstanceMutex.IsHeld());
        EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("data_player.ini"))));
    };
    window.close();
    EXPECT_TRUE(wasStopped);
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("data_player.ini"))));
}

TEST_F(WatchedTest, ATickComesAboutEveryTenMilliseconds)
{
    Load(MakeBlueTrack());
    int ticks = 0;
    watched.WhileAsked = [&ticks] { ++ticks; };
    const auto ticksOfASecond = [&ticks] {
        ticks = 0;
        QElapsedTimer second;
        second.start();
        while (second.elapsed() < 1000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        return ticks;
    };
    int most = 0; // a busy machine gets more than one chance
    for (int attempt = 0; attempt < 5 && most < 50; ++attempt)
        most = std::max(most, ticksOfASecond());
    EXPECT_GE(most, 50);
    EXPECT_LE(most, 110);
}

TEST_F(WatchedTest, ATickThatRunsAnEventLoopIsNotEnteredAgain)
{
    Load(MakeBlueTrack());
    int depth = 0;
    int deepest = 0;
    int ticks = 0;
    watched.WhileAsked = [&] {
        deepest = std::max(deepest, ++depth);
        ++ticks;
        QEventLoop loop;
        QTimer::singleShot(50, &loop, &QEventLoop::quit);
        loop.exec();
        --depth;
    };
    QTimer::singleShot(200, &window, &QCoreApplication::quit);
    QCoreApplication::exec();
    EXPECT_GE(ticks, 1);
    EXPECT_EQ(deepest, 1);
}

// What goes on while a track is opened: the engine is asked for the sound's length.
class AskingEngine : public FakeAudioEngine {
public:
    std::function<void()> WhileLoading;

    std::int32_t GetFileDuration(const QString&) override
    {
        if (WhileLoading)
            WhileLoading();
        return DurationMs;
    }
};

class LoadingTest : public WindowFixture {
protected:
    LoadingTest() : LoadingTest(std::make_unique<AskingEngine>()) {}

    AskingEngine& asking;

private:
    explicit LoadingTest(std::unique_ptr<AskingEngine> made)
        : WindowFixture(std::move(made)), asking(dynamic_cast<AskingEngine&>(engine))
    {
    }
};

TEST_F(LoadingTest, InputAndTicksDoNothingWhileATrackIsOpened)
{
    Load();
    QFile sound(folder.filePath(QStringLiteral("sound.wav")));
    ASSERT_TRUE(sound.open(QIODevice::WriteOnly));
    sound.close();

    bool wasAsked = false;
    asking.WhileLoading = [&] {
        wasAsked = true;
        window.DoKeyDown(KeyCode::M, 0);
        window.MouseWheel(0, 120, 0, 0);
        window.ShowPopMenu(); // would return when the menu is closed
        PartNamed<ctlSlide>("ctlVolume").ScrollTo(10);
        PartNamed<ctlSlide>("ctlSlider").ScrollTo(1);
        window.UpdatePlayer();
        EXPECT_EQ(PartNamed<ctlTicker>("PlayTicker").ShownText(), QStringLiteral("LOADING"));
    };
    window.OpenMedia(sound.fileName());
    EXPECT_TRUE(wasAsked);
    EXPECT_EQ(engine.Volume, 100);
    EXPECT_EQ(engine.Status, SoundStatus::Playing);
    window.DoKeyDown(KeyCode::M, 0); // and the key that was dropped isn't held
    EXPECT_EQ(engine.Volume, 0);
}

} // namespace
} // namespace lantern
