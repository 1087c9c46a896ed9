// SPDX-License-Identifier: GPL-3.0-or-later
#include "FlashComparison.h"
#include "FlashTrack.h"
#include "Journey.h"

#include <array>
#include <cmath>
#include <iostream>
#include <random>

namespace lantern::test {
namespace {

constexpr double kTrackSeconds = 120.0;
constexpr double kMostOffMs = 40.0;
constexpr double kMedianOffMs = 15.0;
constexpr double kMostDriftMs = 10.0;
// After a command the sound and the picture are somewhere new; then they have to be together.
constexpr Clock::duration kSettlingTime = 500ms;
constexpr int kSeeks = 20;

// The proof of the whole program: picture and sound of the real player against one clock.
class Synchrony : public Journey {
protected:
    struct Phase {
        std::string name;
        std::vector<Stretch> stretches;
    };

    void OpenFlashes();
    std::vector<Phase> PlayThrough();
    // True if every phase kept together; otherwise what was wrong stands in the complaints.
    bool Judge(const std::vector<Phase>& phases, const StallWatch& stalls);

    Stretch PlayFor(Clock::duration howLong, int halfTones = 0) const;
    double SecondsOfPicture();
    Phase SeekAtRandom();

    const FlashTrack track{kTrackSeconds};
    Point picturePoint;
    std::vector<std::string> complaints;
    bool machineIsToBlame = false;
};

void Synchrony::OpenFlashes()
{
    const std::filesystem::path path = track.Write(folder.Path());
    ASSERT_NO_FATAL_FAILURE(StartPlayer({path.string()}));
    ASSERT_TRUE(AwaitPicture(FlashTrack::FirstPictureColour()));
    const QRect picture = PictureArea(FlashTrack::FirstPictureColour());
    ASSERT_EQ(picture.size(), QSize(576, 384));
    picturePoint = {picture.center().x(), picture.center().y()};
    const Point borderPoint = {picture.left() - 3, picture.center().y()};
    ASSERT_EQ(eyes.At(borderPoint), FlashTrack::FirstBorderColour());
    eyes.Watch({picturePoint, borderPoint});
}

Stretch Synchrony::PlayFor(Clock::duration howLong, int halfTones) const
{
    std::this_thread::sleep_for(kSettlingTime);
    const Moment from = Clock::now();
    std::this_thread::sleep_for(howLong);
    return {from, Clock::now(), halfTones};
}

// To the flash before last: the odd ones do not change the picture.
double Synchrony::SecondsOfPicture()
{
    return track.SecondsAtPictureColour(eyes.At(picturePoint)).value_or(0.0);
}

Synchrony::Phase Synchrony::SeekAtRandom()
{
    struct Seek {
        std::string_view key;
        double seconds;
    };
    constexpr std::array<Seek, 6> kSeekKeys = {{{"Right", 10.0},
                                                {"Left", -10.0},
                                                {"Page_Down", 60.0},
                                                {"Page_Up", -60.0},
                                                {"Up", 1.0},
                                                {"Down", -1.0}}};
    Phase phase{"after random seeks", {}};
    std::mt19937 random(8);
    hand.Key("t"); // Up and Down now move along the track
    for (int i = 0; i < kSeeks; ++i) {
        const Seek* seek = nullptr;
        double target = 0.0;
        do {
            seek = &kSeekKeys[random() % kSeekKeys.size()];
            target = SecondsOfPicture() + seek->seconds;
        } while (target < 3.0 || target > kTrackSeconds - 8.0);
        hand.Key(seek->key);
        phase.stretches.push_back(PlayFor(1300ms));
    }
    return phase;
}

std::vector<Synchrony::Phase> Synchrony::PlayThrough()
{
    std::vector<Phase> phases;
    phases.push_back({"neutral", {PlayFor(26s)}});

    hand.Key("k");
    Keys("Up", 4);
    phases.push_back({"key +4", {PlayFor(22s, 4)}});
    Keys("Down", 4);

    hand.Key("s");
    Keys("Down", 15);
    phases.push_back({"speed -30 %", {PlayFor(24s)}});
    Keys("Up", 40);
    phases.push_back({"speed +50 %", {PlayFor(16s)}});
    Keys("Down", 25);

    hand.Key("Page_Up");
    Phase pauses{"after pauses", {}};
    for (int i = 0; i < 5; ++i) {
        hand.Key("p");
        std::this_thread::sleep_for(300ms + i * 130ms);
        hand.Key("p");
        pauses.stretches.push_back(PlayFor(1500ms));
    }
    phases.push_back(pauses);
    phases.push_back(SeekAtRandom());
    return phases;
}

bool Synchrony::Judge(const std::vector<Phase>& phases, const StallWatch& stalls)
{
    const Recording heard = ears.Heard();
    const std::vector<Eyes::Change> seen = eyes.StopWatching();
    std::cout << "Marks of the ears agree within " << Milliseconds(heard.Unsteadiness())
              << " ms; stalls of the machine: " << stalls.StallCount() << ", the longest "
              << Milliseconds(stalls.LongestStall()) << " ms\n";
    complaints.clear();
    for (const Phase& phase : phases) {
        const Comparison comparison = Compare(heard, seen, phase.stretches, stalls);
        std::cout << phase.name << ": " << comparison.Distribution() << '\n';
        const auto complain = [&](const std::string& what) {
            complaints.push_back(phase.name + ": " + what);
        };
        for (const std::string& contradiction : comparison.contradictions)
            complain(contradiction);
        for (const double error : comparison.Sorted()) {
            if (std::abs(error) > kMostOffMs)
                complain("a flash was off by " + std::to_string(error) + " ms");
        }
        if (std::abs(comparison.Median()) > kMedianOffMs)
            complain("the median is off");
        // A few flashes after each command are too few to drift.
        if (phase.stretches.size() == 1 && std::abs(comparison.Drift()) > kMostDriftMs)
            complain("picture and sound drift apart");
        // Fewer flashes than the stretches must hold would be a proof of nothing.
        Clock::duration length = {};
        for (const Stretch& stretch : phase.stretches)
            length += stretch.to - stretch.from;
        const double fewest = Milliseconds(length) / 1e3 * 0.7;
        if (static_cast<double>(comparison.errors.size()) < fewest)
            complain("too few flashes were seen and heard");
        if (comparison.DoubtfulCount() * 10 > comparison.errors.size())
            complain("the machine stalled at more than a tenth of the flashes");
    }
    machineIsToBlame = stalls.StallCount() > 0;
    return complaints.empty();
}

TEST_F(Synchrony, ThePictureKeepsWithTheSound)
{
    // Once more, if the machine itself stalled: then, and only then, a late flash may not be the
    // player's doing.
    for (int attempt = 1; attempt <= 2; ++attempt) {
        ASSERT_NO_FATAL_FAILURE(OpenFlashes());
        const StallWatch stalls;
        if (Judge(PlayThrough(), stalls) || !machineIsToBlame)
            break;
        std::cout << "The machine stalled " << stalls.StallCount() << " times.\n";
        if (attempt == 1) {
            Leave();
            std::filesystem::remove(home.SettingsFile());
        }
    }
    for (const std::string& complaint : complaints)
        ADD_FAILURE() << complaint;
}

} // namespace
} // namespace lantern::test
