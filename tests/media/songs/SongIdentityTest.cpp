// SPDX-License-Identifier: GPL-3.0-or-later
#include "SongIdentity.h"

#include "DiscSector.h"
#include "MediaLoaderFixture.h"
#include "Packets.h"

#include <functional>

namespace lantern {
namespace {

using Packets = std::vector<CdgPacket>;

// Some seconds of words: tiles among packets that do nothing.
Packets Song(std::uint8_t seed, int count = 900)
{
    Packets song(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < song.size(); i += 3)
        song[i] = packets::Tile({.colour1 = 1,
                                 .row = static_cast<std::uint8_t>(i / 3 % 17),
                                 .column = seed,
                                 .rows = {static_cast<std::uint8_t>(i % 64), 7}});
    return song;
}

std::string BytesOf(const Packets& packets)
{
    return {reinterpret_cast<const char*>(packets.data()), packets.size() * kPacketSize};
}

std::string DiscOf(const Packets& packets, char sound)
{
    std::string disc;
    for (std::size_t i = 0; i + DiscSector::kPackets <= packets.size(); i += DiscSector::kPackets) {
        disc += std::string(DiscSector::kAudioBytes, sound);
        disc += BytesOf(packets).substr(i * kPacketSize, DiscSector::kPacketBytes);
    }
    return disc;
}

class SongIdentity : public MediaLoaderFixture {
protected:
    SongId Of(const QString& path)
    {
        m_loader.ClearMedia();
        EXPECT_EQ(m_loader.AddMedia(path), QString());
        return IdentityOf(m_track);
    }
    QString MakeSong(const std::string& name, const Packets& packets)
    {
        return Make(name, BytesOf(packets));
    }
    QString Zip(const std::string& name, const std::vector<std::string>& members)
    {
        std::string command = "cd '" + m_folder.Path().string() + "' && zip -q '" + name + "'";
        for (const std::string& member : members)
            command += " '" + member + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
        return In(name);
    }
};

TEST_F(SongIdentity, ARenamedOrMovedFileIsTheSameSongAndAnotherOneIsNot)
{
    const SongId id = Of(MakeSong("a.cdg", Song(1)));
    EXPECT_EQ(id.size(), kSongIdSize);
    EXPECT_EQ(Of(MakeSong("another name.cdg", Song(1))), id);
    m_folder.PrivateFolder("deeper");
    EXPECT_EQ(Of(MakeSong("deeper/a.cdg", Song(1))), id);
    EXPECT_NE(Of(MakeSong("b.cdg", Song(2))), id);
}

TEST_F(SongIdentity, TheFileItsArchiveAndTheImageOfTheDiscAreOneSong)
{
    const QString file = MakeSong("a.cdg", Song(1));
    MakeAudio("a.mp3", 4000);
    const SongId id = Of(file);
    EXPECT_EQ(Of(Zip("a.zip", {"a.cdg", "a.mp3"})), id);
    EXPECT_EQ(Of(Make("a.bin", DiscOf(Song(1), 'x'))), id);
}

TEST_F(SongIdentity, WhatDrivesDifferInDoesNotCount)
{
    const SongId id = Of(MakeSong("a.cdg", Song(1)));

    Packets padded = Song(1);
    padded.resize(padded.size() + 500);
    EXPECT_EQ(Of(MakeSong("padded.cdg", padded)), id);

    Packets shifted(40);
    shifted.insert(shifted.end(), padded.begin(), padded.end());
    EXPECT_EQ(Of(MakeSong("shifted.cdg", shifted)), id);

    Packets withOtherChannels = Song(1);
    for (CdgPacket& packet : withOtherChannels) {
        packet.Command |= 0x40;
        packet.Instruction |= 0x80;
        for (std::uint8_t& byte : packet.PacketData)
            byte |= 0xC0;
        packet.ParityQ = {1, 2};
        packet.ParityP = {3, 4, 5, 6};
    }
    EXPECT_EQ(Of(MakeSong("channels.cdg", withOtherChannels)), id);

    EXPECT_EQ(Of(Make("tail.cdg", BytesOf(Song(1)) + "some bytes")), id);
}

TEST_F(SongIdentity, EachBitOfThePictureCounts)
{
    const SongId id = Of(MakeSong("a.cdg", Song(1)));
    const auto changed = [&](const std::function<void(CdgPacket&)>& change) {
        Packets song = Song(1);
        change(song[300]);
        return Of(MakeSong("changed.cdg", song));
    };
    EXPECT_NE(changed([](CdgPacket& packet) { packet.Instruction ^= 32; }), id);
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_NE(changed([i](CdgPacket& packet) { packet.PacketData[i] ^= 0x20; }), id) << i;
    EXPECT_NE(changed([](CdgPacket& packet) { packet = {}; }), id);
}

TEST_F(SongIdentity, ALongSongIsHashedToItsEnd)
{
    Packets song = Song(1, 60000);
    const SongId id = Of(MakeSong("a.cdg", song));
    song[59997].PacketData[5] ^= 1;
    EXPECT_NE(Of(MakeSong("b.cdg", song)), id);
}

TEST_F(SongIdentity, TheSoundOfASongWithWordsDoesNotCount)
{
    const QString file = MakeSong("a.cdg", Song(1));
    const SongId id = Of(file);
    MakeAudio("a.mp3", 3000);
    EXPECT_EQ(Of(file), id);
}

TEST_F(SongIdentity, WithoutWordsTheSoundTells)
{
    m_engine.DurationMs = 3000; // of what is loaded from an archive
    const SongId id = Of(MakeAudio("a.mp3", 3000));
    EXPECT_EQ(id.size(), kSongIdSize);
    EXPECT_EQ(Of(MakeAudio("b.wav", 3000)), id); // the same bytes
    EXPECT_EQ(Of(Zip("c.zip", {"a.mp3"})), id);
    Make("d.mp3", "other");
    m_engine.FileDurations[In("d.mp3")] = 3000;
    EXPECT_NE(Of(In("d.mp3")), id);
}

TEST_F(SongIdentity, PacketsThatDrawNothingLeaveItToTheSound)
{
    const Packets screen = {packets::MemoryPreset(3), packets::BorderPreset(3)};
    MakeAudio("a.mp3", 3000);
    Make("b.mp3", "other");
    m_engine.FileDurations[In("b.mp3")] = 3000;
    const SongId first = Of(MakeSong("a.cdg", screen));
    EXPECT_NE(Of(MakeSong("b.cdg", screen)), first);
    // Without a sound they are all there is, as long as the silence beside them may be.
    const SongId silent = Of(MakeSong("c.cdg", screen));
    EXPECT_EQ(silent.size(), kSongIdSize);
    Packets longer = screen;
    longer.resize(900);
    EXPECT_EQ(Of(MakeSong("d.cdg", longer)), silent);
}

TEST_F(SongIdentity, NothingHasNone)
{
    EXPECT_EQ(IdentityOf(m_track), SongId());
    EXPECT_EQ(Of(Make("a.cdg")), SongId());
    EXPECT_EQ(Of(MakeSong("b.cdg", Packets(300))), SongId());
    const QString gone = MakeAudio("c.mp3", 3000);
    m_loader.ClearMedia();
    m_loader.AddMedia(gone);
    std::filesystem::remove(m_folder / "c.mp3");
    EXPECT_EQ(IdentityOf(m_track), SongId());
}

TEST_F(SongIdentity, OfALargeSoundEachPartAndTheSizeTell)
{
    std::string sound(std::size_t{3} << 20, '\0');
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] = static_cast<char>(i * 7 % 251);
    AudioClip clip;
    clip.Path = Make("a.wav", sound);
    const QByteArray print = FingerprintOf(clip);
    AudioClip image;
    image.Kind = ClipKind::Data;
    image.Data = SoundImage({sound.begin(), sound.end()});
    EXPECT_EQ(FingerprintOf(image), print);

    const auto changed = [&](std::size_t place) {
        std::string other = sound;
        other[place] ^= 1;
        Make("a.wav", other);
        return FingerprintOf(clip);
    };
    EXPECT_NE(changed(0), print);
    EXPECT_NE(changed(sound.size() - 1), print);
    EXPECT_NE(changed((sound.size() - 32768) * 7 / 15 + 100), print);
    Make("a.wav", sound + "x");
    EXPECT_NE(FingerprintOf(clip), print);
    Make("a.wav", sound.substr(0, 300000));
    const QByteArray small = FingerprintOf(clip);
    std::string other = sound.substr(0, 300000);
    other[150000] ^= 1;
    Make("a.wav", other);
    EXPECT_NE(FingerprintOf(clip), small);
}

} // namespace
} // namespace lantern
