// SPDX-License-Identifier: GPL-3.0-or-later
#include "DecodedStream.h"

#include "SoundDecoder.h"
#include "WatchedBytes.h"

#include <gtest/gtest.h>

#include <cstring>

namespace lantern {
namespace {

// A stream on bytes of its own.
class Decoded {
public:
    explicit Decoded(Bytes bytes, std::size_t stopAfter = SIZE_MAX) : m_bytes(std::move(bytes))
    {
        m_bytes.StopAfter(m_limit, stopAfter);
        m_stream = DecodedStream::Open(m_bytes, m_limit);
    }
    DecodedStream* operator->() const { return m_stream.get(); }
    explicit operator bool() const { return m_stream != nullptr; }
    WorkLimit& TheLimit() { return m_limit; }

    std::vector<std::byte> NextBytes()
    {
        const auto block = m_stream->NextBlock();
        return {block.begin(), block.end()};
    }
    // All that is left.
    std::vector<std::byte> AllBytes()
    {
        std::vector<std::byte> all;
        for (auto block = NextBytes(); !block.empty(); block = NextBytes())
            all.insert(all.end(), block.begin(), block.end());
        return all;
    }
    std::int64_t Frames()
    {
        return static_cast<std::int64_t>(AllBytes().size() / StereoFrameSize(m_stream->Kind()));
    }
    std::vector<float> Shorts()
    {
        const std::vector<std::byte> bytes = AllBytes();
        std::vector<float> samples;
        for (std::size_t i = 0; i < bytes.size(); i += 2) {
            std::int16_t sample = 0;
            std::memcpy(&sample, bytes.data() + i, 2);
            samples.push_back(static_cast<float>(sample) / 32768.0F);
        }
        return samples;
    }

private:
    WorkLimit m_limit;
    WatchedBytes m_bytes;
    std::unique_ptr<DecodedStream> m_stream;
};

TEST(DecodedStream, EverySampleOfAPlainSoundComesOnce)
{
    const Pcm pcm = MakeTicks(kRate, 2, 5000);
    Decoded wav(WavImage(pcm));
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->SampleRate(), kRate);
    EXPECT_EQ(wav->Kind(), SampleKind::Int16);
    EXPECT_EQ(wav.Shorts(), StereoFloats(pcm));
    EXPECT_TRUE(wav->NextBlock().empty()); // and no more
}

TEST(DecodedStream, RatesFromOneThousandToThreeQuartersOfAMillionAreSounds)
{
    for (const int rate : {999, 768001})
        EXPECT_FALSE(Decoded(WavImage(MakeTicks(rate, 2, 5000)))) << rate;
    for (const auto& [rate, as] : {std::pair(1000, 8000), std::pair(8000, 8000),
                                   std::pair(192000, 192000), std::pair(768000, 192000)}) {
        Decoded sound(WavImage(MakeTicks(rate, 2, 2000)));
        ASSERT_TRUE(sound) << rate;
        EXPECT_EQ(sound->SampleRate(), as);
        EXPECT_EQ(sound.Frames(), std::int64_t{2000} * as / rate);
    }
}

// The format tag of a WAV image.
Bytes WithTag(Bytes wav, int tag)
{
    wav[20] = static_cast<std::uint8_t>(tag & 0xFF);
    wav[21] = static_cast<std::uint8_t>(tag >> 8);
    return wav;
}

TEST(DecodedStream, ACodingThatNobodyKnowsOrNoSoundNeedsIsNone)
{
    const Bytes wav = WavImage(MakeTicks(kRate, 2, 5000));
    EXPECT_TRUE(Decoded(WithTag(wav, 0x0001)));
    EXPECT_FALSE(Decoded(WithTag(wav, 0x4321)));
    EXPECT_FALSE(Decoded(WithTag(wav, 0x0200))); // of a sound card, long ago
}

TEST(DecodedStream, OnlyWhatIsDeeperAndLosslessIsKeptAsFloats)
{
    const Pcm pcm = MakeTicks(kRate, 2, 5000);
    const auto kind = [&](const char* command, const char* name) {
        const Decoded sound(Encoded(pcm, command, name));
        EXPECT_TRUE(sound) << command;
        return sound ? sound->Kind() : SampleKind::Int16;
    };
    EXPECT_EQ(kind("ffmpeg -y -v error -i in.wav -c:a pcm_u8", "a.wav"), SampleKind::Int16);
    EXPECT_EQ(kind("ffmpeg -y -v error -i in.wav -c:a pcm_s24le", "b.wav"), SampleKind::Float);
    EXPECT_EQ(kind("ffmpeg -y -v error -i in.wav -c:a pcm_f32le", "c.wav"), SampleKind::Float);
    EXPECT_EQ(kind("ffmpeg -y -v error -i in.wav -c:a alac", "a.mp4"), SampleKind::Int16);
    EXPECT_EQ(kind("flac -s -f in.wav -o", "a.flac"), SampleKind::Int16);
    EXPECT_EQ(kind("ffmpeg -y -v error -i in.wav -sample_fmt s32 -c:a flac", "b.flac"),
              SampleKind::Float);
    // Decoded to floats, but what they are made of had no such depth.
    EXPECT_EQ(kind("oggenc -Q in.wav -o", "a.ogg"), SampleKind::Int16);
    EXPECT_EQ(Decoded(ItImage())->Kind(), SampleKind::Int16);
}

TEST(DecodedStream, WindowsMediaStartsWithWhatItsDecoderSwallows)
{
    for (const auto& [codec, rate] :
         {std::pair("wmav2", 44100), std::pair("wmav2", 32000), std::pair("wmav2", 22050),
          std::pair("wmav2", 16000), std::pair("wmav1", 44100), std::pair("wmav1", 32000),
          std::pair("wmav1", 22050), std::pair("wmav1", 16000)}) {
        const std::string command = std::string("ffmpeg -y -v error -i in.wav -c:a ") + codec;
        Decoded wma(Encoded(MakeTicks(rate, 1, 2 * rate), command.c_str(), "a.wma"));
        ASSERT_TRUE(wma) << codec << rate;
        const std::vector<float> heard = wma.Shorts();
        EXPECT_NEAR(BurstDelayFrames(heard, rate, 1), 0, 2) << codec << rate;
    }
}

// It keeps its blocks whole: what was cut off is still in the file, at both ends.
TEST(DecodedStream, ACutMusepackIsHeardFromWhereToWhereItWasCut)
{
    const SoundFolder folder;
    const Pcm pcm = MakeTicks(kRate, 2, 6 * kRate);
    const auto made = [&](const char* command, const char* name) {
        return folder.Encode(pcm, QString::fromLatin1(command).split(u' '),
                             QString::fromLatin1(name));
    };
    Decoded whole(ReadFile(made("mpcenc --silent in.wav", "whole.mpc")));
    ASSERT_TRUE(whole);
    const std::vector<float> all = whole.Shorts();
    ASSERT_EQ(all.size(), pcm.samples.size());
    const QString cut = made("mpccut -s 50000 -e 150000 whole.mpc", "cut.mpc");
    EXPECT_EQ(SoundDecoder::FileDurationMs(cut), 2268);
    const Bytes bytes = ReadFile(cut);
    Decoded part(bytes);
    ASSERT_TRUE(part);
    const std::vector<float> heard = part.Shorts();
    ASSERT_EQ(heard.size(), 200'000U);
    EXPECT_TRUE(std::equal(heard.begin(), heard.end(), all.begin() + 100'000));

    // Where the file breaks off, the header is wrong.
    Decoded broken(Bytes(bytes.begin(), bytes.begin() + std::ssize(bytes) / 3));
    ASSERT_TRUE(broken);
    const std::vector<float> start = broken.Shorts();
    EXPECT_LT(start.size(), 100'000U);
    EXPECT_GT(start.size(), 10'000U);
    EXPECT_TRUE(std::equal(start.begin(), start.end() - 10'000, all.begin() + 100'000));
}

TEST(DecodedStream, AModuleEndsAtItsClaimAndNotWhereItsRenderingDoes)
{
    Decoded module(XmImage());
    ASSERT_TRUE(module);
    EXPECT_EQ(module.Frames(), std::int64_t{kModuleLengthMs} * module->SampleRate() / 1000);
    EXPECT_TRUE(module->NextBlock().empty());
}

// With another length in the header, in milliseconds.
Bytes ClaimingMs(Bytes wma, std::int64_t claimedMs)
{
    // Where the properties of the file begin; the length, in units of 100 ns, counts the preroll.
    constexpr std::string_view kMark = "\xA1\xDC\xAB\x8C\x47\xA9\xCF\x11";
    const std::string_view text(reinterpret_cast<const char*>(wma.data()), wma.size());
    const std::size_t properties = text.find(kMark);
    EXPECT_NE(properties, std::string_view::npos);
    std::int64_t prerollMs = 0;
    std::memcpy(&prerollMs, wma.data() + properties + 80, sizeof(prerollMs));
    const std::int64_t length = (claimedMs + prerollMs) * 10000;
    std::memcpy(wma.data() + properties + 64, &length, sizeof(length));
    return wma;
}

TEST(DecodedStream, AClaimIsKeptAsLongAsThePacketsBearItOut)
{
    const Bytes wma =
        Encoded(MakeTicks(kRate, 2, 5 * kRate), "ffmpeg -y -v error -i in.wav -c:a wmav2", "a.wma");
    Decoded whole(wma);
    ASSERT_TRUE(whole);
    const std::vector<float> all = whole.Shorts();
    EXPECT_NEAR(static_cast<double>(all.size()), 2.0 * 5 * kRate, 0.1 * kRate);
    const auto withClaim = [&](std::int64_t claimedMs) {
        Decoded sound(ClaimingMs(wma, claimedMs));
        EXPECT_TRUE(sound);
        return sound ? sound.Shorts() : std::vector<float>();
    };
    // What no packet holds is silence.
    const std::vector<float> longer = withClaim(5500);
    EXPECT_EQ(longer.size(), std::size_t{kRate} * 11);
    EXPECT_TRUE(std::equal(all.begin(), all.begin() + 10 * kRate - 10000, longer.begin()));
    EXPECT_TRUE(std::all_of(longer.begin() + 10 * kRate + 10000, longer.end(),
                            [](float sample) { return sample == 0.0F; }));
    // Much longer, or much shorter, it is wrong.
    const std::vector<float> muchLonger = withClaim(7000);
    const std::vector<float> muchShorter = withClaim(2000);
    EXPECT_EQ(muchLonger, muchShorter);
    EXPECT_NEAR(static_cast<double>(muchLonger.size()), 10.0 * kRate, 0.1 * kRate);
    EXPECT_TRUE(std::equal(all.begin(), all.begin() + 10 * kRate - 10000, muchLonger.begin()));
    // A little shorter it is cut off.
    const std::vector<float> shorter = withClaim(4500);
    EXPECT_EQ(shorter.size(), std::size_t{kRate} * 9);
    EXPECT_TRUE(std::equal(shorter.begin(), shorter.end(), all.begin()));
}

TEST(DecodedStream, PacketsThatDoNotDecodeAreSilenceInTheirPlace)
{
    const Pcm pcm = MakeTicks(kRate, 2, 2 * kRate);
    const Bytes flac = Encoded(pcm, "flac -s -f -b 4096 in.wav -o", "a.flac");
    // Where each coded block begins, by the mark of a block of 4096 frames.
    std::vector<std::size_t> blocks;
    for (std::size_t i = 42; i + 3 < flac.size(); ++i) {
        if (flac[i] == 0xFF && flac[i + 1] == 0xF8 && flac[i + 2] == 0xC9)
            blocks.push_back(i);
    }
    ASSERT_EQ(blocks.size(), 21U); // and the shorter last
    std::vector<float> expected = StereoFloats(pcm);
    for (const std::size_t block : {std::size_t{0}, std::size_t{9}}) {
        Bytes damaged = flac;
        // A kind of coding that there is not, in each of its channels.
        damaged[blocks[block] + 6] = 0x7E;
        Decoded sound(damaged);
        ASSERT_TRUE(sound) << block;
        const std::vector<float> heard = sound.Shorts();
        ASSERT_EQ(heard.size(), expected.size()) << block;
        const auto from = static_cast<std::ptrdiff_t>(block * 4096 * 2);
        EXPECT_TRUE(std::equal(heard.begin(), heard.begin() + from, expected.begin()));
        EXPECT_EQ(heard[static_cast<std::size_t>(from) + 100], 0.0F);
        EXPECT_TRUE(
            std::equal(heard.begin() + from + 8192, heard.end(), expected.begin() + from + 8192))
            << block;
    }
}

TEST(DecodedStream, HaltedItEndsWithoutPromises)
{
    // The claim would be filled up with silence at the end, but this is not the end.
    Decoded module(ModImage());
    ASSERT_TRUE(module);
    EXPECT_FALSE(module.NextBytes().empty());
    module.TheLimit().Stop();
    EXPECT_TRUE(module.NextBytes().empty());
    EXPECT_TRUE(module.NextBytes().empty());
}

} // namespace
} // namespace lantern
