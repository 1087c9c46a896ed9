// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Journey.h"
#include "PlayerDesk.h"
#include "SessionBus.h"
#include "SoakTracks.h"
#include "StallWatch.h"

#include <random>

namespace lantern::test {

double FromEnvironment(const char* name, double otherwise);

// What a process holds.
struct Holdings {
    std::ptrdiff_t descriptors = 0;
    std::ptrdiff_t threads = 0;
    long kibibytes = 0;

    static Holdings Of(const Process& process);
};

// The player in its session, and what has to hold of it whatever was done to it.
class SoakFixture : public Journey {
protected:
    SoakFixture();

    int Any(int below) { return std::uniform_int_distribution(0, below - 1)(m_random); }
    void Rest(int atMostMs);
    PlayerDesk Desk() const { return PlayerDesk(player->WindowArea(), player->IsFullScreen()); }
    Point Middle() const;

    void Begin();
    void Restart();
    // By a later start, as a double click in a file manager.
    void Open(const std::filesystem::path& path, const std::string& said = {});
    void Open(int track);
    // The clock of the day, as the player reads it, from now on. The sanitizers have to be loaded
    // before all else, and under them it is left alone.
    void MoveClock(int seconds);

    void Xrandr(std::vector<std::string> arguments) const; // tells the display of its monitors

    bool Is(const char* status) const;
    std::optional<double> Position() const;
    SoakTracks::Shown Shown();

    void ExpectAnswer();
    // Whether the settings lie on a small disk, which can be filled to its last byte. The player
    // then says at its end that they can't be written; the next one finds those from before.
    bool CanFillDisk() const { return m_hasSmallDisk; }
    void FillDisk();
    void RestartWithFullDisk();

    // It plays, and its picture is that of the position.
    void ExpectThePicture();
    void ExpectNothingLost();

    const unsigned m_seed = static_cast<unsigned>(FromEnvironment("LANTERN_SOAK_SEED", 1.0));
    std::mt19937 m_random;
    SoakTracks m_tracks{folder.Path()};
    std::unique_ptr<SessionBus> m_bus;
    int m_track = 0;
    int m_stepsSinceStart = 0;

private:
    // What the player tells over the bus; nothing if it doesn't.
    std::optional<std::string> Property(const std::string& name) const;

    const bool m_hasSmallDisk;
    std::filesystem::path SettingsDisk() const
    {
        return home.SettingsFile().parent_path().parent_path();
    }
    void EmptyDisk();
    void BeginAnew();

    StallWatch m_stalls;
    std::ptrdiff_t m_settingLines = 0;
    Holdings m_most;
};

} // namespace lantern::test
