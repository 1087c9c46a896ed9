// SPDX-License-Identifier: GPL-3.0-or-later
#include "NeighbourTracks.h"

#include "PathText.h"
#include "Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace lantern {
namespace {

class NeighbourTracks : public ::testing::Test {
protected:
    void Make(const std::vector<std::string>& names)
    {
        for (const std::string& name : names)
            test::WriteFile(folder / name, "x");
    }
    QString Path(const std::string& name) { return TextFromNative((folder / name).native()); }
    // The name of the neighbour, by its bytes.
    std::string From(const std::string& name, int places)
    {
        const QString track = NeighbourTrack(Path(name), places);
        const std::string native = NativeFromText(track).toStdString();
        const std::string start = folder.Path().string() + "/";
        if (native.empty())
            return {};
        EXPECT_TRUE(native.starts_with(start)) << native;
        return native.substr(start.size());
    }
    // All tracks, as Next goes through them.
    std::vector<std::string> Walk(std::string name)
    {
        std::vector<std::string> names = {name};
        while (!(name = From(name, 1)).empty() && names.size() < 100)
            names.push_back(name);
        return names;
    }

    const test::ScratchFolder folder;
};

using ::testing::ElementsAre;

TEST_F(NeighbourTracks, FollowEachOtherByTheValuesOfTheirNumbers)
{
    Make({"Song 10.cdg", "Song 2.cdg", "Song 1.cdg", "song 3.cdg", "Song 002b.cdg", "Song.cdg"});
    EXPECT_THAT(Walk("Song.cdg"), ElementsAre("Song.cdg", "Song 1.cdg", "Song 2.cdg",
                                              "Song 002b.cdg", "song 3.cdg", "Song 10.cdg"));
    EXPECT_EQ(From("Song 10.cdg", -1), "song 3.cdg");
    EXPECT_EQ(From("Song.cdg", -1), "");
    EXPECT_EQ(From("Song 10.cdg", 1), "");
    EXPECT_EQ(From("Song 10.cdg", 0), "");
}

TEST_F(NeighbourTracks, AreAsManyPlacesAwayAsThereAre)
{
    Make({"1.zip", "2.zip", "3.zip", "4.zip"});
    EXPECT_EQ(From("1.zip", 2), "3.zip");
    EXPECT_EQ(From("4.zip", -3), "1.zip");
    EXPECT_EQ(From("2.zip", 9), "4.zip");
    EXPECT_EQ(From("2.zip", -9), "1.zip");
    EXPECT_EQ(From("2.zip", std::numeric_limits<int>::max()), "4.zip");
    EXPECT_EQ(From("2.zip", std::numeric_limits<int>::min() + 1), "1.zip");
}

TEST_F(NeighbourTracks, TakeAPacketFileAndItsAudioForOneTrack)
{
    Make({"a.cdg", "a.mp3", "B.mp3", "b.cdg", "c.ogg", "d.zip", "e.bin", "f.CDG", "f.wav"});
    EXPECT_THAT(Walk("a.cdg"), ElementsAre("a.cdg", "b.cdg", "c.ogg", "d.zip", "e.bin", "f.CDG"));
    EXPECT_EQ(From("a.mp3", 1), "b.cdg");
    EXPECT_EQ(From("B.mp3", -1), "a.cdg");
    EXPECT_EQ(From("B.mp3", 1), "c.ogg");
    EXPECT_EQ(From("f.wav", -1), "e.bin");
    EXPECT_EQ(From("f.wav", 1), "");
}

TEST_F(NeighbourTracks, AreFilesThatThePlayerOpensAndNoOthers)
{
    Make({"1.cdg", "2.txt", "3.m4a", "5", ".6.cdg", "9.zip"});
    std::filesystem::create_directory(folder / "7.cdg");
    std::filesystem::create_directory(folder / "folder");
    std::filesystem::create_directory_symlink(folder / "folder", folder / "8.cdg");
    std::filesystem::create_symlink("nowhere", folder / "8b.cdg");
    std::filesystem::create_symlink("9.zip", folder / "8c.zip");
    EXPECT_THAT(Walk("1.cdg"), ElementsAre("1.cdg", "8c.zip", "9.zip"));
    EXPECT_EQ(From("9.zip", -2), "1.cdg");
}

TEST_F(NeighbourTracks, LieAroundATrackThatIsGoneOrWrittenInAnotherCase)
{
    Make({"a.cdg", "c.cdg", "\xC3\x84rger.cdg", "b\xFFz.cdg"});
    EXPECT_EQ(From("b.cdg", 1), "b\xFFz.cdg");
    EXPECT_EQ(From("b.cdg", -1), "\xC3\x84rger.cdg") << "an accent makes no other letter";
    EXPECT_EQ(From("b\xFFz.cdg", 1), "c.cdg");
    EXPECT_EQ(From("A.CDG", 1), "\xC3\x84rger.cdg");
    EXPECT_EQ(From("C.cdg", -1), "b\xFFz.cdg");
    EXPECT_EQ(From("C.cdg", 1), "");
    EXPECT_EQ(From("elsewhere/b.cdg", 1), "");
    EXPECT_EQ(NeighbourTrack({}, 1), QString());
}

TEST_F(NeighbourTracks, OfManyFilesAreFoundAtOnce)
{
    for (int i = 0; i < 3000; ++i) {
        test::WriteFile(folder / ("Song " + std::to_string(i) + ".cdg"), "");
        test::WriteFile(folder / ("Song " + std::to_string(i) + ".mp3"), "");
    }
    const auto began = test::Clock::now();
    EXPECT_EQ(From("Song 1999.mp3", 1), "Song 2000.cdg");
    EXPECT_LT(test::Milliseconds(test::Clock::now() - began), 1000);
}

TEST(NaturalKey, SortsANumberOfAnyLengthByItsValue)
{
    const auto key = [](const char* text) { return NaturalKey(QString::fromUtf8(text)); };
    EXPECT_LT(key("a99999999999999999999"), key("a100000000000000000000"));
    EXPECT_EQ(key("a007"), key("A7"));
    EXPECT_EQ(key("a000"), key("a0"));
    EXPECT_LT(key("a0"), key("a1"));
    EXPECT_LT(key("a1b"), key("a1c"));
    EXPECT_LT(key("a9"), key("ab"));
    EXPECT_LT(key("a!"), key("a9"));
    EXPECT_EQ(key("\xC3\xA9t\xC3\xA9"), key("ETE"));
    EXPECT_LT(NaturalKey(QString(200, u'9')), NaturalKey(u'1' + QString(200, u'0')));
}

} // namespace
} // namespace lantern
