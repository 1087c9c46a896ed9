// SPDX-License-Identifier: GPL-3.0-or-later
// What is read far ahead of the decode from the start is decoded first. The disk is a slow one, so
// that the start takes seconds.
#include "DecodedSound.h"
#include "Encodings.h"
#include "StallWatch.h"
#include "WatchedBytes.h"

#include <map>

namespace lantern {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::int64_t kLeapFrames = std::int64_t{kRate} * 160;
constexpr auto kSoundFollowsWithin = 500ms;

struct Kind {
    const char* name;
    const char* file;
    const char* command;
    std::chrono::milliseconds timeOfRead;
};

class FarAhead : public testing::TestWithParam<Kind> {
protected:
    void SetUp() override
    {
        const Kind& kind = GetParam();
        if (!s_images.contains(kind.name)) {
            const SoundFolder folder;
            s_images[kind.name] = ReadFile(folder.Encode(MakeTicks(kRate, 2, kLeapFrames),
                                                         Words(QString::fromLatin1(kind.command)),
                                                         QString::fromLatin1(kind.file)));
            s_sounds[kind.name] = ReadAll(*SoundDecoder::OpenMemory(s_images[kind.name]));
        }
        auto bytes = std::make_unique<WatchedBytes>(s_images[kind.name]);
        bytes->TakeForEachRead(kind.timeOfRead);
        m_decoder = SoundDecoder::Open(std::move(bytes), 0ms);
        ASSERT_TRUE(m_decoder);
    }
    static void TearDownTestSuite()
    {
        s_images.clear();
        s_sounds.clear();
    }

    // Reads as a player does, again and again until all is there or it takes too long; and all must
    // be what a decode from the start gives. How many frames there were.
    int ReadSoon(std::int64_t first, int frames)
    {
        const std::vector<float>& sound = s_sounds[GetParam().name];
        std::vector<float> read(static_cast<std::size_t>(frames) * 2);
        const auto asked = Clock::now();
        do {
            m_chunk = m_decoder->Read(first, read);
            if (m_chunk.frames == frames || m_chunk.atEnd)
                break;
            std::this_thread::sleep_for(1ms);
        } while (CalmSince(asked) < kSoundFollowsWithin);
        const auto got = static_cast<std::size_t>(m_chunk.frames) * 2;
        EXPECT_TRUE(std::equal(read.begin(), read.begin() + static_cast<std::ptrdiff_t>(got),
                               sound.begin() + first * 2));
        return m_chunk.frames;
    }

    // Without what the machine stood still.
    Clock::duration CalmSince(test::Moment moment) const
    {
        const test::Moment now = Clock::now();
        return now - moment - m_stalls.NearStalls(moment, now, 0ms);
    }

    static inline std::map<std::string, Bytes> s_images;
    static inline std::map<std::string, std::vector<float>> s_sounds;
    std::unique_ptr<SoundDecoder> m_decoder;
    SoundDecoder::Chunk m_chunk;
    const test::StallWatch m_stalls;
};

TEST_P(FarAhead, TheSoundIsThereWithinHalfASecond)
{
    EXPECT_EQ(ReadSoon(kLeapFrames * 3 / 4, kRate / 10), kRate / 10);
    EXPECT_FALSE(m_decoder->DecodedToEnd());
    EXPECT_EQ(ReadSoon(kLeapFrames / 2, kRate / 10), kRate / 10) << "back";
    EXPECT_EQ(ReadSoon(100, kRate / 10), kRate / 10) << "at the start";
    EXPECT_EQ(ReadSoon(kLeapFrames * 7 / 8, kRate / 10), kRate / 10) << "and on";
    EXPECT_FALSE(m_decoder->DecodedToEnd());
}

TEST_P(FarAhead, ItGoesOnFrameForFrameUntilTheStartHasCaughtUpAndToTheEnd)
{
    constexpr int kPiece = 8820;
    std::int64_t frame = kLeapFrames / 2 + 123;
    bool wasAhead = false;
    for (; frame < kLeapFrames; frame += kPiece) {
        const int frames = static_cast<int>(std::min<std::int64_t>(kPiece, kLeapFrames - frame));
        ASSERT_EQ(ReadSoon(frame, frames), frames) << frame;
        wasAhead = wasAhead || !m_decoder->DecodedToEnd();
        std::this_thread::sleep_for(5ms);
    }
    EXPECT_TRUE(wasAhead);
    EXPECT_EQ(ReadSoon(kLeapFrames, 1), 0);
    EXPECT_TRUE(m_chunk.atEnd);
    WaitForEnd(*m_decoder);
    EXPECT_TRUE(ReadAll(*m_decoder) == s_sounds[GetParam().name]);
}

TEST_P(FarAhead, TheEndIsToldBeforeTheStartHasCaughtUp)
{
    EXPECT_EQ(ReadSoon(kLeapFrames - 1000, 2000), 1000);
    EXPECT_TRUE(m_chunk.atEnd);
    EXPECT_FALSE(m_chunk.notYet);
    EXPECT_FALSE(m_decoder->DecodedToEnd());
    EXPECT_EQ(ReadSoon(kLeapFrames + 1000, 2000), 0);
}

TEST_P(FarAhead, ReleasedAheadItDecodesNoFurtherAndTellsNoWrongEnd)
{
    EXPECT_EQ(ReadSoon(kLeapFrames * 3 / 4, 1000), 1000);
    m_decoder->Release();
    WaitForEnd(*m_decoder);
    EXPECT_LT(m_decoder->FrameCount(), kLeapFrames / 2);
    EXPECT_EQ(ReadSoon(kLeapFrames * 7 / 8, 1000), 0);
    EXPECT_TRUE(m_chunk.atEnd) << "what has been decoded so far is all there is";
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, FarAhead,
    testing::Values(Kind{"Wav", "a.wav", "ffmpeg -y -v error -i in.wav -c:a pcm_s16le", 6ms},
                    Kind{"Flac", "a.flac", "flac -s -f in.wav -o", 6ms},
                    Kind{"Alac", "a.mp4", "ffmpeg -y -v error -i in.wav -c:a alac", 8ms},
                    Kind{"Ogg", "a.ogg", "oggenc -Q -q 10 in.wav -o", 6ms},
                    // Without the noise that its decoder makes up.
                    Kind{"Aac", "a.mp4",
                         "ffmpeg -y -v error -i in.wav -c:a aac -aac_pns 0 -b:a 256k", 20ms}),
    [](const auto& test) { return std::string(test.param.name); });

// The frames of what can't be entered in the middle come from the start on, as they did.
TEST(NeverAhead, AKindThatCanNotBeSoughtComesTrueInTheEnd)
{
    const SoundFolder folder;
    const QString path =
        folder.Encode(MakeTicks(kRate, 2, kLeapFrames / 8),
                      Words(QStringLiteral("ffmpeg -y -v error -i in.wav -c:a wmav2 -b:a 128k")),
                      QStringLiteral("a.wma"));
    const std::vector<float> sound = ReadAll(*SoundDecoder::OpenFile(path));
    auto bytes = std::make_unique<WatchedBytes>(ReadFile(path));
    bytes->TakeForEachRead(40ms);
    const auto decoder = SoundDecoder::Open(std::move(bytes), 0ms);
    ASSERT_TRUE(decoder);
    std::vector<float> read(2000);
    const std::int64_t first = kLeapFrames / 8 - 2000;
    const auto asked = Clock::now();
    while (decoder->Read(first, read).frames < 1000 && Clock::now() - asked < 10s)
        std::this_thread::sleep_for(1ms);
    EXPECT_TRUE(std::equal(read.begin(), read.end(), sound.begin() + first * 2));
    EXPECT_TRUE(ReadAll(*decoder) == sound);
}

} // namespace
} // namespace lantern
