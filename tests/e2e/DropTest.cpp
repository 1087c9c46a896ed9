// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileDrag.h"
#include "Journey.h"

namespace lantern::test {
namespace {

constexpr QRgb kDropped = 0xFFCC3300;

// One track plays; others, of another colour, are dragged onto it from another program.
class Dropping : public Journey {
protected:
    void SetUp() override { OpenTrack(WriteToneTrack("playing", 60.0)); }

    std::filesystem::path WriteDroppedTrack(const std::string& stem)
    {
        return WriteToneTrack(stem, 20.0, 660.0, kDropped);
    }

    std::filesystem::path WriteText(const std::string& name) const
    {
        WriteFile(folder / name, "no track\n");
        return folder / name;
    }

    FileDrag Files(const std::vector<std::filesystem::path>& paths)
    {
        std::string list;
        for (const std::filesystem::path& path : paths)
            list += FileUri(path) + "\r\n";
        return {screen, hand, list};
    }

    Point OnPicture() { return PicturePoint(); }

    void ExpectOpened(FileDrag& drag)
    {
        drag.CarryTo(OnPicture());
        EXPECT_TRUE(drag.AwaitAnswer("copy"));
        EXPECT_EQ(drag.Drop(), "copy") << "only a copy leaves the file where it is";
        EXPECT_TRUE(AwaitPicture(kDropped));
    }

    // A refusal and what was there before look alike: the player has to have looked at the list.
    void ExpectRefused(FileDrag& drag)
    {
        drag.CarryTo(OnPicture());
        EXPECT_TRUE(drag.AwaitQuestion());
        EXPECT_TRUE(player->AnswerTime(2s));
        EXPECT_TRUE(drag.AwaitAnswer("none"));
        EXPECT_EQ(drag.Drop(), "none");
        ExpectStillPlaying();
    }

    void ExpectStillPlaying()
    {
        EXPECT_TRUE(player->AnswerTime(2s));
        EXPECT_TRUE(AwaitPicture(kPicture));
        Leave();
        EXPECT_EQ(home.Setting("lastplayed"), (folder / "playing.cdg").string());
    }
};

TEST_F(Dropping, ATrackOnThePictureIsOpenedAndStaysWhereItIs)
{
    const std::filesystem::path track = WriteDroppedTrack("dropped");
    FileDrag drag = Files({track});
    ExpectOpened(drag);
    EXPECT_TRUE(AwaitSound());
    EXPECT_TRUE(std::filesystem::exists(track));
    Leave();
    EXPECT_EQ(home.Setting("lastplayed"), track.string());
}

TEST_F(Dropping, ATextFileAloneIsRefused)
{
    FileDrag drag = Files({WriteText("words.txt")});
    ExpectRefused(drag);
}

TEST_F(Dropping, OfATextFileAndAnArchiveTheArchiveIsOpened)
{
    WriteDroppedTrack("song");
    OutputOf({.arguments = {"zip", "-q", "-j", (folder / "song.zip").string(),
                            (folder / "song.wav").string(), (folder / "song.cdg").string()}});
    FileDrag drag = Files({WriteText("words.txt"), folder / "song.zip"});
    ExpectOpened(drag);
}

TEST_F(Dropping, ANameInChineseIsATrueName)
{
    FileDrag drag = Files({WriteDroppedTrack("我的歌")});
    ExpectOpened(drag);
}

TEST_F(Dropping, ANameThatIsNoTextIsATrueName)
{
    FileDrag drag = Files({WriteDroppedTrack("caf\xE9 \xFF")});
    ExpectOpened(drag);
}

TEST_F(Dropping, ANameWithQuotationMarksIsATrueName)
{
    FileDrag drag = Files({WriteDroppedTrack("a\"b\"c")});
    ExpectOpened(drag);
    EXPECT_TRUE(AwaitTone(660.0));
}

TEST_F(Dropping, ANameWithAnApostropheAndABlankAtItsEndIsATrueName)
{
    const std::filesystem::path track = WriteDroppedTrack("' lead ");
    FileDrag drag = Files({track});
    ExpectOpened(drag);
    EXPECT_TRUE(AwaitTone(660.0));
    Leave();
    EXPECT_EQ(home.Setting("lastplayed"), track.string());
}

TEST_F(Dropping, AnExtensionInCapitalsIsTaken)
{
    std::filesystem::rename(WriteDroppedTrack("capitals"), folder / "CAPITALS.CDG");
    FileDrag drag = Files({folder / "CAPITALS.CDG"});
    ExpectOpened(drag);
}

TEST_F(Dropping, OfTenFilesTheFirstTrackIsOpened)
{
    std::vector<std::filesystem::path> files = {WriteText("words.txt"), WriteText("notes.md"),
                                                WriteDroppedTrack("first")};
    for (int i = 4; i <= 10; ++i)
        files.push_back(WriteToneTrack("other" + std::to_string(i), 5.0, 880.0, 0xFFEEEE00));
    FileDrag drag = Files(files);
    ExpectOpened(drag);
    Leave();
    EXPECT_EQ(home.Setting("lastplayed"), (folder / "first.cdg").string());
}

TEST_F(Dropping, OnlyThePictureTakesFiles)
{
    const QRect window = player->WindowArea();
    const Point margin = {window.left() + 1, window.center().y()};
    const Point border = {window.center().x(), PictureArea().bottom() + 10};
    const Point toolbar = {window.center().x(), window.bottom() - 40};
    const Point button = {window.left() + 75, window.bottom() - 40};
    FileDrag drag = Files({WriteDroppedTrack("dropped")});
    for (const Point& point : {margin, border, toolbar, button}) {
        drag.CarryTo(OnPicture());
        EXPECT_TRUE(drag.AwaitAnswer("copy"));
        drag.CarryTo(point);
        EXPECT_TRUE(drag.AwaitAnswer("none")) << point.x << ", " << point.y;
    }
    EXPECT_EQ(drag.Drop(), "none");
    ExpectStillPlaying();
}

TEST_F(Dropping, AFileThatCouldOnlyBeMovedAwayIsRefused)
{
    const std::filesystem::path track = WriteDroppedTrack("dropped");
    FileDrag drag(screen, hand, FileUri(track) + "\r\n", {"move"});
    ExpectRefused(drag);
}

TEST_F(Dropping, AProgramThatDiesDuringTheDragChangesNothing)
{
    const std::filesystem::path track = WriteDroppedTrack("dropped");
    {
        FileDrag drag = Files({track});
        drag.CarryTo(OnPicture());
        EXPECT_TRUE(drag.AwaitAnswer("copy"));
        drag.Kill();
        EXPECT_TRUE(player->AnswerTime(5s));
    }
    EXPECT_TRUE(AwaitPicture(kPicture));
    FileDrag next = Files({track});
    ExpectOpened(next);
}

TEST_F(Dropping, HostileListsChangeNothing)
{
    const std::string megabytes = "file:///" + std::string(std::size_t{4} * 1024 * 1024, 'x');
    for (const std::string& list :
         {megabytes, std::string("file:///%00.cdg\nfile:///%zz\n\0\xFF\xFE", 30)}) {
        FileDrag drag(screen, hand, list);
        drag.CarryTo(OnPicture());
        EXPECT_TRUE(drag.AwaitQuestion());
        EXPECT_TRUE(player->AnswerTime(5s));
        EXPECT_EQ(drag.Drop(), "none");
    }
    ExpectStillPlaying();
}

} // namespace
} // namespace lantern::test
