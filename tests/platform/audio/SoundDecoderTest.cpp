// SPDX-License-Identifier: GPL-3.0-or-later
#include "DecodedSound.h"
#include "Encodings.h"
#include "TestSounds.h"

#include <cmath>
#include <map>
#include <random>
#include <string>
#include <sys/mman.h>

namespace lantern {
namespace {

// Each sound is encoded once for all tests of it.
class EncodedSound : public ::testing::TestWithParam<Encoding> {
protected:
    void SetUp() override
    {
        const Encoding& encoding = GetParam();
        // A length that is no multiple of any codec's frame.
        m_pcm = MakeTicks(encoding.sampleRate, encoding.channels, encoding.sampleRate * 4 + 777);
        const auto [folder, isNew] = s_folders.try_emplace(encoding.name);
        m_path = isNew ? folder->second.Encode(m_pcm, encoding.command, encoding.file)
                       : folder->second.Path(encoding.file);
    }
    static void TearDownTestSuite() { s_folders.clear(); }

    static inline std::map<std::string, SoundFolder> s_folders;
    Pcm m_pcm;
    QString m_path;
};

TEST_P(EncodedSound, LengthIsExactAtOnceAndEveryFrameAtItsPlace)
{
    const auto decoder = SoundDecoder::OpenFile(m_path);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->SampleRate(), GetParam().sampleRate);
    const std::int64_t atOpen = decoder->FrameCount();
    WaitForEnd(*decoder);
    EXPECT_EQ(atOpen, decoder->FrameCount());
    EXPECT_EQ(SoundDecoder::FileDurationMs(m_path), ToMs(atOpen, GetParam().sampleRate));
    if (GetParam().paddingMs == 0) {
        EXPECT_LE(atOpen, m_pcm.FrameCount());
        EXPECT_GE(atOpen,
                  m_pcm.FrameCount() - (GetParam().wholeMs ? GetParam().sampleRate / 1000 : 0));
    } else {
        const int padding = GetParam().sampleRate * GetParam().paddingMs / 1000;
        EXPECT_GE(atOpen, m_pcm.FrameCount());
        EXPECT_LE(atOpen, m_pcm.FrameCount() + GetParam().delayFrames + padding);
    }

    const std::vector<float> all = ReadAll(*decoder);
    if (GetParam().lossless) {
        EXPECT_TRUE(all == StereoFloats(m_pcm));
        return;
    }
    for (const int second : {1, 2, 3})
        EXPECT_NEAR(BurstDelayFrames(all, GetParam().sampleRate, second), GetParam().delayFrames, 2)
            << second;
}

TEST_P(EncodedSound, AnyReadOfFileOrMemoryGivesTheSame)
{
    const Bytes image = ReadFile(m_path);
    const auto fromFile = SoundDecoder::OpenFile(m_path);
    const auto fromMemory = SoundDecoder::OpenMemory(image);
    ASSERT_TRUE(fromFile && fromMemory);
    EXPECT_EQ(fromMemory->FrameCount(), fromFile->FrameCount());
    const std::vector<float> all = ReadAll(*fromFile);
    EXPECT_TRUE(ReadAll(*fromMemory) == all);

    const std::int64_t total = fromFile->FrameCount();
    std::mt19937 random(5);
    std::vector<float> part;
    for (int round = 0; round < 200; ++round) {
        const auto first = static_cast<std::int64_t>(random()) % (total + 1000);
        part.assign(2 * (1 + random() % 3000), -9.0F);
        const SoundDecoder::Chunk chunk = fromFile->Read(first, part);
        const auto wanted = static_cast<std::int64_t>(part.size() / 2);
        ASSERT_EQ(chunk.frames, std::clamp<std::int64_t>(total - first, 0, wanted));
        ASSERT_EQ(chunk.atEnd, first + chunk.frames >= total);
        ASSERT_FALSE(chunk.notYet);
        for (std::size_t i = 0; i < 2 * static_cast<std::size_t>(chunk.frames); ++i)
            ASSERT_EQ(part[i], all[2 * static_cast<std::size_t>(first) + i]);
    }
}

INSTANTIATE_TEST_SUITE_P(Types, EncodedSound, ::testing::ValuesIn(AllEncodings()),
                         [](const auto& test) { return test.param.name; });

TEST(SoundDecoder, SoundsOfLessThanASecondAreMeasuredAsWell)
{
    const SoundFolder folder;
    const std::pair<const char*, const char*> types[] = {
        {"a.ogg", "oggenc -Q in.wav -o"},   {"b.ogg", "ffmpeg -y -v error -i in.wav -c:a libopus"},
        {"a.mp3", "lame --quiet in.wav"},   {"a.mp4", "ffmpeg -y -v error -i in.wav -c:a aac"},
        {"a.flac", "flac -s -f in.wav -o"}, {"a.mpc", "mpcenc --silent --overwrite in.wav"}};
    for (const auto& [name, command] : types) {
        for (const int lengthMs : {50, 200, 700}) {
            const QString path =
                folder.Encode(MakeTicks(48000, 2, 48 * lengthMs),
                              Words(QString::fromLatin1(command)), QString::fromLatin1(name));
            EXPECT_EQ(SoundDecoder::FileDurationMs(path), lengthMs) << name;
            const auto decoder = SoundDecoder::OpenFile(path);
            ASSERT_TRUE(decoder) << name;
            WaitForEnd(*decoder);
            EXPECT_EQ(decoder->FrameCount(), 48 * lengthMs) << name;
        }
    }
}

TEST(SoundDecoder, ModulesLastAsLongAsTheirPatterns)
{
    const SoundFolder folder;
    for (const auto& [name, image] : {std::pair(QStringLiteral("a.mod"), ModImage()),
                                      std::pair(QStringLiteral("a.xm"), XmImage()),
                                      std::pair(QStringLiteral("a.it"), ItImage())}) {
        const QString path = folder.Write(name, image);
        EXPECT_EQ(SoundDecoder::FileDurationMs(path), kModuleLengthMs) << name.toStdString();
        const auto decoder = SoundDecoder::OpenMemory(image);
        ASSERT_TRUE(decoder) << name.toStdString();
        const std::int64_t atOpen = decoder->FrameCount();
        WaitForEnd(*decoder);
        EXPECT_EQ(decoder->FrameCount(), atOpen);
        EXPECT_EQ(ToMs(atOpen, decoder->SampleRate()), kModuleLengthMs);
    }
}

TEST(SoundDecoder, MonkeysAudioLastsAsItsHeaderSays)
{
    const SoundFolder folder;
    for (const std::uint32_t wholeFrames : {0U, 1U, 5U}) {
        const Bytes image = ApeImage(wholeFrames, 12345);
        const std::int64_t frames = std::int64_t{wholeFrames} * kApeFrameLength + 12345;
        EXPECT_EQ(SoundDecoder::FileDurationMs(folder.Write(QStringLiteral("a.ape"), image)),
                  ToMs(frames, 44100));
        const auto decoder = SoundDecoder::OpenMemory(image);
        ASSERT_TRUE(decoder);
        EXPECT_EQ(decoder->FrameCount(), frames);
        const std::vector<float> all = ReadAll(*decoder);
        EXPECT_EQ(decoder->FrameCount(), frames);
        EXPECT_TRUE(all == std::vector<float>(all.size()));
    }
}

TEST(SoundDecoder, TheContentsDecideTheTypeAndNotTheName)
{
    const SoundFolder folder;
    const Pcm pcm = MakeTicks(44100, 2, 44100);
    folder.Encode(pcm,
                  {QStringLiteral("flac"), QStringLiteral("-s"), QStringLiteral("in.wav"),
                   QStringLiteral("-o")},
                  QStringLiteral("a.flac"));
    const Bytes flac = ReadFile(folder.Path(QStringLiteral("a.flac")));
    EXPECT_EQ(SoundDecoder::FileDurationMs(folder.Write(QStringLiteral("b.wav"), flac)), 1000);
    EXPECT_EQ(SoundDecoder::FileDurationMs(folder.Write(QStringLiteral("b.mod"), flac)), 1000);
    EXPECT_EQ(SoundDecoder::FileDurationMs(folder.Write(QStringLiteral("b"), WavImage(pcm))), 1000);
}

TEST(SoundDecoder, ANameThatIsNoTextIsOpened)
{
    const SoundFolder folder;
    const QString plain = folder.Write(QStringLiteral("a.wav"), WavImage(MakeTicks(8000, 1, 8000)));
    const QByteArray native = plain.toUtf8() + "\xE9\xFF.wav";
    ASSERT_EQ(rename(plain.toUtf8().constData(), native.constData()), 0);
    const QString path = plain + QChar(0xDCE9) + QChar(0xDCFF) + QStringLiteral(".wav");
    EXPECT_EQ(SoundDecoder::FileDurationMs(path), 1000);
    EXPECT_TRUE(SoundDecoder::OpenFile(path));
    EXPECT_EQ(remove(native.constData()), 0);
}

TEST(SoundDecoder, TheLengthIsRoundedToTheNearestMillisecond)
{
    const SoundFolder folder;
    const auto durationOf = [&](std::int64_t frames) {
        return SoundDecoder::FileDurationMs(
            folder.Write(QStringLiteral("a.wav"), WavImage(MakeTicks(44100, 2, frames))));
    };
    EXPECT_EQ(durationOf(588), 13); // 13.33
    EXPECT_EQ(durationOf(65), 1);   // 1.47
    EXPECT_EQ(durationOf(67), 2);   // 1.52
    EXPECT_EQ(durationOf(44), 1);   // 0.998
}

TEST(SoundDecoder, RatesOutsideTheRangeAreChangedToItsEnds)
{
    const Bytes low = WavImage(MakeTicks(4000, 2, 40000));
    const auto slow = SoundDecoder::OpenMemory(low);
    ASSERT_TRUE(slow);
    EXPECT_EQ(slow->SampleRate(), 8000);
    const std::vector<float> slowFrames = ReadAll(*slow);
    EXPECT_EQ(slow->FrameCount(), 80000);
    EXPECT_NEAR(BurstDelayFrames(slowFrames, 8000, 7), 0, 1);

    const Bytes high = WavImage(MakeTicks(384000, 1, 768000));
    const auto fast = SoundDecoder::OpenMemory(high);
    ASSERT_TRUE(fast);
    EXPECT_EQ(fast->SampleRate(), 192000);
    const std::vector<float> fastFrames = ReadAll(*fast);
    EXPECT_EQ(fast->FrameCount(), 384000);
    EXPECT_NEAR(BurstDelayFrames(fastFrames, 192000, 1), 0, 1);
}

TEST(SoundDecoder, DepthAboveSixteenBitsIsKept)
{
    const SoundFolder folder;
    const Pcm pcm = MakeTicks(44100, 2, 44100);
    // Halved, the lowest bit of 16 becomes the 17th.
    const QString path = folder.Encode(
        pcm, Ffmpeg(QStringLiteral("-af aformat=dblp,volume=0.5:precision=double -c:a pcm_s24le")),
        QStringLiteral("a.wav"));
    const auto decoder = SoundDecoder::OpenFile(path);
    ASSERT_TRUE(decoder);
    std::vector<float> expected = StereoFloats(pcm);
    for (float& sample : expected)
        sample /= 2;
    EXPECT_TRUE(ReadAll(*decoder) == expected);
}

TEST(SoundDecoder, SurroundIsMixedDownWithoutClipping)
{
    const SoundFolder folder;
    Pcm pcm{.sampleRate = 44100, .channels = 6, .samples = {}};
    pcm.samples.assign(std::size_t{44100} * 6, 32000);
    const auto decoder =
        SoundDecoder::OpenFile(folder.Write(QStringLiteral("a.wav"), WavImage(pcm)));
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->FrameCount(), 44100);
    for (const float sample : ReadAll(*decoder)) {
        ASSERT_GT(sample, 0.9F);
        ASSERT_LT(sample, 1.0F);
    }
}

TEST(SoundDecoder, ReadingAheadOfTheDecoderComesTrueInTheEnd)
{
    const SoundFolder folder;
    const Pcm pcm = MakeTicks(44100, 2, 44100 * 60);
    const QString path =
        folder.Encode(pcm, Words(QStringLiteral("flac -s -f in.wav -o")), QStringLiteral("a.flac"));
    const auto decoder = SoundDecoder::OpenFile(path);
    ASSERT_TRUE(decoder);
    std::vector<float> last(2 * 100);
    SoundDecoder::Chunk chunk;
    bool consistent = true;
    for (int i = 0; i < 60000 && !(chunk.frames == 100 && chunk.atEnd); ++i) {
        chunk = decoder->Read(pcm.FrameCount() - 100, last);
        consistent = consistent && (chunk.frames == 100 || chunk.notYet);
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    EXPECT_TRUE(consistent);
    const std::vector<float> all = StereoFloats(pcm);
    EXPECT_TRUE(std::equal(last.begin(), last.end(), all.end() - 200));
}

// An mp3 without any header that tells its length, as many times twenty seconds.
QString WriteLongMp3(const SoundFolder& folder, int times)
{
    const Bytes once = ReadFile(folder.Encode(
        MakeTicks(44100, 2, 44100 * 20), Words(QStringLiteral("lame --quiet -f -t -V 6 in.wav")),
        QStringLiteral("once.mp3")));
    Bytes all;
    for (int i = 0; i < times; ++i)
        all.insert(all.end(), once.begin(), once.end());
    return folder.Write(QStringLiteral("long.mp3"), all);
}

TEST(SoundDecoder, SoundIsThereAtOnceInALongFile)
{
    const SoundFolder folder;
    const QString path = WriteLongMp3(folder, 12);
    const auto start = std::chrono::steady_clock::now();
    const auto decoder = SoundDecoder::OpenFile(path);
    ASSERT_TRUE(decoder);
    std::vector<float> first(2 * 256);
    EXPECT_EQ(decoder->Read(0, first).frames, 256);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(250));
}

// Memory that can be made to end the program that touches it.
class ForbiddableMemory {
public:
    explicit ForbiddableMemory(const Bytes& bytes) : m_size(bytes.size())
    {
        m_start = mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        std::ranges::copy(bytes, static_cast<std::uint8_t*>(m_start));
    }
    ~ForbiddableMemory() { munmap(m_start, m_size); }
    ForbiddableMemory(const ForbiddableMemory&) = delete;
    ForbiddableMemory& operator=(const ForbiddableMemory&) = delete;

    std::span<const std::uint8_t> Image() const
    {
        return {static_cast<const std::uint8_t*>(m_start), m_size};
    }
    void Forbid() { EXPECT_EQ(mprotect(m_start, m_size, PROT_NONE), 0); }

private:
    std::size_t m_size;
    void* m_start;
};

TEST(SoundDecoder, ReleasedItTouchesTheMemoryNoMoreButKeepsWhatIsDecoded)
{
    const Pcm pcm = MakeTicks(44100, 2, 44100 * 30);
    ForbiddableMemory memory(WavImage(pcm));
    const auto decoder = SoundDecoder::OpenMemory(memory.Image());
    ASSERT_TRUE(decoder);
    decoder->Release();
    memory.Forbid();
    WaitForEnd(*decoder);
    const std::vector<float> decoded = ReadAll(*decoder);
    ASSERT_GT(decoded.size(), 1000U);
    const std::vector<float> all = StereoFloats(pcm);
    EXPECT_TRUE(std::equal(decoded.begin(), decoded.end(), all.begin()));
}

TEST(SoundDecoder, AtItsEndTheMemoryIsNotTouchedEither)
{
    ForbiddableMemory memory(WavImage(MakeTicks(44100, 2, 44100 * 30)));
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(SoundDecoder::OpenMemory(memory.Image()));
    memory.Forbid();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

} // namespace
} // namespace lantern
