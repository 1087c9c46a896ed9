// SPDX-License-Identifier: GPL-3.0-or-later
#include "PulseServer.h"

#include <gtest/gtest.h>

namespace lantern::test {
namespace {

TEST(PulseServer, ItHasJustTheSinksGiven)
{
    const PulseServer server({{"studio", "Studio Speakers"}, {"stage", "Stage HDMI Output"}});
    const std::string sinks = server.Control({"list", "sinks"});
    EXPECT_NE(sinks.find("Description: Studio Speakers\n"), std::string::npos);
    EXPECT_NE(sinks.find("Description: Stage HDMI Output\n"), std::string::npos);
    EXPECT_EQ(server.DefaultSink(), "studio");

    const PulseServer silent{std::vector<PulseServer::Sink>{}};
    EXPECT_EQ(silent.Control({"list", "short", "sinks"}), "");
}

TEST(PulseServer, SinksComeAndGo)
{
    PulseServer server;
    server.AddSink({"stage", "Stage HDMI Output"});
    server.SetDefaultSink("stage");
    EXPECT_EQ(server.DefaultSink(), "stage");
    server.RemoveSink("stage");
    EXPECT_EQ(server.DefaultSink(), "studio");
}

TEST(PulseServer, ItComesBackAtTheSameAddress)
{
    PulseServer server;
    const std::string address = server.Address();
    server.Kill();
    server.Restart();
    EXPECT_EQ(server.Address(), address);
    EXPECT_EQ(server.DefaultSink(), "studio");
}

} // namespace
} // namespace lantern::test
