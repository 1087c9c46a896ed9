// SPDX-License-Identifier: GPL-3.0-or-later
// A sound decoded from its middle on is the sound that is decoded from its start.
#include "DecodedStream.h"
#include "Encodings.h"
#include "TestSounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace lantern {
namespace {

std::vector<std::byte> Rest(DecodedStream& stream)
{
    std::vector<std::byte> all;
    for (auto block = stream.NextBlock(); !block.empty(); block = stream.NextBlock())
        all.insert(all.end(), block.begin(), block.end());
    return all;
}

double LargestDifference(std::span<const std::byte> a, std::span<const std::byte> b,
                         SampleKind kind)
{
    double largest = 0.0;
    const std::size_t size = kind == SampleKind::Float ? sizeof(float) : sizeof(std::int16_t);
    for (std::size_t i = 0; i + size <= std::min(a.size(), b.size()); i += size) {
        float x = 0.0F;
        float y = 0.0F;
        if (kind == SampleKind::Float) {
            std::memcpy(&x, &a[i], size);
            std::memcpy(&y, &b[i], size);
        } else {
            std::int16_t s = 0;
            std::memcpy(&s, &a[i], size);
            x = static_cast<float>(s) / 32768.0F;
            std::memcpy(&s, &b[i], size);
            y = static_cast<float>(s) / 32768.0F;
        }
        largest = std::max(largest, std::abs(static_cast<double>(x - y)));
    }
    return largest;
}

bool CanBeSought(const Encoding& encoding)
{
    return !encoding.name.starts_with("Mpc") && !encoding.name.starts_with("Wma") &&
           encoding.name != "WavMicrosoftAdpcm";
}

// The decoder of aac makes up the noise that the encoder left out, each time another one.
bool HasNoiseOfItsOwn(const Encoding& encoding)
{
    return encoding.name.starts_with("Mp4") || encoding.name == "Aac";
}

class SoughtSound : public testing::TestWithParam<Encoding> {};

TEST_P(SoughtSound, IsTheSameFromEachPlaceOn)
{
    const Encoding& encoding = GetParam();
    const SoundFolder folder;
    const Pcm pcm =
        MakeTicks(encoding.sampleRate, encoding.channels, encoding.sampleRate * 12 + 777);
    const QString path = folder.Encode(pcm, encoding.command, encoding.file);
    const auto bytes = OpenFileBytes(path);
    const WorkLimit limit;
    const auto straight = DecodedStream::Open(*bytes, limit);
    ASSERT_TRUE(straight);
    const SampleKind kind = straight->Kind();
    const auto all = Rest(*straight);
    const auto total = static_cast<std::int64_t>(all.size() / StereoFrameSize(kind));
    for (const std::int64_t frame : {std::int64_t{encoding.sampleRate} + 4321, total / 3,
                                     total / 2 + 1, total - encoding.sampleRate, total - 5}) {
        const auto sought = DecodedStream::OpenAt(*bytes, limit, frame);
        ASSERT_EQ(sought != nullptr, CanBeSought(encoding)) << frame;
        if (!sought)
            return;
        const auto rest = Rest(*sought);
        const auto wanted =
            std::span(all).subspan(static_cast<std::size_t>(frame) * StereoFrameSize(kind));
        ASSERT_EQ(rest.size(), wanted.size()) << frame;
        EXPECT_LE(LargestDifference(rest, wanted, kind), HasNoiseOfItsOwn(encoding) ? 0.2 : 0.0)
            << frame;
    }
}

TEST(SoughtSoundOfNoKind, IsNoneBehindTheEndAndNearTheStart)
{
    const Bytes image = WavImage(MakeTicks(44100, 2, 44100 * 3));
    const auto bytes = OpenMemoryBytes(image);
    const WorkLimit limit;
    EXPECT_FALSE(DecodedStream::OpenAt(*bytes, limit, 44100 * 3));
    EXPECT_FALSE(DecodedStream::OpenAt(*bytes, limit, 44100 * 300));
    EXPECT_FALSE(DecodedStream::OpenAt(*bytes, limit, std::int64_t{1} << 62));
    EXPECT_FALSE(DecodedStream::OpenAt(*bytes, limit, 17)) << "which the start reaches sooner";
    EXPECT_TRUE(DecodedStream::OpenAt(*bytes, limit, 44100 * 3 - 1));
}

// The sound from the frame on is there, or none is.
void ExpectTrueOrNone(const ByteSource& bytes, std::int64_t frame, bool isThere)
{
    const WorkLimit limit;
    const auto straight = DecodedStream::Open(bytes, limit);
    ASSERT_TRUE(straight);
    const auto all = Rest(*straight);
    const auto first = static_cast<std::size_t>(frame) * StereoFrameSize(straight->Kind());
    ASSERT_LT(first, all.size());
    const auto sought = DecodedStream::OpenAt(bytes, limit, frame);
    EXPECT_EQ(sought != nullptr, isThere) << frame;
    if (sought) {
        const auto rest = Rest(*sought);
        EXPECT_TRUE(std::ranges::equal(rest, std::span(all).subspan(first))) << frame;
    }
}

Bytes HalfAMinuteOfMp4(const QString& codec)
{
    const SoundFolder folder;
    return ReadFile(folder.Encode(MakeTicks(kRate, 2, kRate * 30),
                                  Ffmpeg(QStringLiteral("-c:a ") + codec),
                                  QStringLiteral("a.mp4")));
}

TEST(SoughtSoundOfNoKind, IsThereBehindAnEndThatTheHeaderStatesTooEarly)
{
    Bytes image = HalfAMinuteOfMp4(QStringLiteral("alac"));
    constexpr std::array<std::uint8_t, 4> kName = {'m', 'd', 'h', 'd'};
    const auto header = std::ranges::search(image, kName);
    ASSERT_FALSE(header.empty());
    constexpr std::array<std::uint8_t, 4> kFiveSeconds = {0, 0x03, 0x5D, 0x54};
    std::ranges::copy(kFiveSeconds, header.begin() + 20);

    const auto bytes = OpenMemoryBytes(image);
    for (const int second : {3, 5, 6, 7, 20, 29})
        ExpectTrueOrNone(*bytes, std::int64_t{kRate} * second + 321, true);
}

// Where nothing decodes for a while, all that comes lies behind the place.
TEST(SoughtSoundOfNoKind, IsNoneWhereTheFileIsDamaged)
{
    Bytes image = HalfAMinuteOfMp4(QStringLiteral("aac"));
    const auto size = static_cast<std::ptrdiff_t>(image.size());
    std::fill(image.begin() + size / 3, image.begin() + size * 2 / 3, std::uint8_t{0});
    const auto bytes = OpenMemoryBytes(image);
    const WorkLimit limit;
    for (const int tenths : {130, 141, 152, 163, 170})
        EXPECT_FALSE(DecodedStream::OpenAt(*bytes, limit, std::int64_t{kRate} * tenths / 10));
}

// Each of them counts time from its own start.
TEST(SoughtSoundOfNoKind, IsNoneInAChainOfStreams)
{
    const SoundFolder folder;
    const auto encode = [&](const char* options, int seconds) {
        return ReadFile(folder.Encode(MakeTicks(kRate, 2, std::int64_t{kRate} * seconds),
                                      Words(QString::fromLatin1(options)),
                                      QStringLiteral("a.ogg")));
    };
    Bytes chain = encode("oggenc -Q -s 1 in.wav -o", 20);
    const Bytes second = encode("oggenc -Q -s 2 in.wav -o", 10);
    chain.insert(chain.end(), second.begin(), second.end());
    const auto bytes = OpenMemoryBytes(chain);
    for (const int place : {3, 9, 12, 19, 23, 28})
        ExpectTrueOrNone(*bytes, std::int64_t{kRate} * place, false);
}

INSTANTIATE_TEST_SUITE_P(Types, SoughtSound, testing::ValuesIn(AllEncodings()),
                         [](const auto& test) { return test.param.name; });

} // namespace
} // namespace lantern
