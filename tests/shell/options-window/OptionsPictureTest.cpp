// SPDX-License-Identifier: GPL-3.0-or-later
// What the options window looks like, on screens of every ratio.
#include "GoldenImage.h"
#include "OptionsFixture.h"

namespace lantern {
namespace {

class OptionsPictureTest : public OptionsFixture {
protected:
    // As the player fills it in.
    void GiveValues(int balance, int key, int speed, int volume)
    {
        audio.SetBalance(static_cast<float>(balance), false);
        audio.SetPitch(key, false);
        audio.SetSpeed(static_cast<float>(speed), false);
        audio.SetVolume(static_cast<float>(volume), false);
        for (const auto& [value, text] : audioHost.ValueTexts)
            options.ValueLabel(value).setText(QString::fromStdString(text));
        options.ctlBalance().SetValue(balance);
        options.ctlKeyPitch().SetValue(key);
        options.ctlSpeed().SetValue(speed);
        options.ctlVolume().SetValue(volume);
        options.dev(1).SetCaption(QStringLiteral("Built-in Audio Analogue Stereo"));
    }

    ::testing::AssertionResult LooksLike(const char* name)
    {
        const int percent = static_cast<int>(options.devicePixelRatioF() * 100);
        return MatchesGolden(options.grab().toImage(),
                             QStringLiteral("options-%1-%2").arg(QLatin1String(name)).arg(percent));
    }
};

TEST_F(OptionsPictureTest, AtNeutral)
{
    GiveValues(0, 0, 0, 100);
    ShowOptions();
    EXPECT_TRUE(LooksLike("neutral"));
}

TEST_F(OptionsPictureTest, WithEveryValueChanged)
{
    GiveValues(-30, 3, 20, 40);
    for (const std::size_t index : {4u, 5u, 6u, 7u})
        options.cmd(index).SetValue(true);
    ShowOptions();
    EXPECT_TRUE(LooksLike("changed"));
}

TEST_F(OptionsPictureTest, Muted)
{
    GiveValues(50, -10, -90, 0);
    options.cmd(8).SetValue(true);
    ShowOptions();
    EXPECT_TRUE(LooksLike("muted"));
}

TEST_F(OptionsPictureTest, About)
{
    ShowAbout();
    EXPECT_TRUE(LooksLike("about"));
}

} // namespace
} // namespace lantern
