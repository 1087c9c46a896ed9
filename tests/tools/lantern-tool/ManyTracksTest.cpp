// SPDX-License-Identifier: GPL-3.0-or-later
#include "LanternToolFixture.h"

#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class ManyTracks : public LanternToolTest {
protected:
    ManyTracks() { umask(022); }

    void MakeFolder(const std::string& name) { std::filesystem::create_directories(In(name)); }
    // The names of all that is in the folder, hidden or not.
    std::vector<std::string> Names(const std::string& folder)
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(In(folder)))
            names.push_back(entry.path().filename());
        std::ranges::sort(names);
        return names;
    }
    std::string MakeTrack(const std::string& name, std::uint8_t colour = 1)
    {
        return Make(name, Bytes({PrimaryColours(), Fill(colour)}));
    }
    // The tracks that info tells of, without the scratch folder before them.
    std::vector<std::string> InfoTracks(const Words& words)
    {
        Words all = {"info"};
        all.insert(all.end(), words.begin(), words.end());
        const Result result = Run(all);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.error, "");
        const QJsonDocument json =
            QJsonDocument::fromJson(QByteArray::fromStdString(result.output));
        EXPECT_TRUE(json.isArray()) << result.output;
        std::vector<std::string> tracks;
        for (const QJsonValue& track : json.array())
            tracks.push_back(track[u"track"].toString().toStdString().substr(In("").size()));
        return tracks;
    }
};

TEST_F(ManyTracks, InfoOfSeveralIsAListInTheirOrder)
{
    const Words tracks = {MakeTrack("b.cdg"), MakeTrack("a.cdg"), MakeTrack("c.cdg")};
    for (const char* jobs : {"1", "2", "9"}) {
        Words words = tracks;
        words.insert(words.end(), {"--jobs", jobs});
        EXPECT_THAT(InfoTracks(words), ElementsAre("b.cdg", "a.cdg", "c.cdg")) << jobs;
    }
}

TEST_F(ManyTracks, AFolderStandsForItsTracksAsPeopleSortThem)
{
    MakeFolder("songs/deep/deeper");
    MakeFolder("songs/.hidden");
    for (const char* name :
         {"10.cdg", "9.cdg", "deep/1.cdg", "deep/deeper/2.CDG", ".3.cdg", ".hidden/4.cdg"})
        MakeTrack(std::string("songs/") + name);
    Make("songs/9.MP3", "no sound"); // beside its packets
    Make("songs/alone.wav", SilentWav(441));
    Make("songs/read me.txt", "text");
    EXPECT_THAT(InfoTracks({In("songs")}),
                ElementsAre("songs/9.cdg", "songs/10.cdg", "songs/alone.wav"));
    EXPECT_THAT(InfoTracks({In("songs/"), "--recursive", "--jobs", "3"}),
                ElementsAre("songs/9.cdg", "songs/10.cdg", "songs/alone.wav", "songs/deep/1.cdg",
                            "songs/deep/deeper/2.CDG"));
}

TEST_F(ManyTracks, AFolderThatALinkLeadsBackToIsEnteredOnce)
{
    MakeFolder("songs/deep");
    MakeTrack("songs/deep/1.cdg");
    std::filesystem::create_directory_symlink(In("songs"), In("songs/deep/again"));
    EXPECT_THAT(InfoTracks({In("songs"), "--recursive"}), ElementsAre("songs/deep/1.cdg"));
}

TEST_F(ManyTracks, AFolderOfOneTrackIsAListToo)
{
    MakeFolder("songs");
    MakeTrack("songs/a.cdg");
    EXPECT_THAT(InfoTracks({In("songs")}), ElementsAre("songs/a.cdg"));
}

TEST_F(ManyTracks, OneThatFailsIsALineAndTheOthersAreDone)
{
    const std::string good = MakeTrack("good.cdg");
    const std::string bad = Make("bad.mp3", "no sound");
    const std::string text = Make("a.txt", "");
    MakeFolder("empty");
    const Result result = Run({"info", bad, good, text, In("none.cdg"), In("empty")});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.error, "lantern-tool: No tracks in " + In("empty") +
                                "\nlantern-tool: Nothing to play: " + bad +
                                "\nlantern-tool: Invalid file format: " + text +
                                "\nlantern-tool: File not found: " + In("none.cdg") + "\n");
    const QJsonArray list =
        QJsonDocument::fromJson(QByteArray::fromStdString(result.output)).array();
    ASSERT_EQ(list.size(), 1) << result.output;
    EXPECT_EQ(list[0][u"track"].toString().toStdString(), good);

    const Result nothing = Run({"info", bad, text});
    EXPECT_EQ(nothing.output, "[\n]\n");
}

TEST_F(ManyTracks, AFolderThatCannotBeReadIsALine)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "root may read any folder";
    MakeFolder("shut");
    std::filesystem::permissions(In("shut"), std::filesystem::perms::none);
    ExpectFailure({"thumbnail", In("shut"), "--out", In("b")},
                  "Cannot read " + In("shut") + ": Permission denied");
}

TEST_F(ManyTracks, OutputsHaveTheTitlesOfTheirTracks)
{
    const std::string one = MakeTrack("one.cdg", 1);
    const std::string two = MakeTrack("two %d.cdg", 2);
    Result result = Run({"frame", one, two, "--packet", "2", "--out", In("x %t %d.png")});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_EQ(QImage(QString::fromStdString(In("x one 2.png"))).pixel(9, 9), kRed);
    EXPECT_EQ(QImage(QString::fromStdString(In("x two %d 2.png"))).pixel(9, 9), kGreen);

    result = Run({"thumbnail", one, two, "--out", "%f/%t.png"}, "cd /; exec");
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_EQ(QImage(QString::fromStdString(In("one.png"))).pixel(9, 9), kRed);
    EXPECT_EQ(QImage(QString::fromStdString(In("two %d.png"))).pixel(9, 9), kGreen);
}

TEST_F(ManyTracks, AFolderOfOutputsHasTheFoldersOfTheTracks)
{
    MakeFolder("songs/deep");
    MakeTrack("songs/1.cdg");
    MakeTrack("songs/deep/1.cdg");
    Result result = Run({"thumbnail", In("songs"), "--recursive", "--out", In("new/pictures")});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_EQ(result.output + result.error, "");
    EXPECT_THAT(Names("new/pictures"), ElementsAre("1.png", "deep"));
    EXPECT_THAT(Names("new/pictures/deep"), ElementsAre("1.png"));

    result = Run({"frame", In("songs"), "--packet", "1,2", "--raw", "--out", In("frames/")});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_THAT(Names("frames"),
                ElementsAre("1 1.pgm", "1 1.pgm.colours", "1 2.pgm", "1 2.pgm.colours"));
    ExpectFailure({"frame", In("songs"), "--packet", "1,2", "--out", In("%t.png")},
                  "several frames need a %d in --out");
}

TEST_F(ManyTracks, WhatExistsIsKeptUnlessForced)
{
    const std::string one = MakeTrack("one.cdg");
    const std::string two = MakeTrack("two.cdg");
    Make("one.png", "mine");
    const Words words = {"thumbnail", one, two, "--out", In("%t.png")};
    const Result kept = Run(words);
    EXPECT_EQ(kept.code, 1);
    EXPECT_EQ(kept.error, "lantern-tool: Cannot write " + In("one.png") +
                              ": it exists (--force replaces it)\n");
    EXPECT_EQ(test::ReadFile(In("one.png")), "mine");
    EXPECT_EQ(QImage(QString::fromStdString(In("two.png"))).pixel(9, 9), kRed);

    Words forced = words;
    forced.emplace_back("--force");
    EXPECT_EQ(Run(forced).code, 0);
    EXPECT_EQ(test::ReadFile(In("one.png")), test::ReadFile(In("two.png")));
}

// As ever: scripts draw one picture over the other, and so do file managers.
TEST_F(ManyTracks, TheOutputOfASingleTrackIsReplaced)
{
    const std::string track = MakeTrack("a.cdg");
    const std::string out = Make("a.png", "old");
    std::filesystem::permissions(out, std::filesystem::perms(0640));
    std::filesystem::create_symlink("a.png", In("link.png"));
    EXPECT_EQ(Run({"thumbnail", track, "--out", In("link.png")}).code, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(In("link.png")));
    EXPECT_EQ(QImage(QString::fromStdString(out)).pixel(9, 9), kRed);
    EXPECT_EQ(std::filesystem::status(out).permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(Run({"thumbnail", track, "--out", In("new.png")}).code, 0);
    EXPECT_EQ(std::filesystem::status(In("new.png")).permissions(), std::filesystem::perms(0644));
    EXPECT_EQ(Run({"thumbnail", track, "--out", "/dev/stdout"}).output,
              test::ReadFile(In("new.png")));
    EXPECT_EQ(Run({"thumbnail", track, "--out", "/dev/stderr"}).error,
              test::ReadFile(In("new.png")));
    for (const char* stream : {"/dev/stdout", "/dev/stderr"}) {
        EXPECT_EQ(
            test::OutputOf({.arguments = {"sh", "-c", "\"$0\" \"$@\" 2>&1 | cat", LANTERN_TOOL,
                                          "thumbnail", track, "--out", stream}}),
            test::ReadFile(In("new.png")))
            << stream;
    }
}

// The output of a single track replaces what was there, and --force everything else, but no song.
TEST_F(ManyTracks, AnOutputNeverReplacesAFileOfItsTrack)
{
    const std::string track = MakeTrack("a.cdg");
    const std::string sound = Make("A.MP4", SilentWav(44100));
    const std::string other = MakeTrack("b.cdg");
    const std::string packets = test::ReadFile(track);
    std::filesystem::create_symlink("a.cdg", In("link.png"));
    const auto isRefused = [&](const Words& words, const std::string& out) {
        const Result result = Run(words);
        EXPECT_EQ(result.code, 1);
        EXPECT_EQ(result.error,
                  "lantern-tool: Cannot write " + out + ": it is a file of the track\n");
        EXPECT_TRUE(test::ReadFile(track) == packets);
        EXPECT_TRUE(test::ReadFile(sound) == SilentWav(44100));
    };
    isRefused({"thumbnail", track, "--out", track}, track);
    isRefused({"thumbnail", track, "--out", In("link.png")}, In("link.png"));
    isRefused({"thumbnail", track, "--out", In("./A.MP4")}, In("./A.MP4"));
    isRefused({"frame", track, "--packet", "1", "--out", In("%t.cdg"), "--force"}, track);
    isRefused({"frame", sound, "--packet", "1", "--out", track}, track);
    isRefused({"video", track, "--size", "32x32", "--force", "--out", sound}, sound);
    EXPECT_EQ(Run({"thumbnail", other, "--out", "/dev/null"}).code, 0);
}

TEST_F(ManyTracks, TwoTracksWithOneOutputAreNotMixedUp)
{
    MakeFolder("a");
    MakeFolder("b");
    const std::string first = MakeTrack("a/x.cdg", 1);
    const std::string second = MakeTrack("b/x.cdg", 2);
    const Result result =
        Run({"thumbnail", first, second, "--force", "--jobs", "1", "--out", In("%t.png")});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.error, "lantern-tool: Cannot write " + In("x.png") + ": it is the output of " +
                                first + "\n");
    EXPECT_EQ(QImage(QString::fromStdString(In("x.png"))).pixel(9, 9), kRed);
}

TEST_F(ManyTracks, APlaceThatTakesNoOutputIsALine)
{
    const std::string track = MakeTrack("a.cdg");
    const std::string other = MakeTrack("b.cdg");
    Make("file", "");
    const Result result = Run({"thumbnail", track, other, "--out", In("file")});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.error, "lantern-tool: Cannot write " + In("file/a.png") +
                                ": Not a directory\nlantern-tool: Cannot write " +
                                In("file/b.png") + ": Not a directory\n");
    ExpectFailure({"thumbnail", track, "--out", In("")},
                  "Cannot write " + In("") + ": Is a directory");
    EXPECT_EQ(test::ReadFile(In("file")), "");
}

TEST_F(ManyTracks, AnOutputThatDoesNotFitLeavesTheOldOne)
{
    const std::string track = MakeTrack("a.cdg");
    Make("a.png", "old");
    const Result result =
        Run({"frame", track, "--packet", "2", "--raw", "--out", In("a.png")}, "ulimit -f 8; exec");
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.error, "lantern-tool: Cannot write " + In("a.png") + ": File too large\n");
    EXPECT_EQ(test::ReadFile(In("a.png")), "old");
    EXPECT_THAT(Names(""), ElementsAre("a.cdg", "a.png", "err", "out"));
}

// A window's terminal, as the programs in it see it.
TEST_F(ManyTracks, OnATerminalABarShowsHowFarItIsAndLeavesNothingBehind)
{
    // Enough to take several times as long as the moment in which no bar comes.
    MakeFolder("songs");
    for (int i = 0; i < 8; ++i)
        Make("songs/" + std::to_string(i) + ".cdg", Bytes(std::vector<CdgPacket>(9000, Fill(1))));
    const std::string command = std::string(LANTERN_TOOL) + " frame " + In("songs") +
                                " --packet 9000 --size 3600x2400 --smooth --jobs 2 --force --out " +
                                In("pictures");
    const auto on = [&](const std::string& line) {
        return test::OutputOf({.arguments = {"script", "-qec", line, "/dev/null"}}, 60s);
    };
    const std::string shown = on(command);
    EXPECT_THAT(shown, HasSubstr(" of 8 tracks"));
    EXPECT_THAT(shown, ::testing::EndsWith("\r\x1B[K"));
    EXPECT_EQ(on(command + " --quiet"), "");
}

} // namespace
} // namespace lantern
