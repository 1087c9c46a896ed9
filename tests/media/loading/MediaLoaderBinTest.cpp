// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaLoaderFixture.h"

#include "Rounding.h"
#include "SoundDecoder.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace lantern {
namespace {

using ::testing::Each;

constexpr std::size_t kSectorBytes = 2448;
constexpr std::size_t kAudioBytes = 2352;

// Never zero, so that what was not copied shows.
std::uint8_t ByteAt(std::size_t offset)
{
    return static_cast<std::uint8_t>(1 + offset % 251);
}

class MediaLoaderBinTest : public MediaLoaderFixture {
protected:
    QString MakeBin(std::size_t size)
    {
        std::string bytes;
        for (std::size_t i = 0; i < size; ++i)
            bytes += static_cast<char>(ByteAt(i));
        return Make("a.bin", bytes);
    }
    const AudioClip& Clip() const { return m_track.ClipList[1]; }
    // The whole sectors of the file, sorted into sound and packets.
    void ExpectSectors(std::size_t count) const
    {
        int wrong = 0;
        for (std::size_t i = 0; i < count * kSectorBytes; ++i) {
            const std::size_t sector = i / kSectorBytes;
            const std::size_t at = i % kSectorBytes;
            const std::uint8_t byte =
                at < kAudioBytes ? Clip().Data.Bytes()[kWavHeaderSize + sector * kAudioBytes + at]
                                 : PacketByte(sector * 4 * kPacketSize + at - kAudioBytes);
            wrong += byte == ByteAt(i) ? 0 : 1;
        }
        EXPECT_EQ(wrong, 0);
    }
    std::uint8_t PacketByte(std::size_t offset) const
    {
        const auto number = static_cast<PacketIndex>(offset / kPacketSize) + 1;
        const CdgPacket& packet = m_track.PacketStore[number];
        return reinterpret_cast<const std::uint8_t*>(&packet)[offset % kPacketSize];
    }
    std::vector<std::uint8_t> AudioFrom(std::size_t offset) const
    {
        const auto start = static_cast<std::ptrdiff_t>(kWavHeaderSize + offset);
        return {Clip().Data.Bytes().begin() + start, Clip().Data.Bytes().end()};
    }
};

TEST_F(MediaLoaderBinTest, OneSectorIsAClipAndFourPackets)
{
    EXPECT_EQ(m_loader.AddMedia(MakeBin(kSectorBytes)), QString());
    ASSERT_EQ(m_track.ClipCount(), 1);
    EXPECT_EQ(Clip().Kind, ClipKind::Data);
    EXPECT_EQ(Clip().Path, QString());
    EXPECT_EQ(Clip().LengthMs, 13);
    EXPECT_EQ(Clip().StartMs, 0);
    EXPECT_EQ(Clip().Data.Bytes().size(), 2398U);
    const auto header = WavHeader(kAudioBytes);
    EXPECT_TRUE(std::equal(header.begin(), header.end(), Clip().Data.Bytes().begin()));
    EXPECT_EQ(m_track.PacketCount(), 4);
    EXPECT_EQ(m_track.TotalLengthMs, 13);
    ExpectSectors(1);
    EXPECT_TRUE(m_loader.FileBuffer().empty());
}

TEST_F(MediaLoaderBinTest, ASecondIsSeventyFiveSectors)
{
    m_loader.AddMedia(MakeBin(183600));
    ASSERT_EQ(m_track.ClipCount(), 1);
    EXPECT_EQ(Clip().LengthMs, 1000);
    EXPECT_EQ(Clip().Data.Bytes().size(), kWavHeaderSize + 176400);
    EXPECT_EQ(m_track.PacketCount(), 300);
    ExpectSectors(75);
}

TEST_F(MediaLoaderBinTest, WholeSectorsNeedNoBalance)
{
    for (std::size_t sectors = 1; sectors <= 150; ++sectors) {
        m_loader.ClearMedia();
        m_loader.AddMedia(MakeBin(sectors * kSectorBytes));
        EXPECT_EQ(m_track.ClipCount(), 1) << sectors;
        EXPECT_EQ(m_track.PacketCount(), static_cast<int>(sectors) * 4) << sectors;
    }
}

TEST_F(MediaLoaderBinTest, TheClipIsASoundThatDecodes)
{
    m_loader.AddMedia(MakeBin(183600));
    const auto sound = SoundDecoder::OpenMemory(Clip().Data.Bytes());
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->SampleRate(), 44100);
    EXPECT_EQ(sound->FrameCount(), 44100);
}

TEST_F(MediaLoaderBinTest, ASectorThatLacksAByteCountsAsWhole)
{
    m_loader.AddMedia(MakeBin(kSectorBytes - 1));
    ASSERT_EQ(m_track.ClipCount(), 1);
    EXPECT_EQ(Clip().LengthMs, 13);
    EXPECT_EQ(Clip().Data.Bytes().size(), kWavHeaderSize + 2351); // 2351.04
    EXPECT_EQ(m_track.PacketCount(), 4);
    EXPECT_EQ(PacketByte(94), ByteAt(kSectorBytes - 2));
    EXPECT_EQ(PacketByte(95), 0);
    EXPECT_EQ(AudioFrom(0).back(), ByteAt(2350));
}

TEST_F(MediaLoaderBinTest, LessThanHalfASectorAtTheEndIsSilence)
{
    const std::size_t size = kSectorBytes + 1000;
    m_loader.AddBINFile(MakeBin(size));
    ASSERT_EQ(m_track.ClipCount(), 1);
    EXPECT_EQ(Clip().LengthMs, 19);                               // 18.78
    EXPECT_EQ(Clip().Data.Bytes().size(), kWavHeaderSize + 3313); // 3312.78
    EXPECT_EQ(m_track.PacketCount(), 4);
    EXPECT_THAT(AudioFrom(kAudioBytes), Each(0));
    ExpectSectors(1);

    m_loader.ClearMedia();
    m_loader.AddMedia(MakeBin(size));
    EXPECT_EQ(m_track.ClipCount(), 1);
    ASSERT_EQ(m_track.PacketCount(), 6); // 19 ms
    EXPECT_EQ(m_track.PacketStore[5], CdgPacket());
    EXPECT_EQ(m_track.PacketStore[6], CdgPacket());
}

TEST_F(MediaLoaderBinTest, MoreThanHalfASectorAtTheEndIsASectorAsFarAsItGoes)
{
    const std::size_t size = kSectorBytes + 1469;
    m_loader.AddMedia(MakeBin(size));
    EXPECT_EQ(Clip().LengthMs, 21); // 21.33
    EXPECT_EQ(Clip().Data.Bytes().size(),
              kWavHeaderSize + 3763); // 3763.37: fewer than the file has
    EXPECT_EQ(AudioFrom(kAudioBytes).front(), ByteAt(kSectorBytes));
    EXPECT_EQ(AudioFrom(0).back(), ByteAt(kSectorBytes + 3762 - kAudioBytes));
    // Eight packets last longer than 21 ms.
    ASSERT_EQ(m_track.PacketCount(), 8);
    EXPECT_EQ(m_track.PacketStore[5], CdgPacket());
    ASSERT_EQ(m_track.ClipCount(), 2);
    EXPECT_EQ(m_track.ClipList[2].LengthMs, 7);
    EXPECT_EQ(m_track.TotalLengthMs, 28);
}

TEST_F(MediaLoaderBinTest, ExactlyHalfASectorGoesToTheEvenNeighbour)
{
    // Sectors and the packets that their number gives.
    for (const auto& [sectors, packets] :
         std::vector<std::pair<double, int>>{{0.5, 4}, {1.5, 4}, {2.5, 12}, {3.5, 12}}) {
        m_loader.ClearMedia();
        m_loader.AddBINFile(MakeBin(static_cast<std::size_t>(sectors * kSectorBytes)));
        EXPECT_EQ(m_track.PacketCount(), packets) << sectors;
    }
}

TEST_F(MediaLoaderBinTest, EverySizeStaysInItsBounds)
{
    for (std::size_t size = 1; size < 3 * kSectorBytes; size += 17) {
        m_loader.ClearMedia();
        EXPECT_EQ(m_loader.AddMedia(MakeBin(size)), QString());
        const double sectors = static_cast<double>(size) / kSectorBytes;
        EXPECT_EQ(Clip().LengthMs, RoundToEven(sectors / 75 * 1000));
        EXPECT_EQ(Clip().Data.Bytes().size(),
                  kWavHeaderSize + static_cast<std::size_t>(RoundToEven(sectors * kAudioBytes)));
        EXPECT_NEAR(m_track.PacketCount(), m_track.TotalLengthMs * 0.3, 2) << size;
    }
}

TEST_F(MediaLoaderBinTest, AnEmptyOrUnreadableFileAddsNothing)
{
    EXPECT_EQ(m_loader.AddMedia(Make("a.bin")), QString());
    ASSERT_EQ(mkfifo((m_folder / "b.bin").c_str(), 0600), 0);
    EXPECT_EQ(m_loader.AddMedia(In("b.bin")), QString());
    m_loader.AddBINFile(In("none.bin"));
    m_loader.AddBINFile(In(""));
    EXPECT_EQ(m_track.ClipCount(), 0);
    EXPECT_EQ(m_track.PacketCount(), 0);
}

// The last sector that a disc's clock can name is the 75th of 99:59, at 99:59:74.
TEST_F(MediaLoaderBinTest, TheLongestDiscLoadsWhole)
{
    constexpr std::size_t kSectors = (99 * 60 + 59) * 75 + 75;
    const QString path = Make("a.bin");
    std::filesystem::resize_file(m_folder / "a.bin", kSectors * kSectorBytes - 1);
    std::ofstream(m_folder / "a.bin", std::ios::app) << '\x7F';
    EXPECT_EQ(m_loader.AddMedia(path), QString());
    ASSERT_EQ(m_track.ClipCount(), 1);
    EXPECT_EQ(Clip().LengthMs, 100 * 60 * 1000);
    EXPECT_EQ(Clip().Data.Bytes().size(), kWavHeaderSize + kSectors * kAudioBytes);
    ASSERT_EQ(m_track.PacketCount(), kSectors * 4);
    EXPECT_EQ(PacketByte(kSectors * 4 * kPacketSize - 1), 0x7F);
}

TEST_F(MediaLoaderBinTest, AFileIsAppendedToWhatIsThere)
{
    m_loader.AddMedia(MakePackets("a.cdg", 300));
    m_loader.AddMedia(MakeBin(183600));
    ASSERT_EQ(m_track.ClipCount(), 2);
    EXPECT_EQ(m_track.ClipList[2].StartMs, 1000);
    ASSERT_EQ(m_track.PacketCount(), 600);
    EXPECT_EQ(m_track.PacketStore[300].PacketData[0], 300 & 0xFF);
    EXPECT_EQ(m_track.PacketStore[301].Command, ByteAt(kAudioBytes));
}

TEST_F(MediaLoaderBinTest, PacketsBeyondTheLimitAreNotStored)
{
    MediaLoader loader = LoaderWith({.packets = 6});
    loader.AddMedia(MakeBin(183600));
    EXPECT_EQ(m_track.PacketCount(), 6);
    EXPECT_EQ(PacketByte(6 * kPacketSize - 1), ByteAt(kSectorBytes + kAudioBytes + 47));
    EXPECT_EQ(m_track.TotalLengthMs, 1000);
}

} // namespace
} // namespace lantern
