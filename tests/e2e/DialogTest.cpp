// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"

#include <algorithm>
#include <filesystem>

namespace lantern::test {
namespace {

constexpr const char* kTitle = "Select a Karaoke File";
constexpr QRgb kLaterPicture = 0xFFCC3366;
constexpr double kSilence = 0.0005;

class Dialog : public Journey {
protected:
    // The window that the keyboard goes to, by its title.
    std::string Active() const
    {
        const auto active = connection.Property(connection.Root(), "_NET_ACTIVE_WINDOW");
        for (const Player::Window& window : player->Windows()) {
            if (active == std::vector{window.id})
                return window.title;
        }
        return {};
    }

    void OpenDialog()
    {
        hand.Key("o");
        ASSERT_TRUE(Eventually([&] { return Active() == kTitle; }, 10s)) << "no dialog came";
    }

    bool AwaitItsEnd() const
    {
        return Eventually(
            [&] {
                return std::ranges::none_of(
                           player->Windows(),
                           [](const Player::Window& window) { return window.title == kTitle; }) &&
                       !Active().empty();
            },
            10s);
    }

    // Letters and digits alone.
    void Type(std::string_view text)
    {
        for (const char letter : text)
            hand.Key({&letter, 1});
    }

    double Heard() const { return Frequency(ears.HeardLately(300ms), Recording::kRate); }
    bool AwaitTone(double frequency) const
    {
        return Eventually([&] { return std::abs(Heard() - frequency) < 5.0; }, 5s, 50ms);
    }

    // Whether what was heard since then never paused for a tenth of a second.
    bool WasHeardAllTheTimeSince(std::size_t start) const
    {
        constexpr std::size_t kTenth = Recording::kRate / 10 * 2;
        const std::vector<float> stereo = ears.Heard().stereo;
        for (std::size_t i = start; i + kTenth <= stereo.size(); i += kTenth) {
            if (Level(std::span(stereo).subspan(i, kTenth)) < kSilence)
                return false;
        }
        return stereo.size() > start + kTenth;
    }

    const XConnection connection{screen.DisplayName()};
};

TEST_F(Dialog, ATypedNameOpensTheTrackBeside)
{
    OpenTrack(WriteToneTrack("song", 60.0));
    WriteToneTrack("other", 60.0, 660.0, kLaterPicture);
    ASSERT_NO_FATAL_FAILURE(OpenDialog());
    KeepPicture(eyes.Screen(), "file-dialog");
    Type("other");
    hand.Key("Return");
    EXPECT_TRUE(AwaitItsEnd());
    EXPECT_TRUE(AwaitPicture(kLaterPicture));
    EXPECT_TRUE(AwaitTone(660.0));
}

TEST_F(Dialog, ANameWithQuotationMarksOpensTypedAndAgainAsTheTrackThatWasOpen)
{
    OpenTrack(WriteToneTrack("song", 60.0));
    WriteToneTrack("a\"b\"c", 60.0, 660.0, kLaterPicture);
    ASSERT_NO_FATAL_FAILURE(OpenDialog());
    for (const char* key : {"a", "shift+apostrophe", "b", "shift+apostrophe", "c"})
        hand.Key(key);
    hand.Key("Return");
    EXPECT_TRUE(AwaitItsEnd());
    EXPECT_TRUE(AwaitPicture(kLaterPicture));
    EXPECT_TRUE(AwaitTone(660.0));
    hand.Key("period");
    ASSERT_TRUE(AwaitSilence());
    ASSERT_NO_FATAL_FAILURE(OpenDialog()); // with the name of the track in it
    hand.Key("Return");
    EXPECT_TRUE(AwaitItsEnd());
    EXPECT_TRUE(AwaitTone(660.0));
}

TEST_F(Dialog, EscapeLeavesAllAsItWas)
{
    OpenTrack(WriteToneTrack("song", 60.0));
    const QRect before = player->WindowArea();
    const std::size_t start = ears.Heard().stereo.size();
    ASSERT_NO_FATAL_FAILURE(OpenDialog());
    Type("other");
    hand.Key("Escape");
    EXPECT_TRUE(AwaitItsEnd());
    EXPECT_TRUE(AwaitPicture(kPicture));
    EXPECT_EQ(player->WindowArea(), before);
    EXPECT_TRUE(WasHeardAllTheTimeSince(start));
    EXPECT_TRUE(AwaitTone(440.0));
    hand.Key("p");
    EXPECT_TRUE(AwaitSilence());
}

TEST_F(Dialog, SoundAndPictureGoOnWhileItStands)
{
    constexpr int kChange = 300 * 8; // eight seconds in
    PacketSheet packets(60.0);
    packets.Put(1, Packet::LoadColoursLow({0xFF000000, kPicture, kBorder}));
    packets.Put(2, Packet::MemoryPreset(1));
    packets.Put(3, Packet::BorderPreset(2));
    packets.Put(kChange, Packet::LoadColoursLow({0xFF000000, kLaterPicture, kBorder}));
    const std::filesystem::path track = WriteToneTrack("song", 60.0);
    packets.Write(track);
    OpenTrack(track);
    hand.Key("4"); // larger than the dialog
    ASSERT_TRUE(Eventually([&] { return PictureArea().width() == 288 * 4; }, 5s, 50ms));
    const std::size_t start = ears.Heard().stereo.size();
    ASSERT_NO_FATAL_FAILURE(OpenDialog());
    EXPECT_EQ(PictureArea(kLaterPicture), QRect());
    EXPECT_TRUE(
        Eventually([&] { return PictureArea(kLaterPicture).width() == 288 * 4; }, 20s, 100ms));
    EXPECT_EQ(Active(), kTitle);
    EXPECT_TRUE(WasHeardAllTheTimeSince(start));
    hand.Key("Escape");
    EXPECT_TRUE(AwaitItsEnd());
}

TEST_F(Dialog, AFileThatIsNotThereIsToldAndTheTrackPlaysOn)
{
    OpenTrack(WriteToneTrack("song", 60.0));
    ASSERT_NO_FATAL_FAILURE(OpenDialog());
    Type("missing");
    hand.Key("Return");
    const auto countTitled = [&] {
        return std::ranges::count(player->Windows(), std::string(kTitle), &Player::Window::title);
    };
    EXPECT_TRUE(Eventually([&] { return countTitled() == 2; })); // the message, too
    KeepPicture(eyes.Screen(), "file-dialog-message");
    hand.Key("Return");
    EXPECT_TRUE(Eventually([&] { return countTitled() == 1; }));
    hand.Key("Escape");
    EXPECT_TRUE(AwaitItsEnd());
    EXPECT_TRUE(AwaitTone(440.0));
}

TEST_F(Dialog, AFolderIsEnteredByItsName)
{
    OpenTrack(WriteToneTrack("song", 60.0));
    std::filesystem::create_directory(folder / "more");
    WriteToneTrack("more/other", 60.0, 660.0, kLaterPicture);
    ASSERT_NO_FATAL_FAILURE(OpenDialog());
    Type("more");
    hand.Key("Return");
    Type("other");
    hand.Key("Return");
    EXPECT_TRUE(AwaitItsEnd());
    EXPECT_TRUE(AwaitPicture(kLaterPicture));
    EXPECT_TRUE(AwaitTone(660.0));
}

TEST_F(Dialog, ATrackWhoseNameIsNoTextOpensAgain)
{
    const std::filesystem::path plain = WriteToneTrack("x", 60.0);
    const std::filesystem::path track = folder / "caf\xE9.cdg";
    std::filesystem::rename(plain, track);
    std::filesystem::rename(folder / "x.wav", folder / "caf\xE9.wav");
    OpenTrack(track);
    hand.Key("period");
    ASSERT_TRUE(AwaitSilence());
    ASSERT_NO_FATAL_FAILURE(OpenDialog()); // with the name of the track in it
    KeepPicture(eyes.Screen(), "file-dialog-no-text");
    hand.Key("Return");
    EXPECT_TRUE(AwaitItsEnd());
    EXPECT_TRUE(AwaitPicture(kPicture));
    EXPECT_TRUE(AwaitTone(440.0));
}

} // namespace
} // namespace lantern::test
