// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace lantern::test {
namespace {

using ::testing::AnyOf;

constexpr QRgb kSecond = 0xFFCC3300;
constexpr QRgb kThird = 0xFFEEEE00;

// Starts while the player runs, as a double click in a file manager makes them.
class SecondStart : public Journey {
protected:
    void SetUp() override
    {
        m_first = WriteToneTrack("first", 60.0);
        m_second = WriteToneTrack("second", 60.0, 660.0, kSecond);
        m_third = WriteToneTrack("third", 60.0, 880.0, kThird);
    }

    std::unique_ptr<Player> Start(const std::vector<std::string>& arguments)
    {
        return std::make_unique<Player>(screen, sound.Environment(), home,
                                        PlayerStart{.arguments = arguments});
    }

    // A start that ends by itself and shows no window. It says nothing, or what it is to say.
    void HandOver(const std::vector<std::string>& arguments = {}, const std::string& said = {})
    {
        const std::unique_ptr<Player> later = Start(arguments);
        EXPECT_EQ(later->Program().WaitForExit(5s), 0);
        EXPECT_EQ(later->Log(), said);
        EXPECT_TRUE(later->Windows().empty());
    }

    static std::string ComplaintOf(const std::filesystem::path& track)
    {
        return "lyric-lantern: The running player can't be reached: " + track.string() + "\n";
    }

    std::filesystem::path RuntimeFile(const std::string& name) const
    {
        return home.Folder() / "runtime" / name;
    }

    bool HasKeyboard() { return player->AwaitWindow(3s); }

    std::filesystem::path m_first;
    std::filesystem::path m_second;
    std::filesystem::path m_third;
};

// Another program's window over all of the screen, which the user works with.
class OtherProgram {
public:
    OtherProgram(const XServer& screen, Hand& hand, Eyes& eyes)
        : m_program({.arguments = {"xev", "-geometry", "1500x1100+20+20"},
                     .environment = screen.Environment()})
    {
        const Point place = {400, 1000};
        EXPECT_TRUE(Eventually([&] { return eyes.At(place) == kColour; }));
        hand.Click(place);
        hand.Key("a");
    }

    static constexpr QRgb kColour = 0xFFFFFFFF; // xev's own

private:
    Process m_program;
};

TEST_F(SecondStart, WithAFileItReplacesTheTrackThatPlays)
{
    OpenTrack(m_first);
    HandOver({m_second.string()});
    EXPECT_TRUE(AwaitPicture(kSecond));
    EXPECT_TRUE(AwaitSound());
}

TEST_F(SecondStart, WithoutAFileTheTrackGoesOn)
{
    OpenTrack(m_first);
    HandOver();
    EXPECT_TRUE(HasKeyboard());
    EXPECT_TRUE(player->AnswerTime());
    EXPECT_TRUE(AwaitPicture(kPicture));
    EXPECT_TRUE(AwaitSound());
}

TEST_F(SecondStart, ThePlayerComesForwardFromBehindTheProgramThatTheUserWorksWith)
{
    OpenTrack(m_first);
    const OtherProgram other(screen, hand, eyes);
    EXPECT_FALSE(AwaitPicture(kPicture, 100ms));
    HandOver();
    EXPECT_TRUE(HasKeyboard());
    EXPECT_TRUE(AwaitPicture(kPicture));
}

TEST_F(SecondStart, AMinimisedPlayerComesBack)
{
    OpenTrack(m_first);
    const QRect place = player->WindowArea();
    OutputOf(
        {.arguments = {"xdotool", "windowminimize", std::to_string(player->Windows().at(0).id)},
         .environment = screen.Environment()});
    EXPECT_TRUE(Eventually([&] { return !player->AwaitWindow(1ms); }));
    HandOver({m_second.string()});
    EXPECT_TRUE(HasKeyboard());
    // The window manager lets it grow into its place.
    ASSERT_TRUE(Eventually([&] { return player->WindowArea() == place; }));
    EXPECT_TRUE(AwaitPicture(kSecond));
}

TEST_F(SecondStart, OfTwoQuickOnesTheLastWins)
{
    OpenTrack(m_first);
    HandOver({m_second.string()});
    HandOver({m_third.string()});
    EXPECT_TRUE(AwaitPicture(kThird));
    Leave();
    EXPECT_EQ(home.Setting("lastplayed"), m_third.string());
}

TEST_F(SecondStart, WhileTheFirstIsLoadingItWaitsItsTurn)
{
    // A long disc, nothing but zeros.
    const std::filesystem::path disc = folder / "disc.bin";
    WriteFile(disc, "");
    std::filesystem::resize_file(disc, std::uintmax_t{2448} * 75 * 60 * 20);
    player = Start({disc.string()});
    const std::filesystem::path link = RuntimeFile("Lyric Lantern CDG Player|SendCommand");
    ASSERT_TRUE(Eventually([&] { return std::filesystem::exists(link); }, 10s, 0ms));
    player->Program().Signal(SIGSTOP);
    ASSERT_TRUE(player->Windows().empty()) << "it was too quick for this test";
    HandOver({m_second.string()});
    player->Program().Signal(SIGCONT);
    ASSERT_TRUE(player->AwaitWindow());
    EXPECT_TRUE(AwaitPicture(kSecond, 10s));
}

TEST_F(SecondStart, WhileTheMenuIsOpenItReplacesTheTrackBehindIt)
{
    OpenTrack(m_first);
    // Its lower right part lies under the menu.
    const QRect picture = PictureArea();
    const Point corner = {picture.right() - 40, picture.bottom() - 20};
    const Point underMenu = {corner.x + 20, corner.y + 5};
    hand.Click(corner, 3);
    ASSERT_TRUE(Eventually([&] { return eyes.At(underMenu) != kPicture; }));
    HandOver({m_second.string()});
    EXPECT_TRUE(AwaitPicture(kSecond));
    EXPECT_NE(eyes.At(underMenu), kSecond) << "the menu stays";
    hand.Key("Escape");
    EXPECT_TRUE(Eventually([&] { return eyes.At(underMenu) == kSecond; }));
}

TEST_F(SecondStart, WhileTheFileDialogIsOpenItReplacesTheTrackBehindIt)
{
    OpenTrack(m_first);
    hand.Key("5"); // larger than the dialog
    hand.Key("o");
    ASSERT_TRUE(Eventually([&] { return player->Windows().size() == 2; }));
    HandOver({m_second.string()});
    EXPECT_TRUE(Eventually([&] { return !PictureArea(kSecond).isEmpty(); })) << "around the dialog";
    hand.Key("Escape");
    EXPECT_TRUE(Eventually([&] { return player->Windows().size() == 1; }));
    EXPECT_TRUE(AwaitPicture(kSecond));
}

// The holder of the lock has no link yet, or no more.
TEST_F(SecondStart, BeforeTheFirstHasALinkItTellsOfItsTrack)
{
    const int lock =
        open(RuntimeFile("Lyric Lantern CDG Player").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(flock(lock, LOCK_EX | LOCK_NB), 0);
    HandOver();
    HandOver({m_second.string()}, ComplaintOf(m_second));
    close(lock);
}

TEST_F(SecondStart, AfterTheFirstWasKilledItIsTheFirst)
{
    OpenTrack(m_first);
    player->Program().Signal(SIGKILL);
    EXPECT_EQ(player->Program().WaitForExit(5s), 128 + SIGKILL);
    OpenTrack(m_second, kSecond);
    HandOver({m_third.string()});
    EXPECT_TRUE(AwaitPicture(kThird));
}

TEST_F(SecondStart, OfTwoAtTheSameInstantOneIsThePlayer)
{
    for (int round = 0; round < 3; ++round) {
        std::unique_ptr<Player> one = Start({m_first.string()});
        std::unique_ptr<Player> other = Start({m_second.string()});
        ASSERT_TRUE(Eventually(
            [&] { return one->Program().IsRunning() != other->Program().IsRunning(); }, 10s));
        const bool isOneFirst = one->Program().IsRunning();
        std::unique_ptr<Player>& later = isOneFirst ? other : one;
        EXPECT_EQ(later->Program().WaitForExit(1s), 0);
        // The first may not have its link yet.
        EXPECT_THAT(later->Log(), AnyOf("", ComplaintOf(isOneFirst ? m_second : m_first)));
        player = std::move(one->Program().IsRunning() ? one : other);
        ASSERT_TRUE(player->AwaitWindow());
        EXPECT_TRUE(AwaitPicture(kPicture, 100ms) || AwaitPicture(kSecond));
        Leave();
    }
}

TEST_F(SecondStart, ItLoadsNothingThatOnlyAWindowNeeds)
{
    const std::string said = (folder / "loaded").string();
    const auto loadedBy = [&](Process& process) {
        return ReadFile(said + "." + std::to_string(process.Id()));
    };
    const EnvironmentChanges telling = {{"LD_DEBUG", "files"}, {"LD_DEBUG_OUTPUT", said}};
    StartPlayer({}, telling);
    Player later(screen, sound.Environment(), home, {.environment = telling});
    EXPECT_EQ(later.Program().WaitForExit(10s), 0);
    const std::string windowPlugin = "plugins/platforms/libqxcb.so";
    EXPECT_NE(loadedBy(player->Program()).find(windowPlugin), std::string::npos);
    EXPECT_NE(loadedBy(later.Program()).find("libQt6Core.so"), std::string::npos);
    EXPECT_EQ(loadedBy(later.Program()).find("dynamically loaded"), std::string::npos);
}

} // namespace
} // namespace lantern::test
