// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundLength.h"

#include "SoundContainer.h"
#include "WatchedBytes.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

SoundLength Measured(const Bytes& bytes)
{
    return MeasureSound(WatchedBytes(bytes), kRate, WorkLimit());
}

// What opening the container takes, for those that know no end of it.
std::size_t BytesReadToOpen(const Bytes& bytes)
{
    const WorkLimit limit;
    const WatchedBytes watched(bytes);
    EXPECT_TRUE(SoundContainer::Open(watched, limit));
    return watched.BytesRead();
}

SoundLength MeasuredUpTo(std::size_t bytesRead, const Bytes& bytes)
{
    WorkLimit limit;
    WatchedBytes watched(bytes);
    watched.StopAfter(limit, bytesRead);
    return MeasureSound(watched, kRate, limit);
}

TEST(SoundLength, BytesThatAreNoSoundHaveNone)
{
    const SoundLength none = Measured(Bytes(100000, 0x55));
    EXPECT_EQ(none.frames, 0);
    EXPECT_FALSE(none.exact);
    WorkLimit limit;
    limit.Stop();
    EXPECT_EQ(MeasureSound(WatchedBytes(ItImage()), kRate, limit).frames, 0);
}

TEST(SoundLength, UncompressedSoundIsMeasuredByItsTail)
{
    const WatchedBytes wav(WavImage(MakeTicks(kRate, 2, 60 * kRate + 7)));
    const SoundLength length = MeasureSound(wav, kRate, WorkLimit());
    EXPECT_EQ(length.frames, 60 * kRate + 7);
    EXPECT_TRUE(length.exact);
    EXPECT_LT(wav.BytesRead(), 2000000U);
}

TEST(SoundLength, AClaimThatTheTailDoesNotBearOutIsCounted)
{
    for (const std::ptrdiff_t missing : {4, 4000, 100000}) {
        Bytes wav = WavImage(MakeTicks(kRate, 2, 2 * kRate));
        wav.resize(wav.size() - static_cast<std::size_t>(missing));
        const SoundLength length = Measured(wav);
        EXPECT_EQ(length.frames, 2 * kRate - missing / 4);
        EXPECT_TRUE(length.exact);
    }
}

TEST(SoundLength, BeforeAnyPacketTheClaimIsAllThereIs)
{
    const SoundLength length = MeasuredUpTo(0, WavImage(MakeTicks(kRate, 2, kRate)));
    EXPECT_EQ(length.frames, kRate);
    EXPECT_FALSE(length.exact);
}

TEST(SoundLength, AtAnotherRateItIsAsLong)
{
    const Bytes wav = WavImage(MakeTicks(kRate, 2, 2 * kRate));
    EXPECT_EQ(MeasureSound(WatchedBytes(wav), 2 * kRate, WorkLimit()).frames, 4 * kRate);
}

TEST(SoundLength, PacketsAreCountedLessWhatTheyTellToSkip)
{
    const Pcm pcm = MakeTicks(kRate, 2, 5 * kRate + 123);
    const Bytes mp3 = Encoded(pcm, "lame --quiet -b 128 in.wav", "a.mp3");
    const WatchedBytes watched(mp3);
    const SoundLength length = MeasureSound(watched, kRate, WorkLimit());
    EXPECT_EQ(length.frames, 5 * kRate + 123);
    EXPECT_TRUE(length.exact);
    // At twice the rate all of it counts twice.
    EXPECT_EQ(MeasureSound(watched, 2 * kRate, WorkLimit()).frames, 2 * (5 * kRate + 123));
}

TEST(SoundLength, PartOfThePacketsStandsForTheWhole)
{
    // The library claims what the first packets promise. The second half has more bits, and so the
    // claim is far too long.
    const Pcm pcm = MakeTicks(kRate, 2, 20 * kRate);
    Bytes mp3 = Encoded(pcm, "lame --quiet -t -b 64 in.wav", "a.mp3");
    const Bytes dense = Encoded(pcm, "lame --quiet -t -b 320 in.wav", "b.mp3");
    mp3.insert(mp3.end(), dense.begin(), dense.end());
    const double actual = 2.0 * 20 * kRate;
    const std::size_t toOpen = BytesReadToOpen(mp3);
    const SoundLength most = MeasuredUpTo(toOpen + mp3.size() * 9 / 10, mp3);
    EXPECT_FALSE(most.exact);
    EXPECT_NEAR(static_cast<double>(most.frames), actual, 0.15 * actual);
    EXPECT_EQ(MeasuredUpTo(2 * mp3.size(), mp3).frames, Measured(mp3).frames);
}

TEST(SoundLength, TooSmallAPartStandsForNothing)
{
    const Pcm pcm = MakeTicks(kRate, 2, 20 * kRate);
    const Bytes once = Encoded(pcm, "lame --quiet -t -b 192 in.wav", "a.mp3");
    Bytes mp3;
    for (int i = 0; i < 32; ++i)
        mp3.insert(mp3.end(), once.begin(), once.end());
    const std::size_t toOpen = BytesReadToOpen(mp3);
    // What the library claims by the first packets is nearly right here.
    const double claim = 32.0 * 20 * kRate;
    const auto seen = [&](std::size_t further) {
        return static_cast<double>(MeasuredUpTo(toOpen + further, mp3).frames);
    };
    EXPECT_NEAR(seen(1), claim, 0.01 * claim);
    // A hundredth of the bytes is enough, and makes a rough estimate.
    EXPECT_LT(seen(mp3.size() / 200), 0.9 * claim);
}

TEST(SoundLength, AHaltedMeasureOfAClaimedLengthTellsTheClaim)
{
    const Pcm pcm = MakeTicks(kRate, 2, 20 * kRate);
    const Bytes wma = Encoded(pcm, "ffmpeg -y -v error -i in.wav -c:a wmav2", "a.wma");
    const SoundLength whole = Measured(wma);
    EXPECT_TRUE(whole.exact);
    EXPECT_NEAR(static_cast<double>(whole.frames), 20.0 * kRate, 0.1 * kRate);
    for (const std::size_t further : {std::size_t{0}, wma.size() / 2}) {
        const SoundLength half = MeasuredUpTo(BytesReadToOpen(wma) + further, wma);
        EXPECT_EQ(half.frames, whole.frames);
        EXPECT_FALSE(half.exact);
    }
}

TEST(SoundLength, AHaltedDecodeStandsForTheWhole)
{
    const Pcm pcm = MakeTicks(kRate, 2, 40 * kRate);
    Bytes wma = Encoded(pcm, "ffmpeg -y -v error -i in.wav -c:a wmav2", "a.wma");
    wma.resize(wma.size() / 2);
    const WatchedBytes watched(wma);
    const SoundLength whole = MeasureSound(watched, kRate, WorkLimit());
    EXPECT_TRUE(whole.exact);
    EXPECT_NEAR(static_cast<double>(whole.frames), 20.0 * kRate, 1.0 * kRate);
    const SoundLength part = MeasuredUpTo(watched.BytesRead() - wma.size() / 3, wma);
    EXPECT_FALSE(part.exact);
    EXPECT_NEAR(static_cast<double>(part.frames), 18.0 * kRate, 4.0 * kRate);
    // Halted before the decoding there is nothing to go by.
    EXPECT_EQ(MeasuredUpTo(BytesReadToOpen(wma) + wma.size(), wma).frames, 0);
}

TEST(SoundLength, ACutOffSoundOfAClaimIsDecoded)
{
    Bytes ape = ApeImage(20, 1000);
    ape.resize(ape.size() - std::size_t{16} * 8); // eight coded frames
    const SoundLength length = Measured(ape);
    EXPECT_EQ(length.frames, 13 * std::int64_t{kApeFrameLength});
    EXPECT_TRUE(length.exact);
}

TEST(SoundLength, AModuleLastsAsLongAsItSays)
{
    const WatchedBytes module(ModImage());
    const SoundLength length = MeasureSound(module, 48000, WorkLimit());
    EXPECT_EQ(length.frames, std::int64_t{48} * kModuleLengthMs);
    EXPECT_TRUE(length.exact);
}

} // namespace
} // namespace lantern
