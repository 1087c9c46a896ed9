// SPDX-License-Identifier: GPL-3.0-or-later
// What the stage window looks like, on screens of every ratio.
#include "GoldenImage.h"
#include "StageWindowFixture.h"

namespace lantern {
namespace {

class StagePictureTest : public StageWindowFixture {
protected:
    ::testing::AssertionResult LooksLike(const char* name)
    {
        const int percent = static_cast<int>(window.devicePixelRatioF() * 100);
        return MatchesGolden(window.grab().toImage(),
                             QStringLiteral("stage-%1-%2").arg(QLatin1String(name)).arg(percent));
    }
};

TEST_F(StagePictureTest, AtNeutral)
{
    window.ShowSinger(QStringLiteral("None"), QStringLiteral("There is no other screen"));
    ASSERT_NO_FATAL_FAILURE(Show());
    EXPECT_TRUE(LooksLike("neutral"));
}

TEST_F(StagePictureTest, WithEverythingChosen)
{
    engine.Device = {QStringLiteral("hdmi"), QStringLiteral("Living Room Television (HDMI)")};
    stage.Follow(true);
    stage.SetDelayMs(180);
    window.ShowTest(true);
    stage.Set(&StageSettings::voiceGuide, VoiceGuide::Left);
    for (const StageSwitch& one : kStageSwitches)
        stage.Set(one.field, true);
    window.ShowSinger(QStringLiteral("Television of a Maker (HDMI-2)"),
                      QStringLiteral("Move the player to another screen"));
    ASSERT_NO_FATAL_FAILURE(Show());
    for (int i = 0; i < 3; ++i)
        Type(Qt::Key_Tab);
    EXPECT_TRUE(LooksLike("chosen"));
}

} // namespace
} // namespace lantern
