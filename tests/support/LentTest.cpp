// SPDX-License-Identifier: GPL-3.0-or-later
#include "Lent.h"
#include "Hand.h"
#include "PulseServer.h"

#include <gtest/gtest.h>

namespace lantern::test {
namespace {

struct PlainServer {
    explicit PlainServer(int) {}
    bool MakeReady() const { return isAsNew; }
    bool isAsNew = true;
};

TEST(Lent, AServerIsHandedOnToWhoAsksForTheSame)
{
    const PlainServer* first = Lend<PlainServer>(1).get();
    const auto again = Lend<PlainServer>(1);
    EXPECT_EQ(again.get(), first);
    EXPECT_NE(Lend<PlainServer>(2).get(), first);
}

TEST(Lent, NobodyGetsOneThatIsLentAlready)
{
    const auto first = Lend<PlainServer>(3);
    EXPECT_NE(Lend<PlainServer>(3).get(), first.get());
}

TEST(Lent, OneThatIsNotAsNewIsReplaced)
{
    Lend<PlainServer>(4)->isAsNew = false;
    EXPECT_TRUE(Lend<PlainServer>(4)->isAsNew);
}

TEST(PulseServer, ItIsAsNewUntilSomethingIsDoneToIt)
{
    PulseServer server;
    EXPECT_TRUE(server.MakeReady());
    server.AddSink({"stage", "Stage HDMI Output"});
    EXPECT_FALSE(server.MakeReady());
}

TEST(PulseServer, ItIsNotAsNewWhileSomebodyListens)
{
    PulseServer server;
    {
        const Process listener(
            {.arguments = {"parec", "-d", "studio.monitor"}, .environment = server.Environment()});
        EXPECT_TRUE(Eventually([&] {
            return !server.Control({"list", "short", "source-outputs"}).empty();
        }));
        EXPECT_FALSE(server.MakeReady());
    }
    EXPECT_TRUE(server.MakeReady());
}

TEST(XServer, ItIsNotAsNewWhileAWindowStands)
{
    XServer server(400, 300);
    EXPECT_TRUE(server.MakeReady());
    {
        const XConnection connection(server.DisplayName());
        const std::size_t before = connection.VisibleWindows();
        const Process window({.arguments = {"xev"}, .environment = server.Environment()});
        EXPECT_TRUE(Eventually([&] { return connection.VisibleWindows() > before; }));
        EXPECT_FALSE(server.MakeReady());
    }
    EXPECT_TRUE(server.MakeReady());
}

TEST(XServer, ItIsNotAsNewWhileAKeyIsHeld)
{
    XServer server(400, 300, WindowManager::Absent);
    Hand hand(server);
    hand.PressKey("a");
    EXPECT_FALSE(server.MakeReady());
    hand.ReleaseKey("a");
    EXPECT_TRUE(server.MakeReady());
    hand.Press();
    EXPECT_FALSE(server.MakeReady());
    hand.Release();
    EXPECT_TRUE(server.MakeReady());
}

} // namespace
} // namespace lantern::test
