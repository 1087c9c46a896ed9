// SPDX-License-Identifier: GPL-3.0-or-later
// Which of a server's sinks are devices.
#include "EngineRoom.h"

#include "PulseConnection.h"

#include <algorithm>
#include <atomic>
#include <gmock/gmock.h>

namespace lantern::test {
namespace {

using testing::ElementsAre;

class PulseDevices : public EngineRoom {
protected:
    std::vector<std::string> Ids()
    {
        std::vector<std::string> ids;
        for (const AudioOutput::Device& device : m_connection.Devices())
            ids.push_back(device.id);
        std::ranges::sort(ids);
        return ids;
    }

    std::atomic<int> m_changes = 0;
    PulseConnection m_connection{[this] { ++m_changes; }};
};

TEST_F(PulseDevices, AStandInMayHaveANumberAndEveryOtherNameIsThatOfADevice)
{
    m_connection.Start();
    m_connection.WaitUntilKnown(5s);
    EXPECT_THAT(Ids(), ElementsAre("stage", "studio"));
    m_server.AddSink({"auto_null.2", "Dummy Output"});
    m_server.AddSink({"auto_nullify", "Odd Speakers"});
    EXPECT_TRUE(PassUntil([this] { return Ids().size() > 2; }, 3s));
    EXPECT_THAT(Ids(), ElementsAre("auto_nullify", "stage", "studio"));
    EXPECT_TRUE(m_connection.HasSink("auto_nullify"));
    EXPECT_FALSE(m_connection.HasSink("auto_null.2"));
}

TEST_F(PulseDevices, ManyThatComeAtOnceAreAllSeen)
{
    m_connection.Start();
    m_connection.WaitUntilKnown(5s);
    const int before = m_changes;
    for (int i = 0; i < 5; ++i)
        m_server.AddSink({"more" + std::to_string(i), "More"});
    EXPECT_TRUE(PassUntil([this] { return Ids().size() == 7; }, 3s));
    EXPECT_GT(m_changes, before);
    for (int i = 0; i < 5; ++i)
        m_server.RemoveSink("more" + std::to_string(i));
    EXPECT_TRUE(PassUntil([this] { return Ids().size() == 2; }, 3s));
}

} // namespace
} // namespace lantern::test
