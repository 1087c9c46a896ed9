// SPDX-License-Identifier: GPL-3.0-or-later
#include "Ears.h"
#include "Listening.h"
#include "PulseServer.h"
#include "SoundSheet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace lantern::test {
namespace {

TEST(Ears, TheyHearWhatIsPlayedAndWhen)
{
    const PulseServer server;
    const Ears ears(server, "studio");
    SoundSheet sheet(3.0);
    for (int i = 0; i < 5; ++i)
        sheet.Add({.start = 0.25 + 0.5 * i, .length = 0.05, .frequency = 500.0 + 100.0 * i});
    const ScratchFolder folder;
    sheet.WriteWav(folder / "tones.wav");
    OutputOf({.arguments = {"paplay", (folder / "tones.wav").string()},
              .environment = server.Environment()});

    const Recording heard = ears.Heard();
    const std::vector<Burst> bursts = FindBursts(heard.stereo, Recording::kRate);
    ASSERT_EQ(bursts.size(), 5U);
    for (int i = 0; i < 5; ++i) {
        const Burst& burst = bursts[static_cast<std::size_t>(i)];
        EXPECT_NEAR(burst.frequency, 500.0 + 100.0 * i, 5.0);
        EXPECT_NEAR(burst.startFrame - bursts[0].startFrame, 0.5 * i * Recording::kRate, 50.0);
    }
    const double spread =
        Milliseconds(heard.HeardAt(bursts[4].startFrame) - heard.HeardAt(bursts[0].startFrame));
    EXPECT_NEAR(spread, 2000.0, 2.0);
}

// The sink takes frames a little before they are heard, and hands them on in fragments: what was
// recorded just now is heard between now less a fragment and now plus the sink's latency.
TEST(Ears, TheirTimesAreThoseOfTheFramesJustRecorded)
{
    const PulseServer server;
    double furthest = 0.0;
    double unsteadiness = 0.0;
    // A machine that stalls spoils a recording. It does not spoil each.
    for (int attempt = 0; attempt < 6; ++attempt) {
        const Ears ears(server, "studio");
        std::this_thread::sleep_for(1s);
        furthest = 0.0;
        for (int i = 0; i < 20; ++i) {
            std::this_thread::sleep_for(37ms);
            const Moment now = Clock::now();
            const Recording heard = ears.Heard();
            const double ahead =
                Milliseconds(heard.HeardAt(static_cast<double>(heard.FrameCount())) - now);
            furthest = std::max(furthest, std::abs(ahead));
        }
        const Recording heard = ears.Heard();
        EXPECT_GT(heard.marks.size(), 20U);
        EXPECT_EQ(Level(heard.stereo), 0.0);
        unsteadiness = Milliseconds(heard.Unsteadiness());
        if (furthest < 45.0 && unsteadiness < 5.0)
            break;
    }
    EXPECT_LT(furthest, 45.0);
    EXPECT_LT(unsteadiness, 5.0);
}

} // namespace
} // namespace lantern::test
