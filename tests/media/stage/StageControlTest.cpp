// SPDX-License-Identifier: GPL-3.0-or-later
#include "StageControl.h"

#include "FakeAudioEngine.h"
#include "StageFolder.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <vector>

namespace lantern {
namespace {

class StageControlTest : public ::testing::Test {
protected:
    int argc = 0;
    QCoreApplication application{argc, nullptr};
    StageFolder folder;
    FakeAudioEngine engine;
};

TEST_F(StageControlTest, AChoiceActsAtOnceAndIsToldOnce)
{
    StageControl control(engine, folder.Path());
    std::vector<VoiceGuide> told;
    control.Changed = [&](const StageSettings& now) { told.push_back(now.voiceGuide); };
    control.Load();
    EXPECT_EQ(engine.Guide, VoiceGuide::Both);
    control.Set(&StageSettings::voiceGuide, VoiceGuide::Left);
    EXPECT_EQ(engine.Guide, VoiceGuide::Left);
    control.Set(&StageSettings::voiceGuide, VoiceGuide::Left);
    EXPECT_EQ(told, (std::vector{VoiceGuide::Both, VoiceGuide::Left}));
}

TEST_F(StageControlTest, TheNextPlayerFindsTheChoice)
{
    {
        StageControl control(engine, folder.Path());
        control.Load();
        control.Set(&StageSettings::voiceGuide, VoiceGuide::Right);
        EXPECT_FALSE(folder.IsThere()) << "a slider is not held up by each of its steps";
        control.Save();
        EXPECT_EQ(folder.Written(), "voiceguide\tright\r\n");
    }
    FakeAudioEngine next;
    StageControl control(next, folder.Path());
    control.Load();
    EXPECT_EQ(next.Guide, VoiceGuide::Right);
}

// Whoever pulls the plug a little later loses nothing.
TEST_F(StageControlTest, AChoiceIsKeptAMomentAfterTheLastOne)
{
    StageControl control(engine, folder.Path());
    control.Load();
    for (int i = 0; i < 100; ++i)
        control.Set(&StageSettings::voiceGuide, i % 2 == 0 ? VoiceGuide::Right : VoiceGuide::Left);
    QElapsedTimer waited;
    waited.start();
    while (!folder.IsThere() && waited.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    EXPECT_EQ(folder.Written(), "voiceguide\tleft\r\n");
}

TEST_F(StageControlTest, TheDelayIsThatOfTheDeviceInUse)
{
    folder.Write("delay.hdmi\t180\r\n");
    engine.Device = {QStringLiteral("hdmi"), QStringLiteral("Television")};
    StageControl control(engine, folder.Path());
    int told = 0;
    control.Changed = [&](const StageSettings&) { ++told; };
    control.Load();
    EXPECT_EQ(engine.DelayMs, 180) << "from the start on";
    engine.Device = {QStringLiteral("headset"), QStringLiteral("Headset")};
    for (int tick = 0; tick < 20; ++tick)
        control.Follow(false);
    EXPECT_EQ(engine.DelayMs, 0);
    EXPECT_EQ(control.Device().name, QStringLiteral("Headset"));
    EXPECT_EQ(told, 2);
    control.SetDelayMs(-40);
    EXPECT_EQ(engine.DelayMs, -40);
    control.SetDelayMs(-9999);
    EXPECT_EQ(engine.DelayMs, -500);
    control.SetDelayMs(-40);
    engine.Device = {QStringLiteral("hdmi"), QStringLiteral("Television")};
    for (int tick = 0; tick < 20; ++tick)
        control.Follow(false);
    EXPECT_EQ(engine.DelayMs, 180);
    control.Save();
    EXPECT_EQ(folder.Written(), "delay.hdmi\t180\r\ndelay.headset\t-40\r\n");
}

TEST_F(StageControlTest, WhoHasNoDelayAndDoesNotLookDoesNotAskForTheDevice)
{
    StageControl control(engine, folder.Path());
    control.Load();
    for (int tick = 0; tick < 100; ++tick)
        control.Follow(false);
    EXPECT_EQ(std::ranges::count(engine.Log, "GetDeviceInUse"), 0);
    for (int tick = 0; tick < 100; ++tick)
        control.Follow(true);
    EXPECT_GE(std::ranges::count(engine.Log, "GetDeviceInUse"), 5);
}

TEST_F(StageControlTest, WithoutADeviceThereIsNoDelay)
{
    engine.Device = {};
    StageControl control(engine, folder.Path());
    control.Load();
    control.Follow(true);
    control.SetDelayMs(100);
    EXPECT_EQ(engine.DelayMs, 0);
    control.Save();
    EXPECT_FALSE(folder.IsThere());
}

TEST_F(StageControlTest, WithoutAChoiceThereIsNoFile)
{
    StageControl control(engine, folder.Path());
    control.Load();
    control.Set(&StageSettings::voiceGuide, VoiceGuide::Both);
    control.Save();
    EXPECT_FALSE(folder.IsThere());
}

TEST_F(StageControlTest, AFileThatCannotBeWrittenIsToldOnceAndTriedAgain)
{
    StageControl control(engine, folder.Path());
    QStringList told;
    control.SaveFailed = [&](const QString&, const QString& head, const QString&) { told += head; };
    control.Load();
    const QString file = QString::fromStdString(folder.File());
    ASSERT_EQ(std::system(("mkdir '" + folder.File() + "'").c_str()), 0);
    for (const VoiceGuide guide : {VoiceGuide::Left, VoiceGuide::Right, VoiceGuide::Left}) {
        control.Set(&StageSettings::voiceGuide, guide);
        control.Save();
    }
    EXPECT_EQ(told, QStringList{file});
    ASSERT_EQ(std::system(("rmdir '" + folder.File() + "'").c_str()), 0);
    control.Save();
    EXPECT_EQ(folder.Written(), "voiceguide\tleft\r\n");
}

} // namespace
} // namespace lantern
