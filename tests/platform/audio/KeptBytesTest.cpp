// SPDX-License-Identifier: GPL-3.0-or-later
#include "KeptBytes.h"

#include "DecodedSound.h"
#include "WatchedBytes.h"

#include <cerrno>
#include <numeric>
#include <random>
#include <thread>
#include <unistd.h>

namespace lantern {
namespace {

Bytes Numbered(std::size_t size)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 7 + i / 251);
    return bytes;
}

TEST(KeptBytes, EachByteIsReadOnceAndIsWhereItWas)
{
    const Bytes all = Numbered(1'000'001);
    auto watched = std::make_unique<WatchedBytes>(all);
    const WatchedBytes& source = *watched;
    const auto kept = KeepInMemory(std::move(watched));
    EXPECT_EQ(kept->Size(), 1'000'001);
    std::mt19937 random(1);
    for (int i = 0; i < 300; ++i) {
        const std::size_t offset = random() % (all.size() + 10);
        Bytes part(random() % 200'000);
        const std::size_t there = std::min(part.size(), all.size() - std::min(offset, all.size()));
        ASSERT_EQ(kept->ReadAt(static_cast<std::int64_t>(offset), part), there);
        ASSERT_TRUE(std::equal(part.begin(), part.begin() + static_cast<std::ptrdiff_t>(there),
                               all.begin() + static_cast<std::ptrdiff_t>(offset)));
    }
    EXPECT_EQ(source.BytesRead(), all.size());
    Bytes part(10);
    EXPECT_EQ(kept->ReadAt(-1, part), 0U);
    EXPECT_EQ(kept->ReadAt(std::int64_t{1} << 62, part), 0U);
}

TEST(KeptBytes, ManyReadAtOnce)
{
    const Bytes all = Numbered(3'000'000);
    const auto kept = KeepInMemory(std::make_unique<WatchedBytes>(all));
    const auto readAll = [&] {
        Bytes read(all.size());
        const std::size_t got = kept->ReadAt(0, read);
        EXPECT_TRUE(got == all.size() && read == all);
    };
    std::thread other(readAll);
    readAll();
    other.join();
    readAll();
}

TEST(KeptBytes, ReleasedTheyFindAnEnd)
{
    const auto kept = KeepInMemory(std::make_unique<WatchedBytes>(Numbered(100'000)));
    Bytes part(1000);
    EXPECT_EQ(kept->ReadAt(0, part), 1000U);
    kept->Release();
    EXPECT_EQ(kept->ReadAt(0, part), 0U);
    EXPECT_EQ(kept->ReadAt(90'000, part), 0U);
}

TEST(KeptBytes, WhatIsLargeIsReadAgain)
{
    auto watched = std::make_unique<WatchedBytes>(Bytes(kLargestKeptBytes + 1));
    const WatchedBytes& source = *watched;
    const auto bytes = KeepInMemory(std::move(watched));
    EXPECT_EQ(bytes.get(), &source);
    EXPECT_EQ(KeepInMemory(nullptr), nullptr);
}

std::unique_ptr<SoundDecoder> CutOnceOpen(const SoundFolder& folder, const Bytes& image)
{
    const QString path = folder.Write(QStringLiteral("a"), image);
    auto decoder = SoundDecoder::OpenFile(path);
    WaitForEnd(*decoder);
    EXPECT_EQ(truncate(path.toUtf8().constData(), static_cast<off_t>(image.size() / 2)), 0);
    return decoder;
}

TEST(CutWhileItPlays, ASoundOfAFewMinutesPlaysOn)
{
    const SoundFolder folder;
    const Pcm pcm = MakeTicks(kRate, 2, std::int64_t{kRate} * 80);
    const auto decoder = CutOnceOpen(folder, Encoded(pcm, "flac -s -f in.wav -o", "a.flac"));
    const std::vector<float> all = StereoFloats(pcm);
    for (const int second : {70, 3, 78, 41}) {
        const auto read = ReadInPieces(*decoder, std::int64_t{kRate} * second, kRate);
        EXPECT_TRUE(std::equal(read.begin(), read.end(), all.begin() + 2 * kRate * second));
    }
    EXPECT_EQ(decoder->CutBy(), 0);
}

TEST(CutWhileItPlays, ALargeOneEndsWhereTheFileNowEndsAndThatIsTold)
{
    const SoundFolder folder;
    const Pcm pcm = MakeTicks(kRate, 2, std::int64_t{kRate} * 90);
    const auto decoder = CutOnceOpen(folder, WavImage(pcm));
    const std::vector<float> all = StereoFloats(pcm);
    EXPECT_EQ(decoder->FrameCount(), pcm.FrameCount());
    std::vector<float> read(2 * 441);
    SoundDecoder::Chunk chunk;
    for (int i = 0; i < 5000 && !chunk.atEnd; ++i) {
        chunk = decoder->Read(std::int64_t{kRate} * 80, read);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(chunk.frames, 0);
    EXPECT_TRUE(chunk.atEnd);
    EXPECT_EQ(decoder->CutBy(), EIO);
    std::int64_t frame = std::int64_t{kRate} * 41;
    chunk = {};
    for (int waitedMs = 0; !chunk.atEnd && waitedMs < 5000; frame += chunk.frames) {
        chunk = decoder->Read(frame, read);
        ASSERT_TRUE(std::equal(read.begin(), read.begin() + 2 * std::ptrdiff_t{chunk.frames},
                               all.begin() + 2 * frame));
        if (chunk.notYet) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            ++waitedMs;
        }
    }
    EXPECT_TRUE(chunk.atEnd);
    EXPECT_NEAR(static_cast<double>(frame), 45.0 * kRate, kRate / 10.0);
}

} // namespace
} // namespace lantern
