// SPDX-License-Identifier: GPL-3.0-or-later
// Sounds longer than what is kept of them: wherever they are read, they are what a decode from the
// start to the end gives.
#include "DecodedSound.h"
#include "DecodedStream.h"
#include "Encodings.h"
#include "OwnMemory.h"
#include "WatchedBytes.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <map>
#include <numbers>
#include <random>
#include <set>
#include <string>
#include <tuple>

namespace lantern {
namespace {

using namespace std::chrono_literals;

// Chords that change, and noise as loud as they are at times: something for every part of a codec.
Pcm MakeMusic(int sampleRate, int channels, int seconds)
{
    static std::map<std::tuple<int, int, int>, Pcm> made;
    Pcm& pcm = made[{sampleRate, channels, seconds}];
    if (!pcm.samples.empty())
        return pcm;
    pcm.sampleRate = sampleRate;
    pcm.channels = channels;
    const std::int64_t frames = std::int64_t{sampleRate} * seconds + 777;
    pcm.samples.reserve(static_cast<std::size_t>(frames * channels));
    std::mt19937 random(7);
    for (std::int64_t frame = 0; frame < frames; ++frame) {
        const double time = static_cast<double>(frame) / sampleRate;
        const double note = std::exp2(std::floor(time * 3) / 12.0 - std::floor(time / 5));
        const double loud = 3000 + 2500 * std::sin(time * 1.7);
        for (int channel = 0; channel < channels; ++channel) {
            double sample = 0;
            for (const double part : {440.0, 660.0, 1107.0})
                sample += loud * std::sin(2 * std::numbers::pi * part * note * time + channel);
            const double noise = static_cast<double>(random() % 20001) - 10000.0;
            sample += noise * std::max(0.0, std::sin(time * 0.9));
            pcm.samples.push_back(static_cast<std::int16_t>(std::lround(sample)));
        }
    }
    return pcm;
}

std::vector<float> StraightDecode(const ByteSource& bytes)
{
    const WorkLimit limit;
    const auto stream = DecodedStream::Open(bytes, limit);
    std::vector<float> all;
    for (auto block = stream->NextBlock(); !block.empty(); block = stream->NextBlock()) {
        const std::size_t before = all.size();
        all.resize(before + 2 * block.size() / StereoFrameSize(stream->Kind()));
        ToFloats(stream->Kind(), block, all.data() + before);
    }
    return all;
}

// At its edges, back and forth, and on from each place for a while.
void ExpectSameAnywhere(SoundDecoder& decoder, const std::vector<float>& all)
{
    const auto total = static_cast<std::int64_t>(all.size() / 2);
    WaitForEnd(decoder);
    ASSERT_EQ(decoder.FrameCount(), total);
    const auto expectSame = [&](std::int64_t first, std::int64_t frames) {
        const std::int64_t there = std::clamp<std::int64_t>(total - first, 0, frames);
        EXPECT_TRUE(std::ranges::equal(ReadInPieces(decoder, first, there),
                                       std::span(all).subspan(static_cast<std::size_t>(first) * 2,
                                                              static_cast<std::size_t>(there) * 2)))
            << first << " of " << total;
    };
    expectSame(total - 5, 5);
    expectSame(0, 70000);
    expectSame(total / 2, 70000);
    expectSame(std::max<std::int64_t>(total / 2 - std::int64_t{10} * decoder.SampleRate(), 0),
               7000);
    std::mt19937 random(11);
    for (int i = 0; i < 12; ++i)
        expectSame(static_cast<std::int64_t>(random()) % total, 5000);
    expectSame(0, total);
}

class WindowedType : public testing::TestWithParam<Encoding> {};

TEST_P(WindowedType, IsBitForBitTheSameFromAnyPlaceOn)
{
    const Encoding& encoding = GetParam();
    const SoundFolder folder;
    const QString path = folder.Encode(MakeMusic(encoding.sampleRate, encoding.channels, 45),
                                       encoding.command, encoding.file);
    const auto bytes = OpenFileBytes(path);
    const std::vector<float> all = StraightDecode(*bytes);
    const auto decoder = SoundDecoder::OpenFile(path);
    ASSERT_TRUE(decoder);
    ExpectSameAnywhere(*decoder, all);
}

std::vector<Encoding> EncodingsOfEachType(bool first)
{
    const std::set<std::string> types = {"Wav",    "Aif", "Au",  "Flac", "Alac", "Mp4",
                                         "Mp3Vbr", "Aac", "Ogg", "Mpc",  "Wma",  "OggOpus"};
    std::vector<Encoding> encodings = AllEncodings();
    std::erase_if(encodings,
                  [&](const Encoding& encoding) { return types.contains(encoding.name) != first; });
    return encodings;
}

INSTANTIATE_TEST_SUITE_P(Types, WindowedType, testing::ValuesIn(EncodingsOfEachType(true)),
                         [](const auto& test) { return test.param.name; });
INSTANTIATE_TEST_SUITE_P(Variants, WindowedType, testing::ValuesIn(EncodingsOfEachType(false)),
                         [](const auto& test) { return test.param.name; });

TEST(WindowedSound, AModuleAndMonkeysAudioAreTheSameFromAnyPlaceOn)
{
    for (const Bytes& image : {ModImage(), XmImage(), ItImage(), ApeImage(60, 12345)}) {
        const auto decoder = SoundDecoder::OpenMemory(image);
        ASSERT_TRUE(decoder);
        ExpectSameAnywhere(*decoder, StraightDecode(*OpenMemoryBytes(image)));
    }
}

// Files that a decode from the start gets through in another way than one from the middle might.
TEST(WindowedSound, ADamagedSoundIsTheSameFromAnyPlaceOn)
{
    const Pcm music = MakeMusic(kRate, 2, 45);
    std::mt19937 random(3);
    for (const auto& [name, command] :
         {std::pair("a.mp3", "lame --quiet -V 4 in.wav"),
          std::pair("b.mp3", "lame --quiet -b 128 -t in.wav"),
          std::pair("a.flac", "flac -s -f in.wav -o"), std::pair("a.ogg", "oggenc -Q in.wav -o"),
          std::pair("b.ogg", "ffmpeg -y -v error -i in.wav -c:a libopus"),
          std::pair("a.mp4", "ffmpeg -y -v error -i in.wav -c:a alac -movflags +faststart"),
          std::pair("a.wav", "ffmpeg -y -v error -i in.wav -c:a pcm_s24le")}) {
        const Bytes whole = Encoded(music, command, name);
        const auto size = static_cast<std::ptrdiff_t>(whole.size());
        const auto expectSame = [&](const Bytes& image, const char* damage) {
            SCOPED_TRACE(std::string(name) + ": " + damage);
            const auto decoder = SoundDecoder::OpenMemory(image);
            ASSERT_TRUE(decoder);
            ExpectSameAnywhere(*decoder, StraightDecode(*OpenMemoryBytes(image)));
        };
        Bytes image = whole;
        std::fill(image.begin() + size / 3, image.begin() + size / 2, std::uint8_t{0});
        expectSame(image, "a hole");
        image = whole;
        image.erase(image.begin() + size / 3, image.begin() + size / 2 + 17);
        expectSame(image, "a part is missing");
        image = whole;
        image.insert(image.end(), whole.begin() + size / 2, whole.end());
        expectSame(image, "a part comes twice");
        image = whole;
        for (int i = 0; i < 40; ++i)
            image[20000 + random() % (image.size() - 20000)] ^= 0x10;
        expectSame(image, "bits flipped");
        image.resize(image.size() * 2 / 3);
        expectSame(image, "cut, too");
    }
}

TEST(WindowedSound, AnHourTakesNoMoreMemoryThanSomeMinutes)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "A sanitizer keeps what was given back.";
#endif
    const Bytes once = Encoded(MakeMusic(kRate, 2, 20), "lame --quiet -t -b 128 in.wav", "a.mp3");
    Bytes image;
    for (int i = 0; i < 180; ++i)
        image.insert(image.end(), once.begin(), once.end());
    const std::int64_t before = test::OwnKibibytes();
    const auto decoder = SoundDecoder::OpenMemory(image);
    ASSERT_TRUE(decoder);
    WaitForEnd(*decoder);
    const std::int64_t rate = decoder->SampleRate();
    EXPECT_GT(decoder->FrameCount(), rate * 3600);
    EXPECT_EQ(decoder->CutBy(), 0);
    ReadInPieces(*decoder, rate * 2400, rate * 100);
    EXPECT_LT(test::OwnKibibytes() - before, 12 * 1024);
}

// What is read goes on for so long when nothing more can be decoded.
TEST(WindowedSound, TenSecondsAreDecodedAheadOfTheReader)
{
    const Bytes image = Encoded(MakeMusic(kRate, 2, 200), "lame --quiet -b 128 in.wav", "a.mp3");
    const auto decoder = SoundDecoder::OpenMemory(image);
    ASSERT_TRUE(decoder);
    WaitForEnd(*decoder);
    for (const int second : {0, 3, 30, 31, 150, 20, 77}) {
        ReadInPieces(*decoder, std::int64_t{kRate} * second, kRate);
        std::this_thread::sleep_for(400ms);
        std::vector<float> ahead(2 * 441);
        EXPECT_EQ(decoder->Read(std::int64_t{kRate} * (second + 10), ahead).frames, 441) << second;
    }
}

// A share that does not answer for a while.
class FailingBytes final : public ByteSource {
public:
    FailingBytes(Bytes bytes, const std::atomic<bool>& fails)
        : m_bytes(std::move(bytes)), m_fails(fails)
    {
    }

    std::int64_t Size() const override { return static_cast<std::int64_t>(m_bytes.size()); }
    std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> out) const override
    {
        const auto first = m_fails ? m_bytes.size() : static_cast<std::size_t>(offset);
        const auto rest = std::span(m_bytes).subspan(std::min(first, m_bytes.size()));
        const auto part = rest.first(std::min(rest.size(), out.size()));
        std::ranges::copy(part, out.begin());
        return part.size();
    }

private:
    const Bytes m_bytes;
    const std::atomic<bool>& m_fails;
};

TEST(WindowedSound, AFileThatFailsForAWhilePlaysOn)
{
    const Pcm music = MakeMusic(kRate, 2, 60);
    const std::vector<float> all = StereoFloats(music);
    std::atomic<bool> fails = false;
    const auto decoder =
        SoundDecoder::Open(std::make_unique<FailingBytes>(WavImage(music), fails), 400ms);
    ASSERT_TRUE(decoder);
    WaitForEnd(*decoder);
    const std::vector<float> before = ReadInPieces(*decoder, 0, kRate);
    std::this_thread::sleep_for(50ms);
    fails = true;
    for (int second = 1; second < 40; ++second) {
        fails = second < 28;
        std::this_thread::sleep_for(10ms);
        const auto first = static_cast<std::size_t>(second) * 2 * kRate;
        EXPECT_TRUE(std::ranges::equal(ReadInPieces(*decoder, std::int64_t{kRate} * second, kRate),
                                       std::span(all).subspan(first, std::size_t{2} * kRate)))
            << second;
    }
    EXPECT_EQ(decoder->CutBy(), 0);
}

} // namespace
} // namespace lantern
