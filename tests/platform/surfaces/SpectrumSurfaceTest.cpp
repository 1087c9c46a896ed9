// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumSurface.h"

#include "FakeAudioEngine.h"
#include "GoldenImage.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QScreen>
#include <QThread>
#include <QWindow>

#include <cmath>
#include <memory>

namespace lantern {
namespace {

constexpr ColourValue kFirstColour = 568319;
constexpr ColourValue kSecondColour = 3303039;

// A field as in the options window, in a panel beside which another panel may come to the front.
class SpectrumSurfaceTest : public ::testing::Test {
protected:
    SpectrumSurfaceTest()
    {
        window.resize(412, 220);
        panel.setGeometry(window.rect());
        other.setGeometry(window.rect());
        other.lower();
        surface.setGeometry(79, 167, 275, 36);
        surface.SetFirstColour(kFirstColour);
        surface.SetSecondColour(kSecondColour);
        engine.Loaded = true;
        engine.Analyser.Strengths.assign(200, 0.5F);
    }

    void AttachAndShow()
    {
        surface.Attach(&engine.Analyser);
        surface.SetOn(true);
        window.show();
        Turn([this] { return window.windowHandle()->isExposed(); });
    }

    // Lets the event loop turn until it is so.
    template <typename Predicate>
    static bool Turn(Predicate&& predicate, int atMostMs = 10000)
    {
        QElapsedTimer passed;
        passed.start();
        while (!predicate()) {
            if (passed.elapsed() > atMostMs)
                return false;
            QCoreApplication::processEvents();
            QThread::msleep(1);
        }
        QCoreApplication::processEvents();
        return true;
    }

    // Time passes for what would run.
    static void Wait(int milliseconds)
    {
        Turn([] { return false; }, milliseconds);
    }

    bool IsMeasuredOn()
    {
        const int before = engine.Analyser.Measured;
        return Turn([&] { return engine.Analyser.Measured > before + 2; });
    }

    // What costs something while nothing is to be seen.
    void ExpectNothingRuns()
    {
        const int before = engine.Analyser.Measured;
        EXPECT_FALSE(surface.IsRunning());
        EXPECT_FALSE(engine.Analyser.Listening);
        Wait(100);
        EXPECT_EQ(engine.Analyser.Measured, before);
    }

    QImage Shown()
    {
        const QImage all = window.grab().toImage();
        const qreal ratio = all.devicePixelRatio();
        return all.copy(
            static_cast<int>(std::lround(79 * ratio)), static_cast<int>(std::lround(167 * ratio)),
            static_cast<int>(std::floor(275 * ratio)), static_cast<int>(std::floor(36 * ratio)));
    }

    bool IsBlack()
    {
        const QImage shown = Shown();
        QImage black = shown;
        black.fill(0xFF000000);
        return shown == black;
    }

    FakeAudioEngine engine;
    QWidget window;
    QWidget panel{&window};
    QWidget other{&window};
    SpectrumSurface surface{&panel};
};

TEST_F(SpectrumSurfaceTest, IsABlackFieldUntilItIsTurnedOn)
{
    window.show();
    EXPECT_TRUE(IsBlack());
    surface.Attach(&engine.Analyser);
    engine.StartSound();
    EXPECT_TRUE(IsBlack());
    ExpectNothingRuns();
    surface.SetOn(true);
    EXPECT_TRUE(IsMeasuredOn());
    EXPECT_FALSE(IsBlack());
}

TEST_F(SpectrumSurfaceTest, WithoutAnAnalyserItStaysBlack)
{
    surface.SetOn(true);
    window.show();
    EXPECT_TRUE(IsBlack());
    EXPECT_FALSE(surface.IsRunning());
}

TEST_F(SpectrumSurfaceTest, RunsWhileASoundPlays)
{
    AttachAndShow();
    ExpectNothingRuns();
    engine.StartSound();
    EXPECT_TRUE(engine.Analyser.Listening);
    EXPECT_TRUE(IsMeasuredOn());
    EXPECT_FALSE(IsBlack());
}

TEST_F(SpectrumSurfaceTest, ASoundThatPlaysAlreadyIsShownAtOnce)
{
    engine.StartSound();
    AttachAndShow();
    EXPECT_TRUE(IsMeasuredOn());
}

TEST_F(SpectrumSurfaceTest, InPauseTheBarsFallToNothingAndNothingRunsAnyMore)
{
    AttachAndShow();
    engine.StartSound();
    ASSERT_TRUE(IsMeasuredOn());
    engine.PauseSound();
    EXPECT_TRUE(surface.IsRunning());
    EXPECT_TRUE(Turn([this] { return !surface.IsRunning(); }));
    EXPECT_TRUE(IsBlack());
    ExpectNothingRuns();
    engine.StartSound();
    EXPECT_TRUE(IsMeasuredOn());
}

TEST_F(SpectrumSurfaceTest, HiddenNothingRunsThoughASoundPlays)
{
    AttachAndShow();
    engine.StartSound();
    ASSERT_TRUE(IsMeasuredOn());
    window.hide();
    ExpectNothingRuns();
    engine.PauseSound();
    engine.StartSound();
    ExpectNothingRuns();
    window.show();
    EXPECT_TRUE(IsMeasuredOn());
}

TEST_F(SpectrumSurfaceTest, BehindAnotherPanelNothingRuns)
{
    AttachAndShow();
    engine.StartSound();
    ASSERT_TRUE(IsMeasuredOn());
    other.raise();
    EXPECT_TRUE(Turn([this] { return !surface.IsRunning(); }));
    ExpectNothingRuns();
    engine.StartSound();
    ExpectNothingRuns();
    panel.raise();
    EXPECT_TRUE(IsMeasuredOn());
}

TEST_F(SpectrumSurfaceTest, MinimisedNothingRuns)
{
    AttachAndShow();
    engine.StartSound();
    ASSERT_TRUE(IsMeasuredOn());
    window.showMinimized();
    EXPECT_TRUE(Turn([this] { return !surface.IsRunning(); }));
    ExpectNothingRuns();
    window.showNormal();
    EXPECT_TRUE(IsMeasuredOn());
}

TEST_F(SpectrumSurfaceTest, TurnedOffItIsBlackAndNothingRuns)
{
    AttachAndShow();
    engine.StartSound();
    ASSERT_TRUE(IsMeasuredOn());
    surface.SetOn(false);
    EXPECT_TRUE(IsBlack());
    ExpectNothingRuns();
}

TEST_F(SpectrumSurfaceTest, MeasuresNoOftenerThanTheScreenShows)
{
    AttachAndShow();
    engine.StartSound();
    ASSERT_TRUE(IsMeasuredOn());
    const int before = engine.Analyser.Measured;
    QElapsedTimer passed;
    passed.start();
    Wait(500);
    const double frames =
        static_cast<double>(passed.elapsed()) / FrameMs(surface.screen()->refreshRate());
    EXPECT_LE(engine.Analyser.Measured - before, frames + 2);
}

TEST_F(SpectrumSurfaceTest, ASurfaceThatIsGoneIsNotToldOfASound)
{
    auto brief = std::make_unique<SpectrumSurface>(&panel);
    brief->Attach(&engine.Analyser);
    EXPECT_TRUE(engine.Analyser.Started);
    brief.reset();
    EXPECT_FALSE(engine.Analyser.Started);
    engine.StartSound();
}

TEST_F(SpectrumSurfaceTest, AnotherAnalyserTakesThePlaceOfTheFirst)
{
    AttachAndShow();
    engine.StartSound();
    ASSERT_TRUE(IsMeasuredOn());
    FakeAudioEngine second;
    second.Loaded = true;
    surface.Attach(&second.Analyser);
    ExpectNothingRuns();
    second.StartSound();
    EXPECT_TRUE(Turn([&] { return second.Analyser.Measured > 2; }));
    surface.Attach(nullptr);
    EXPECT_FALSE(second.Analyser.Listening);
}

TEST_F(SpectrumSurfaceTest, TheBarsAreAsStrongAsTheBands)
{
    engine.Analyser.Strengths = {};
    for (int i = 0; i < 60; ++i)
        engine.Analyser.Strengths.push_back(std::abs(std::sin(static_cast<float>(i) * 0.21F)) *
                                            (1.0F - 0.012F * static_cast<float>(i)));
    AttachAndShow();
    engine.StartSound();
    ASSERT_TRUE(IsMeasuredOn());
    const int percent = static_cast<int>(std::lround(window.devicePixelRatioF() * 100));
    EXPECT_TRUE(MatchesGolden(Shown(), QStringLiteral("spectrum-%1").arg(percent)));
}

TEST_F(SpectrumSurfaceTest, CapsStandOverTheBarsThatFell)
{
    engine.Analyser.Strengths.assign(60, 0.9F);
    AttachAndShow();
    engine.StartSound();
    ASSERT_TRUE(Turn([this] { return surface.Motion().Bars()[0].height == 0.9F; }));
    engine.Analyser.Strengths.assign(60, 0.2F);
    ASSERT_TRUE(Turn([this] { return surface.Motion().Bars()[0].height < 0.8F; }));
    for (const SpectrumBar& bar : surface.Motion().Bars())
        EXPECT_GT(bar.cap, bar.height);
}

TEST_F(SpectrumSurfaceTest, AFieldOfAnySizeHarmsNothing)
{
    AttachAndShow();
    engine.StartSound();
    for (const QSize size :
         {QSize(0, 0), QSize(1, 1), QSize(2, 36), QSize(4000, 3), QSize(275, 36)}) {
        surface.resize(size);
        window.grab();
        Wait(40);
    }
    EXPECT_TRUE(IsMeasuredOn());
}

TEST_F(SpectrumSurfaceTest, AssistiveToolsKnowItAsAGraphicWithAName)
{
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&surface);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Graphic);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Spectrum"));
}

TEST(FrameMs, FollowsTheScreenUnlessItsRateMakesNoSense)
{
    EXPECT_EQ(FrameMs(60.0), 17);
    EXPECT_EQ(FrameMs(144.0), 7);
    EXPECT_EQ(FrameMs(30.0), 33);
    for (const qreal senseless : {0.0, -1.0, 1e9, std::nan("")})
        EXPECT_EQ(FrameMs(senseless), FrameMs(60.0)) << senseless;
}

} // namespace
} // namespace lantern
