// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"

#include <random>

namespace lantern::test {
namespace {

constexpr double kSeconds = 20.0;
// A second and a half of one colour, in which the picture can be found on the screen; then all
// tiles within a second.
constexpr int kFirstTilePacket = 450;
constexpr int kTiles = 280;
constexpr Clock::duration kAllDrawn = 3500ms; // after the start, with time to spare

class Clipboard : public Journey {
protected:
    // A silent track with a picture that uses every colour.
    std::filesystem::path WriteTiledTrack()
    {
        std::mt19937 random(5);
        Packet::Colours low = {};
        Packet::Colours high = {};
        for (QRgb* colour : {low.data(), high.data()}) {
            for (int i = 0; i < 8; ++i)
                colour[i] =
                    qRgb(17 * static_cast<int>(random() % 16), 17 * static_cast<int>(random() % 16),
                         17 * static_cast<int>(random() % 16));
        }
        low[1] = kPicture;
        PacketSheet packets(kSeconds);
        packets.Put(1, Packet::LoadColoursLow(low));
        packets.Put(2, Packet::LoadColoursHigh(high));
        packets.Put(3, Packet::MemoryPreset(1));
        for (int i = 0; i < kTiles; ++i) {
            std::array<std::uint8_t, 12> rows = {};
            for (std::uint8_t& row : rows)
                row = static_cast<std::uint8_t>(random() % 64);
            packets.Put(kFirstTilePacket + i, Packet::Tile(static_cast<int>(random() % 50),
                                                           static_cast<int>(random() % 18),
                                                           static_cast<int>(random() % 16),
                                                           static_cast<int>(random() % 16), rows));
        }
        packets.Write(folder / "tiles.cdg");
        return folder / "tiles.cdg";
    }

    QImage DecodedImage(const std::filesystem::path& track)
    {
        const std::string frame = (folder / "frame.png").string();
        OutputOf({.arguments = {LANTERN_TOOL_PATH, "frame", track.string(), "--packet", "900",
                                "--out", frame}});
        return QImage(QString::fromStdString(frame)).convertToFormat(QImage::Format_RGB32);
    }

    QImage PastedImage()
    {
        const std::string bytes =
            OutputOf({.arguments = {"xclip", "-selection", "clipboard", "-o", "-t", "image/png"},
                      .environment = screen.Environment()});
        return QImage::fromData(QByteArray::fromStdString(bytes))
            .convertToFormat(QImage::Format_RGB32);
    }
};

TEST_F(Clipboard, TheCopiedPictureIsTheDecodedOneToThePixel)
{
    const std::filesystem::path track = WriteTiledTrack();
    ASSERT_NO_FATAL_FAILURE(StartPlayer({track.string()}));
    std::this_thread::sleep_for(kAllDrawn);
    hand.Key("4"); // what is copied does not depend on the size of the window
    hand.Key("c");
    std::this_thread::sleep_for(300ms);
    const QImage pasted = PastedImage();
    EXPECT_EQ(pasted.size(), QSize(288, 192));
    EXPECT_TRUE(pasted == DecodedImage(track));
    // Not by both being empty: the tiles are there.
    EXPECT_GT(pasted.convertToFormat(QImage::Format_Indexed8).colorCount(), 10);
    KeepPicture(eyes.Screen(), "tiles");
}

TEST_F(Clipboard, ThePictureOnTheScreenIsTheDecodedOneAtTwiceItsSize)
{
    const std::filesystem::path track = WriteTiledTrack();
    ASSERT_NO_FATAL_FAILURE(StartPlayer({track.string()}));
    ASSERT_TRUE(AwaitPicture(kPicture));
    const QRect area = PictureArea();
    ASSERT_EQ(area.size(), QSize(576, 384));
    std::this_thread::sleep_for(kAllDrawn);
    const QImage shown = eyes.Area(area);
    const QImage wanted =
        DecodedImage(track).scaled(area.size(), Qt::IgnoreAspectRatio, Qt::FastTransformation);
    EXPECT_TRUE(shown == wanted);
    EXPECT_GT(shown.convertToFormat(QImage::Format_Indexed8).colorCount(), 10);
}

} // namespace
} // namespace lantern::test
