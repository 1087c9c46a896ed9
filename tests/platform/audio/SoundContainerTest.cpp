// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundContainer.h"

#include "WatchedBytes.h"

#include <gtest/gtest.h>

#include <malloc.h>

namespace lantern {
namespace {

// A container on bytes of its own.
class Opened {
public:
    explicit Opened(Bytes bytes) : m_bytes(std::move(bytes)), m_container(Open()) {}

    SoundContainer* operator->() const { return m_container.get(); }
    explicit operator bool() const { return m_container != nullptr; }
    const WatchedBytes& Source() const { return m_bytes; }
    WorkLimit& TheLimit() { return m_limit; }

    std::vector<std::int64_t> ReadStamps()
    {
        std::vector<std::int64_t> stamps;
        while (m_container->ReadPacket(*m_packet))
            stamps.push_back(m_packet->pts);
        return stamps;
    }

private:
    std::unique_ptr<SoundContainer> Open() { return SoundContainer::Open(m_bytes, m_limit); }

    WatchedBytes m_bytes;
    WorkLimit m_limit;
    std::unique_ptr<SoundContainer> m_container;
    AvPointer<AVPacket> m_packet = Made(av_packet_alloc());
};

TEST(SoundContainer, AClaimIsWhatTheHeaderStatesAtTheRate)
{
    Opened wav(WavImage(MakeTicks(44100, 2, 44100)));
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->Kind().name, "wav");
    EXPECT_EQ(wav->ClaimedFrames(44100), 44100);
    EXPECT_EQ(wav->ClaimedFrames(22050), 22050);
    EXPECT_EQ(wav->SilentFrames(), 0);
    Opened ape(ApeImage(2, 1000));
    ASSERT_TRUE(ape);
    EXPECT_EQ(ape->ClaimedFrames(44100), 2 * kApeFrameLength + 1000);
    const Opened it(ItImage());
    ASSERT_TRUE(it);
    EXPECT_EQ(it->Kind().rule, LengthRule::TrustedClaim);
    EXPECT_EQ(it->ClaimedFrames(1000), kModuleLengthMs);
}

TEST(SoundContainer, ASoundIsOpenedWithoutReadingAllOfIt)
{
    const Opened wav(WavImage(MakeTicks(44100, 2, 44100 * 60)));
    ASSERT_TRUE(wav);
    EXPECT_LT(wav.Source().BytesRead(), 1000000U);
}

TEST(SoundContainer, PacketsFollowUponEachOtherToTheEnd)
{
    Opened wav(WavImage(MakeTicks(44100, 1, 10000)));
    ASSERT_TRUE(wav);
    const std::vector<std::int64_t> stamps = wav.ReadStamps();
    ASSERT_GT(stamps.size(), 2U);
    EXPECT_EQ(stamps.front(), 0);
    EXPECT_TRUE(std::ranges::is_sorted(stamps));
    EXPECT_EQ(wav->Progress(), 1.0);

    EXPECT_TRUE(wav->SeekTo(5000));
    const std::vector<std::int64_t> later = wav.ReadStamps();
    ASSERT_FALSE(later.empty());
    EXPECT_GT(later.front(), 4000);
    EXPECT_LE(later.front(), 5000);
}

TEST(SoundContainer, HaltedItDeliversNoMore)
{
    Opened module(ItImage()); // held in memory as a whole: there is nothing to be read
    ASSERT_TRUE(module);
    EXPECT_FALSE(module->LimitReached());
    module.TheLimit().Stop();
    EXPECT_TRUE(module->LimitReached());
    EXPECT_TRUE(module.ReadStamps().empty());
}

TEST(SoundContainer, HaltedBeforeOrWhileItIsOpenedItIsNone)
{
    WorkLimit limit;
    limit.Stop();
    const WatchedBytes wav(WavImage(MakeTicks(44100, 2, 44100)));
    EXPECT_EQ(SoundContainer::Open(wav, limit), nullptr);
    EXPECT_EQ(wav.BytesRead(), 0U);
    // This one needs more than one read to open.
    const SoundFolder folder;
    const QStringList command = QStringLiteral("lame --quiet -t -b 128 in.wav").split(u' ');
    WatchedBytes mp3(
        ReadFile(folder.Encode(MakeTicks(44100, 2, 12 * 44100), command, QStringLiteral("a.mp3"))));
    WorkLimit later;
    mp3.StopAfter(later, 70000);
    EXPECT_EQ(SoundContainer::Open(mp3, later), nullptr);
}

TEST(SoundContainer, NothingLargeIsAllocatedForAHeader)
{
    ASSERT_TRUE(Opened(WavImage(MakeTicks(8000, 1, 100))));
    constexpr std::size_t kMost = std::size_t{256} << 20;
    void* const largest = av_malloc(kMost);
    EXPECT_NE(largest, nullptr);
    EXPECT_EQ(av_malloc(kMost + 1), nullptr);
    av_free(largest);
}

TEST(SoundContainer, PacketsThatWereReadTakeNoMemory)
{
    Opened wav(WavImage(MakeTicks(44100, 2, 44100 * 20)));
    ASSERT_TRUE(wav);
    wav.ReadStamps();
    EXPECT_TRUE(wav->SeekTo(0));
    const auto before = mallinfo2().uordblks;
    EXPECT_GT(wav.ReadStamps().size(), 100U);
    EXPECT_LT(mallinfo2().uordblks, before + 200000);
}

TEST(SoundContainer, OnlyTheSoundOfAFilmIsRead)
{
    const SoundFolder folder;
    const QStringList command =
        QStringLiteral("ffmpeg -y -v error -f lavfi -i testsrc=d=2:s=64x64 -i in.wav "
                       "-c:v mpeg4 -c:a aac -f mp4")
            .split(u' ');
    Opened film(ReadFile(
        folder.Encode(MakeTicks(44100, 2, 2 * 44100), command, QStringLiteral("film.mp4"))));
    ASSERT_TRUE(film);
    EXPECT_EQ(film->Stream().index, 1);
    EXPECT_EQ(film->Stream().codecpar->codec_type, AVMEDIA_TYPE_AUDIO);
    EXPECT_NEAR(static_cast<double>(film.ReadStamps().size()), 2.0 * 44100 / 1024, 3);
}

TEST(SoundContainer, ADecoderThatNoSoundNeedsIsNone)
{
    const AVCodec* const wanted = avcodec_find_decoder(AV_CODEC_ID_FLAC);
    const AVCodec* const unwanted = avcodec_find_decoder(AV_CODEC_ID_MPEG4);
    ASSERT_TRUE(wanted != nullptr && unwanted != nullptr);
    EXPECT_TRUE(SoundContainer::MayDecode(*wanted));
    EXPECT_FALSE(SoundContainer::MayDecode(*unwanted));
}

} // namespace
} // namespace lantern
