// SPDX-License-Identifier: GPL-3.0-or-later
#include "DecodedSound.h"
#include "Encodings.h"
#include "DecodedStream.h"
#include "TestSounds.h"
#include "WatchedBytes.h"

#include <QDir>
#include <QFile>

#include <random>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

using std::chrono::milliseconds;

Bytes TextBytes(std::string_view text)
{
    return {text.begin(), text.end()};
}

Bytes Noise(std::size_t size, unsigned seed)
{
    std::mt19937 random(seed);
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

class BadInput : public ::testing::Test {
protected:
    // No sound by any of the ways in, and soon.
    void ExpectNoSound(const QString& path)
    {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(SoundDecoder::FileDurationMs(path), 0) << path.toStdString();
        EXPECT_EQ(SoundDecoder::OpenFile(path), nullptr) << path.toStdString();
        EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(2000));
    }
    void ExpectNoSound(const QString& name, const Bytes& bytes)
    {
        ExpectNoSound(m_folder.Write(name, bytes));
        EXPECT_EQ(SoundDecoder::OpenMemory(bytes), nullptr);
    }
    // Whatever it is, it comes to an end, and its length is what plays.
    void ExpectConsistent(const QString& name, const Bytes& bytes)
    {
        const QString path = m_folder.Write(name, bytes);
        const std::int32_t duration = SoundDecoder::FileDurationMs(path);
        const auto decoder = SoundDecoder::OpenFile(path);
        ASSERT_EQ(decoder != nullptr, duration > 0) << name.toStdString();
        if (!decoder)
            return;
        WaitForEnd(*decoder);
        EXPECT_EQ(ToMs(decoder->FrameCount(), decoder->SampleRate()), duration)
            << name.toStdString();
    }

    SoundFolder m_folder;
};

TEST_F(BadInput, WhatIsNoRegularFileIsNoSound)
{
    const QString fifo = m_folder.Path(QStringLiteral("fifo.mp3"));
    ASSERT_EQ(mkfifo(fifo.toUtf8().constData(), 0600), 0);
    ExpectNoSound(fifo);
    ASSERT_TRUE(QDir().mkdir(m_folder.Path(QStringLiteral("folder.mp3"))));
    ExpectNoSound(m_folder.Path(QStringLiteral("folder.mp3")));
    ExpectNoSound(QStringLiteral("/dev/zero"));
    ExpectNoSound(QStringLiteral("/dev/null"));
    ExpectNoSound(m_folder.Path(QStringLiteral("none.mp3")));
    ExpectNoSound(QString());
    const QString loop = m_folder.Path(QStringLiteral("loop.mp3"));
    ASSERT_EQ(symlink(loop.toUtf8().constData(), loop.toUtf8().constData()), 0);
    ExpectNoSound(loop);
}

TEST_F(BadInput, ANameWithAZeroIsNotCutShort)
{
    const QString path =
        m_folder.Write(QStringLiteral("a.wav"), WavImage(MakeTicks(8000, 1, 8000)));
    ASSERT_EQ(SoundDecoder::FileDurationMs(path), 1000);
    ExpectNoSound(path + QChar(u'\0') + QStringLiteral(".mp3"));
}

TEST_F(BadInput, AFileThatMayNotBeReadIsNoSound)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "The administrator may read every file.";
    const QString path =
        m_folder.Write(QStringLiteral("a.wav"), WavImage(MakeTicks(8000, 1, 8000)));
    ASSERT_EQ(chmod(path.toUtf8().constData(), 0), 0);
    ExpectNoSound(path);
}

TEST_F(BadInput, BytesThatHoldNoSoundAreNoSound)
{
    ExpectNoSound(QStringLiteral("empty.mp3"), {});
    ExpectNoSound(QStringLiteral("byte.mp3"), {0xFF});
    ExpectNoSound(QStringLiteral("text.mp3"), TextBytes("Never gonna sing this one.\n"));
    ExpectNoSound(QStringLiteral("zeros.wav"), Bytes(100000));
    ExpectNoSound(QStringLiteral("ones.mp3"), Bytes(100000, 0xFF));
    for (const unsigned seed : {1U, 2U, 3U})
        ExpectNoSound(QStringLiteral("noise.mp3"), Noise(200000, seed));
    const Bytes wav = WavImage(MakeTicks(44100, 2, 0));
    ExpectNoSound(QStringLiteral("nothing.wav"), wav);
}

TEST_F(BadInput, WhatRefersToASoundIsNoSound)
{
    const QString sound =
        m_folder.Write(QStringLiteral("sound.wav"), WavImage(MakeTicks(8000, 1, 8000)));
    const std::string target = sound.toStdString();
    ExpectNoSound(QStringLiteral("a.mp3"), TextBytes("#EXTM3U\n#EXT-X-VERSION:3\n"
                                                     "#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n" +
                                                     target + "\n#EXT-X-ENDLIST\n"));
    ExpectNoSound(QStringLiteral("b.mp3"),
                  TextBytes("ffconcat version 1.0\nfile '" + target + "'\n"));
    ExpectNoSound(QStringLiteral("c.mp3"), TextBytes("v=0\r\no=- 0 0 IN IP4 127.0.0.1\r\ns=x\r\n"
                                                     "c=IN IP4 127.0.0.1\r\nt=0 0\r\n"
                                                     "m=audio 5004 RTP/AVP 0\r\n"));
    ExpectNoSound(QStringLiteral("d.mp3"), TextBytes("file:" + target));
}

TEST_F(BadInput, PicturesAndFilmsWithoutSoundAreNoSound)
{
    const Pcm unused = MakeTicks(8000, 1, 8000);
    const QString film =
        QStringLiteral("ffmpeg -y -v error -f lavfi -i testsrc=d=1:s=64x64 -c:v mpeg4 -f mp4");
    ExpectNoSound(m_folder.Encode(unused, Words(film), QStringLiteral("film.mp4")));
    const QString picture =
        QStringLiteral("ffmpeg -y -v error -f lavfi -i testsrc=d=1:s=64x64 -frames:v 1");
    ExpectNoSound(m_folder.Encode(unused, Words(picture), QStringLiteral("picture.png")));
}

TEST_F(BadInput, RatesAndChannelsThatNoSoundHasAreNoSound)
{
    ExpectNoSound(QStringLiteral("slow.wav"), WavImage(MakeTicks(500, 2, 5000)));
    ExpectNoSound(QStringLiteral("fast.wav"), WavImage(MakeTicks(2000000, 2, 5000)));
    ExpectNoSound(QStringLiteral("many.wav"), WavImage(MakeTicks(44100, 64, 5000)));
    Bytes noRate = WavImage(MakeTicks(44100, 2, 5000));
    for (const std::size_t offset : {24U, 25U, 26U, 27U})
        noRate[offset] = 0xFF;
    ExpectNoSound(QStringLiteral("negative.wav"), noRate);
}

TEST_F(BadInput, SizesThatAreClaimedAndNotThereCountForNothing)
{
    const Pcm pcm = MakeTicks(44100, 2, 44100);
    Bytes wav = WavImage(pcm);
    for (const std::size_t offset : {4U, 5U, 6U, 40U, 41U, 42U})
        wav[offset] = 0xFF;
    wav[7] = 0x7F;
    wav[43] = 0x7F;
    const QString path = m_folder.Write(QStringLiteral("claims.wav"), wav);
    EXPECT_EQ(SoundDecoder::FileDurationMs(path), 1000);
    const auto decoder = SoundDecoder::OpenFile(path);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(ReadAll(*decoder).size(), pcm.samples.size());

    ExpectConsistent(QStringLiteral("frames.ape"), [] {
        Bytes ape = ApeImage(3, 1000);
        ape[52 + 15] = 0x0F; // 250 million frames
        return ape;
    }());
}

TEST_F(BadInput, AFileThatWasCutOffLastsAsLongAsItPlays)
{
    struct Source {
        const char* name;
        const char* command;
    };
    const Pcm pcm = MakeTicks(44100, 2, 44100 * 3 + 777);
    for (const Source& source :
         {Source{"a.wav", "ffmpeg -y -v error -i in.wav"},
          Source{"a.aif", "ffmpeg -y -v error -i in.wav"},
          Source{"a.au", "ffmpeg -y -v error -i in.wav"},
          Source{"a.mp3", "lame --quiet -V 4 in.wav"},
          Source{"a.aac", "ffmpeg -y -v error -i in.wav"}, Source{"a.ogg", "oggenc -Q in.wav -o"},
          Source{"b.ogg", "ffmpeg -y -v error -i in.wav -c:a libopus"},
          Source{"a.flac", "flac -s -f in.wav -o"},
          Source{"a.mpc", "mpcenc --silent --overwrite in.wav"},
          Source{"a.wma", "ffmpeg -y -v error -i in.wav -c:a wmav2"},
          Source{"a.mp4", "ffmpeg -y -v error -i in.wav -c:a aac"},
          Source{"b.mp4", "ffmpeg -y -v error -i in.wav -c:a alac "
                          "-movflags +faststart"}}) {
        const QString name = QString::fromLatin1(source.name);
        const Bytes whole =
            ReadFile(m_folder.Encode(pcm, Words(QString::fromLatin1(source.command)), name));
        for (const std::size_t part : {1U, 10U, 50U, 90U, 99U}) {
            const auto size = static_cast<std::ptrdiff_t>(whole.size() * part / 100);
            ExpectConsistent(name, Bytes(whole.begin(), whole.begin() + size));
        }
        ExpectConsistent(name, Bytes(whole.begin(), whole.end() - 1));
    }
    const Bytes ape = ApeImage(5, 1000);
    for (std::size_t size = 0; size < ape.size(); size += 7)
        ExpectConsistent(QStringLiteral("a.ape"),
                         Bytes(ape.begin(), ape.begin() + static_cast<std::ptrdiff_t>(size)));
}

TEST_F(BadInput, DamageInTheMiddleKeepsWhatFollowsInItsPlace)
{
    const Pcm pcm = MakeTicks(44100, 2, 44100 * 6);
    for (const auto& [name, command] : {std::pair("a.mp3", "lame --quiet -b 128 in.wav"),
                                        std::pair("a.flac", "flac -s -f in.wav -o")}) {
        const QString path =
            m_folder.Encode(pcm, Words(QString::fromLatin1(command)), QString::fromLatin1(name));
        Bytes bytes = ReadFile(path);
        const Bytes damage = Noise(200, 4);
        std::copy(damage.begin(), damage.end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() / 3));
        const auto decoder = SoundDecoder::OpenMemory(bytes);
        ASSERT_TRUE(decoder);
        const std::vector<float> all = ReadAll(*decoder);
        EXPECT_NEAR(BurstDelayFrames(all, 44100, 1), 0, 2) << name;
        EXPECT_NEAR(BurstDelayFrames(all, 44100, 4), 0, 2) << name;
        EXPECT_NEAR(static_cast<double>(decoder->FrameCount()), 44100.0 * 6, 2) << name;
    }
}

TEST_F(BadInput, AFileThatShrinksWhileItIsReadEndsEarly)
{
    const Bytes wav = WavImage(MakeTicks(44100, 2, 44100 * 120));
    const QString path = m_folder.Write(QStringLiteral("a.wav"), wav);
    const auto decoder = SoundDecoder::OpenFile(path);
    ASSERT_TRUE(decoder);
    ASSERT_TRUE(QFile::resize(path, 100000));
    WaitForEnd(*decoder);
    EXPECT_GT(decoder->FrameCount(), 0);
    EXPECT_LE(decoder->FrameCount(), 44100 * 120);
}

// It plays no note, but its 128 positions take two and a half minutes each.
TEST_F(BadInput, AModuleOfManyHoursIsKeptForOneAndAHalf)
{
    Bytes mod = ModImage();
    const std::size_t positions = 20 + 31 * 30;
    const std::size_t pattern = mod.size() - 64 * 4 * 4;
    mod[positions] = 128;
    mod[pattern + 2] = 0x0F; // ticks a row
    mod[pattern + 3] = 31;
    mod[pattern + 6] = 0x0F; // the tempo, in beats a minute
    mod[pattern + 7] = 32;
    const auto decoder = SoundDecoder::OpenMemory(mod);
    ASSERT_TRUE(decoder);
    const double seconds = static_cast<double>(decoder->FrameCount()) / decoder->SampleRate();
    EXPECT_GT(seconds, 4000.0);
    EXPECT_LT(seconds, 6000.0);
    const QString path = m_folder.Write(QStringLiteral("a.mod"), mod);
    EXPECT_NEAR(SoundDecoder::FileDurationMs(path), seconds * 1000.0, 1.0);
}

TEST_F(BadInput, AnEndlessTailOfNothingIsNotTakenIntoMemory)
{
    const std::pair<QString, QString> kinds[] = {
        {QStringLiteral("a.flac"), QStringLiteral("flac -s -f in.wav -o")},
        {QStringLiteral("a.mp3"), QStringLiteral("lame --quiet in.wav")}};
    for (const auto& [name, command] : kinds) {
        Bytes bytes =
            ReadFile(m_folder.Encode(MakeTicks(44100, 2, 44100 * 10), Words(command), name));
        const std::size_t size = bytes.size();
        bytes.resize(size + (std::size_t{60} << 20));
        const WatchedBytes watched(std::move(bytes));
        const WorkLimit limit;
        const auto stream = DecodedStream::Open(watched, limit);
        ASSERT_TRUE(stream);
        std::size_t decoded = 0;
        for (auto block = stream->NextBlock(); !block.empty(); block = stream->NextBlock())
            decoded += block.size();
        const auto frames = static_cast<double>(decoded / StereoFrameSize(stream->Kind()));
        EXPECT_NEAR(frames, 44100 * 10, 2000) << name.toStdString();
        EXPECT_LT(watched.BytesRead(), size + (std::size_t{20} << 20)) << name.toStdString();
    }
}

TEST_F(BadInput, DaysOfSoundAreMeasuredAtOnceAndCutOffAtTheLimit)
{
    Bytes header = WavImage(MakeTicks(8000, 1, 16));
    for (const std::size_t offset : {4U, 5U, 6U, 7U, 40U, 41U, 42U, 43U})
        header[offset] = 0xFF; // the size that a stream without an end states
    const QString path = m_folder.Write(QStringLiteral("a.wav"), header);
    // A hole of 20 GB, 15 days of sound: it takes no place.
    if (!QFile::resize(path, qint64{20} << 30))
        GTEST_SKIP() << "No sparse files here.";
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(SoundDecoder::FileDurationMs(path), 24 * 60 * 60 * 1000);
    const auto decoder = SoundDecoder::OpenFile(path);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->FrameCount(), std::int64_t{24} * 60 * 60 * 8000);
    EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(1500));
}

} // namespace
} // namespace lantern
