// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"

#include <X11/Xlib.h>
#include <algorithm>

namespace lantern::test {
namespace {

// What programs tell the desktop of their starts: it shows that one goes on until it hears that it
// is complete.
class StartNotices {
public:
    explicit StartNotices(const XServer& screen)
        : m_connection(screen.DisplayName()),
          m_firstPiece(m_connection.Atom("_NET_STARTUP_INFO_BEGIN")),
          m_nextPiece(m_connection.Atom("_NET_STARTUP_INFO"))
    {
        XSelectInput(m_connection.Display(), m_connection.Root(), PropertyChangeMask);
        XSync(m_connection.Display(), False);
    }

    // All that came so far. A message comes in pieces of twenty bytes and ends with a zero.
    const std::vector<std::string>& Heard()
    {
        XEvent event = {};
        while (XCheckTypedEvent(m_connection.Display(), ClientMessage, &event) != 0) {
            const auto type = event.xclient.message_type;
            if (type == m_firstPiece)
                m_text.clear();
            else if (type != m_nextPiece)
                continue;
            constexpr std::size_t kPieceSize = 20;
            const std::string piece(event.xclient.data.b, kPieceSize);
            m_text += piece.substr(0, piece.find('\0'));
            if (piece.find('\0') != std::string::npos)
                m_heard.push_back(m_text);
        }
        return m_heard;
    }

private:
    XConnection m_connection;
    Atom m_firstPiece;
    Atom m_nextPiece;
    std::string m_text;
    std::vector<std::string> m_heard;
};

// Starts as a launcher makes them, which gives each one a name.
class StartNotice : public Journey {
protected:
    std::unique_ptr<Player> Start(const std::string& name)
    {
        return std::make_unique<Player>(
            screen, sound.Environment(), home,
            PlayerStart{.arguments = {}, .environment = {{"DESKTOP_STARTUP_ID", name}}});
    }
    ::testing::AssertionResult AwaitEnd(const std::string& message)
    {
        const auto isHeard = [&] { return std::ranges::count(notices.Heard(), message) == 1; };
        if (Eventually(isHeard, 5s, 20ms))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << "heard only " << ::testing::PrintToString(notices.Heard());
    }

    StartNotices notices{screen};
};

TEST_F(StartNotice, TheFirstWindowEndsIt)
{
    player = Start("launcher/player/12-0-desk_TIME345");
    ASSERT_TRUE(player->AwaitWindow());
    EXPECT_TRUE(AwaitEnd("remove: ID=launcher/player/12-0-desk_TIME345"));
}

TEST_F(StartNotice, AStartThatHandsOverEndsItsOwn)
{
    StartPlayer();
    const std::unique_ptr<Player> later = Start("launcher/player/13-0-desk_TIME678");
    EXPECT_EQ(later->Program().WaitForExit(5s), 0);
    EXPECT_TRUE(AwaitEnd("remove: ID=launcher/player/13-0-desk_TIME678"));
}

TEST_F(StartNotice, TheNameOfAStartIsQuotedWhereItHasTo)
{
    StartPlayer();
    const std::unique_ptr<Player> later = Start("a \"b\\c");
    EXPECT_EQ(later->Program().WaitForExit(5s), 0);
    EXPECT_TRUE(AwaitEnd(R"(remove: ID=a\ \"b\\c)"));
}

TEST_F(StartNotice, AStartWithoutANameTellsNothing)
{
    StartPlayer();
    const std::unique_ptr<Player> later = Start("");
    EXPECT_EQ(later->Program().WaitForExit(5s), 0);
    EXPECT_FALSE(Eventually([&] { return !notices.Heard().empty(); }, 300ms, 20ms));
}

} // namespace
} // namespace lantern::test
