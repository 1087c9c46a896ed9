// SPDX-License-Identifier: GPL-3.0-or-later

// Programs that are killed while they save.
#include "Process.h"

#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace lantern {
namespace {

using namespace std::chrono_literals;

std::string LineOf(std::size_t length)
{
    return "lastplayed\t" + std::string(length, 'x') + "\r\n";
}

class SettingsCrash : public ::testing::Test {
protected:
    // Lets a program save for a moment, and kills it.
    void KillOne()
    {
        const std::filesystem::path log = m_logs / "log";
        test::Process program({.arguments = m_command, .log = log});
        while (program.IsRunning() && std::filesystem::file_size(log) == 0)
            std::this_thread::sleep_for(1ms);
        std::this_thread::sleep_for(std::chrono::microseconds(m_random() % 2000));
        program.Signal(SIGKILL);
        EXPECT_EQ(program.WaitForExit(5s), 128 + SIGKILL);
    }
    void ExpectOldOrNew(int round) const
    {
        const std::string found = test::ReadFile(m_file);
        EXPECT_TRUE(found == LineOf(1) || found == LineOf(3999))
            << "round " << round << ": " << found.size() << " bytes";
    }

    const test::ScratchFolder m_folder;
    const test::ScratchFolder m_logs;
    const std::vector<std::string> m_command = {SETTINGS_PARTNER, m_folder.Path().string() + '/'};
    const std::filesystem::path m_file = m_folder / "data_player.ini";
    std::mt19937 m_random{7};
};

TEST_F(SettingsCrash, OfAProgramThatIsKilledWhileItSavesTheOldOrTheNewSettingsAreLeft)
{
    for (int round = 0; round < 150; ++round) {
        KillOne();
        ExpectOldOrNew(round);
    }
    EXPECT_LE(std::distance(std::filesystem::directory_iterator(m_folder.Path()), {}), 2)
        << "what the killed programs leave behind does not pile up";
}

TEST_F(SettingsCrash, TwoProgramsThatSaveAtOnceMixNothing)
{
    test::Process other({.arguments = m_command});
    for (int round = 0; round < 50; ++round) {
        KillOne();
        ExpectOldOrNew(round);
    }
    EXPECT_TRUE(other.IsRunning());
}

} // namespace
} // namespace lantern
