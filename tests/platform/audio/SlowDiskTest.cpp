// SPDX-License-Identifier: GPL-3.0-or-later
// Sounds on a disk that takes its time for each read.
#include "DecodedSound.h"
#include "WatchedBytes.h"

namespace lantern {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::int64_t kSoundFrames = std::int64_t{44100} * 100;

// A hundred seconds of an mp3 that doesn't tell its length: 25 reads.
class SlowDisk : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        const SoundFolder folder;
        const QStringList command = QStringLiteral("lame --quiet -t -b 128 in.wav").split(u' ');
        const Bytes once = ReadFile(folder.Encode(MakeTicks(44100, 2, kSoundFrames / 10), command,
                                                  QStringLiteral("a.mp3")));
        for (int i = 0; i < 10; ++i)
            s_mp3.insert(s_mp3.end(), once.begin(), once.end());
    }
    static std::unique_ptr<WatchedBytes> Mp3(milliseconds timeOfRead)
    {
        auto bytes = std::make_unique<WatchedBytes>(s_mp3);
        bytes->TakeForEachRead(timeOfRead);
        return bytes;
    }
    double MillisecondsSoFar() const
    {
        return std::chrono::duration<double, std::milli>(steady_clock::now() - m_start).count();
    }

    steady_clock::time_point m_start = steady_clock::now();
    static inline Bytes s_mp3;
};

TEST_F(SlowDisk, ASoundThatDoesNotOpenInTimeIsNone)
{
    EXPECT_EQ(SoundDecoder::Open(Mp3(milliseconds(200)), milliseconds(100)), nullptr);
    EXPECT_GT(MillisecondsSoFar(), 500);
    EXPECT_LT(MillisecondsSoFar(), 1500);
}

TEST_F(SlowDisk, OnceOpenASoundIsDecodedToItsEndHoweverLongThatTakes)
{
    const auto decoder = SoundDecoder::Open(Mp3(milliseconds(25)), milliseconds(60));
    ASSERT_TRUE(decoder);
    // Measured for a moment it is estimated, which is good enough to begin with.
    EXPECT_LT(MillisecondsSoFar(), 450);
    EXPECT_GT(decoder->FrameCount(), 0);
    WaitForEnd(*decoder);
    EXPECT_GT(MillisecondsSoFar(), 600);
    EXPECT_NEAR(static_cast<double>(decoder->FrameCount()), kSoundFrames, 0.02 * kSoundFrames);
}

TEST_F(SlowDisk, ALengthIsToldWithinASecond)
{
    const auto durationMs = static_cast<double>(SoundDecoder::DurationMs(*Mp3(milliseconds(70))));
    EXPECT_LT(MillisecondsSoFar(), 1300);
    EXPECT_NEAR(durationMs, 100'000.0, 80'000.0);
}

TEST_F(SlowDisk, DecodingStopsWithTheReadThatIsUnderWay)
{
    auto decoder = SoundDecoder::Open(Mp3(milliseconds(20)), milliseconds(0));
    ASSERT_TRUE(decoder);
    EXPECT_FALSE(decoder->DecodedToEnd());
    m_start = steady_clock::now();
    decoder.reset();
    EXPECT_LT(MillisecondsSoFar(), 150);
}

} // namespace
} // namespace lantern
