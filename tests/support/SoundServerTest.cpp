// SPDX-License-Identifier: GPL-3.0-or-later
#include "PipeWireServer.h"
#include "PulseServer.h"

#include <gtest/gtest.h>

namespace lantern::test {
namespace {

template <typename Server>
class EachSoundServer : public ::testing::Test {
};
using Servers = ::testing::Types<PulseServer, PipeWireServer>;
TYPED_TEST_SUITE(EachSoundServer, Servers);

bool AwaitDefault(const SoundServer& server, const std::string& name)
{
    return Eventually([&] { return server.DefaultSink() == name; }, 5s, 10ms);
}

TYPED_TEST(EachSoundServer, HasJustTheSinksGiven)
{
    const TypeParam server({{"studio", "Studio Speakers"}, {"stage", "Stage HDMI Output"}});
    const std::string sinks = server.Control({"list", "sinks"});
    EXPECT_NE(sinks.find("Description: Studio Speakers\n"), std::string::npos);
    EXPECT_NE(sinks.find("Description: Stage HDMI Output\n"), std::string::npos);
    EXPECT_EQ(sinks.find("auto_null"), std::string::npos);
    EXPECT_EQ(server.DefaultSink(), "studio");
}

TYPED_TEST(EachSoundServer, SinksComeAndGo)
{
    TypeParam server;
    server.AddSink({"stage", "Stage HDMI Output"});
    server.SetDefaultSink("stage");
    EXPECT_TRUE(AwaitDefault(server, "stage"));
    server.RemoveSink("stage");
    EXPECT_TRUE(AwaitDefault(server, "studio"));
    server.KeepASinkAlways();
    server.RemoveSink("studio");
    EXPECT_TRUE(AwaitDefault(server, "auto_null"));
}

TYPED_TEST(EachSoundServer, ComesBackAtTheSameAddress)
{
    TypeParam server;
    const std::string address = server.Address();
    for (void (SoundServer::*const kill)() : {&SoundServer::Kill, &SoundServer::KillWhole}) {
        (server.*kill)();
        server.Restart();
        EXPECT_EQ(server.Address(), address);
        EXPECT_EQ(server.DefaultSink(), "studio");
    }
}

TEST(PulseServer, HasNoSinkIfNoneIsGiven)
{
    const PulseServer silent{std::vector<PulseServer::Sink>{}};
    EXPECT_EQ(silent.Control({"list", "short", "sinks"}), "");
}

} // namespace
} // namespace lantern::test
