// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"

namespace lantern::test {
namespace {

class Clipboard : public Journey {
protected:
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
    ASSERT_TRUE(AwaitPicture(kPicture));
    std::this_thread::sleep_for(kTilesDrawn);
    hand.Key("4"); // what is copied does not depend on the size of the window
    const QImage wanted = DecodedImage(track);
    QImage pasted;
    const auto isCopied = [&] { // the sound, and so the tiles, may have begun late
        hand.Key("c");
        std::this_thread::sleep_for(300ms);
        pasted = PastedImage();
        return pasted == wanted;
    };
    EXPECT_TRUE(Eventually(isCopied, kPatience, 200ms));
    EXPECT_EQ(pasted.size(), QSize(288, 192));
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
    std::this_thread::sleep_for(kTilesDrawn);
    const QImage wanted =
        DecodedImage(track).scaled(area.size(), Qt::IgnoreAspectRatio, Qt::FastTransformation);
    QImage shown;
    const auto isShown = [&] {
        shown = eyes.Area(area);
        return shown == wanted;
    };
    EXPECT_TRUE(Eventually(isShown, kPatience, 50ms));
    EXPECT_GT(shown.convertToFormat(QImage::Format_Indexed8).colorCount(), 10);
}

} // namespace
} // namespace lantern::test
