// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"

#include <random>

namespace lantern::test {
namespace {

constexpr double kSeconds = 20.0;
constexpr int kFirstTilePacket = 10;
constexpr int kTiles = 280; // all within the first second

class Clipboard : public Journey {
protected:
    // A picture that uses every colour, drawn by tiles in the first second of a silent track.
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
    std::this_thread::sleep_for(2500ms);
    hand.Key("4"); // what is copied does not depend on the size of the window
    hand.Key("c");
    std::this_thread::sleep_for(300ms);
    const QImage pasted = PastedImage();

    const std::filesystem::path frame = folder / "frame.png";
    OutputOf({.arguments = {LANTERN_TOOL_PATH, "frame", track.string(), "--packet", "450", "--out",
                            frame.string()}});
    const QImage decoded =
        QImage(QString::fromStdString(frame.string())).convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(pasted.size(), QSize(288, 192));
    EXPECT_EQ(pasted, decoded);
    // Not by both being empty: the tiles are there.
    EXPECT_GT(pasted.convertToFormat(QImage::Format_Indexed8).colorCount(), 10);
    KeepPicture(eyes.Screen(), "tiles");
}

TEST_F(Clipboard, ThePictureOnTheScreenIsTheDecodedOneAtTwiceItsSize)
{
    const std::filesystem::path track = WriteTiledTrack();
    ASSERT_NO_FATAL_FAILURE(StartPlayer({track.string()}));
    std::this_thread::sleep_for(2500ms);
    const std::filesystem::path frame = folder / "frame.png";
    OutputOf({.arguments = {LANTERN_TOOL_PATH, "frame", track.string(), "--packet", "450", "--out",
                            frame.string()}});
    const QImage decoded =
        QImage(QString::fromStdString(frame.string())).convertToFormat(QImage::Format_RGB32);
    // The margin of the layout lies between the window's corner and its picture.
    const QPoint corner = player->WindowArea().topLeft() + QPoint(25, 25);
    const QImage shown = eyes.Area(QRect(corner, QSize(576, 384)));
    EXPECT_EQ(shown, decoded.scaled(576, 384, Qt::IgnoreAspectRatio, Qt::FastTransformation));
}

} // namespace
} // namespace lantern::test
