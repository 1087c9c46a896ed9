// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipHandlerFixture.h"

#include <sys/stat.h>

namespace lantern {
namespace {

using namespace test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::StartsWith;

class ZipHandlerTest : public ZipHandlerFixture {};

TEST_F(ZipHandlerTest, StoredAndDeflatedMembersComeAsTheyWere)
{
    const std::string noise = Noise(500'000);
    const std::string zeros(700'000, '\0');
    Make("a.cdg", zeros);
    Make("b.mp3", noise);
    for (const char* level : {"-0", "-1", "-9"}) {
        const Outcome outcome = Unpack(Zip("a.zip", {level, "a.zip", "a.cdg", "b.mp3"}));
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.members, (Pairs{{"a.cdg", zeros}, {"b.mp3", noise}})) << level;
        EXPECT_THAT(outcome.skipped, IsEmpty());
        std::filesystem::remove(m_folder / "a.zip");
    }
}

TEST_F(ZipHandlerTest, AMemberOfManyPiecesComesWhole)
{
    const std::string noise = Noise(9'000'001);
    Make("a.wav", noise);
    const Outcome outcome = Unpack(Zip("a.zip", {"a.zip", "a.wav"}), {}, kLargestZipMember);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_TRUE(outcome.members == (Pairs{{"a.wav", noise}}));
}

TEST_F(ZipHandlerTest, MembersComeInTheOrderOfTheDirectory)
{
    const Outcome outcome = UnpackBytes(HandMadeZip({{.name = "z.cdg", .contents = "1"},
                                                     {.name = "a.mp3", .contents = "2"},
                                                     {.name = "m.cdg", .contents = "3"}}));
    EXPECT_THAT(outcome.members, ElementsAre(Pair("z.cdg", "1"), Pair("a.mp3", "2"), //
                                             Pair("m.cdg", "3")));
    EXPECT_THAT(outcome.offered, ElementsAre("z.cdg", "a.mp3", "m.cdg"));
}

TEST_F(ZipHandlerTest, ArchivesOfSixtyFourBitSizesAreRead)
{
    Make("a.cdg", "packets");
    const auto archive = Zip("a.zip", {"-fz", "a.zip", "a.cdg"});
    const std::string bytes = ReadFile(archive);
    constexpr char kNeedsVersion45 = 45;
    ASSERT_THAT(bytes, StartsWith(std::string("PK\x03\x04") + kNeedsVersion45));
    EXPECT_THAT(Unpack(archive).members, ElementsAre(Pair("a.cdg", "packets")));
}

TEST_F(ZipHandlerTest, ArchivesWrittenAsAStreamAreRead)
{
    Make("a.cdg", std::string(10'000, 'x'));
    Zip("", {"-fd", "a.zip", "a.cdg"});
    const std::string bytes = ReadFile(m_folder / "a.zip");
    ASSERT_THAT(bytes, HasSubstr("PK\x07\x08")); // the sizes stand behind the member
    EXPECT_THAT(UnpackBytes(bytes).members, ElementsAre(Pair("a.cdg", std::string(10'000, 'x'))));
}

TEST_F(ZipHandlerTest, FoldersAndLetterCaseDoNotCount)
{
    Make("A/b.c/Song.CDG", "1");
    Make("A/Song.Mp3", "2");
    const Outcome outcome = Unpack(Zip("a.zip", {"-r", "-D", "a.zip", "A"}));
    EXPECT_THAT(outcome.members, ::testing::UnorderedElementsAre(Pair("A/b.c/Song.CDG", "1"),
                                                                 Pair("A/Song.Mp3", "2")));
}

TEST_F(ZipHandlerTest, NamesOfAnyEncodingKeepTheirBytes)
{
    constexpr std::uint16_t kNamesAreUtf8 = 1 << 11;
    const Words names = {"caf\xE9.cdg", "caf\xC3\xA9.cdg", "\x82\xFF\xFE.CDG"};
    for (const std::string& name : names) {
        for (const std::uint16_t flags : {std::uint16_t{0}, kNamesAreUtf8}) {
            const Outcome outcome = UnpackOne({.name = name, .contents = "1", .flags = flags});
            EXPECT_THAT(outcome.members, ElementsAre(Pair(name, "1")));
        }
    }
}

TEST_F(ZipHandlerTest, HundredsOfMembersAreOffered)
{
    std::vector<HandMadeMember> members;
    members.reserve(701);
    for (int i = 0; i < 700; ++i)
        members.push_back({.name = std::to_string(i) + ".cdg", .contents = std::to_string(i)});
    members.push_back({.name = "read me.txt", .contents = "?"});
    const Outcome outcome = UnpackBytes(HandMadeZip(members));
    ASSERT_EQ(outcome.members.size(), 700U);
    for (std::size_t i = 0; i < 700; ++i)
        EXPECT_EQ(outcome.members[i].second, std::to_string(i));
    EXPECT_THAT(outcome.skipped, ElementsAre(Pair("read me.txt", "not of the types asked for")));
}

TEST_F(ZipHandlerTest, MembersOfTheSameNameAreAllOffered)
{
    const Outcome outcome = UnpackBytes(
        HandMadeZip({{.name = "a.cdg", .contents = "1"}, {.name = "a.cdg", .contents = "2"}}));
    EXPECT_THAT(outcome.members, ElementsAre(Pair("a.cdg", "1"), Pair("a.cdg", "2")));
}

TEST_F(ZipHandlerTest, AnExcludedMemberIsNotUnpacked)
{
    WriteFile(m_folder / "a.zip", HandMadeZip({{.name = "a.cdg", .contents = "1", .checksum = 0},
                                               {.name = "b.cdg", .contents = "2"}}));
    const Outcome outcome = Unpack(m_folder / "a.zip", "a.cdg");
    EXPECT_THAT(outcome.offered, ElementsAre("a.cdg", "b.cdg"));
    EXPECT_THAT(outcome.members, ElementsAre(Pair("b.cdg", "2")));
    EXPECT_THAT(outcome.skipped, IsEmpty());
}

TEST_F(ZipHandlerTest, AnEmptyMemberHasNoBytes)
{
    for (const bool isDeflated : {false, true}) {
        EXPECT_THAT(UnpackOne({.name = "a.cdg", .contents = "", .isDeflated = isDeflated}).members,
                    ElementsAre(Pair("a.cdg", "")));
    }
}

TEST_F(ZipHandlerTest, WithoutEventsNothingHappens)
{
    WriteFile(m_folder / "a.zip", HandMadeZip({{.name = "a.cdg", .contents = "1"}}));
    const auto handler = MakeZipHandler();
    handler->ZipOpenArchive(TextFromNative((m_folder / "a.zip").native().c_str()));
    handler->ZipSetFilter(QStringLiteral("*.cdg"));
    std::int32_t result = -1;
    handler->ZipRun(result);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder.Path()), {}), 1);
}

TEST_F(ZipHandlerTest, AMemberForAFolderIsNotWritten)
{
    WriteFile(m_folder / "a.zip", HandMadeZip({{.name = "a.cdg", .contents = "1"}}));
    const auto handler = MakeZipHandler();
    Pairs skipped;
    handler->MemberSkipped = [&](const QString& name, const QString& reason) {
        skipped.emplace_back(Native(name), Native(reason));
    };
    int unpacked = 0;
    handler->UnzippingMemoryFile = [&](const QString&, const auto&) { ++unpacked; };
    handler->ZipOpenArchive(TextFromNative((m_folder / "a.zip").native().c_str()));
    handler->ZipSetFilter(QStringLiteral("*.cdg"));
    handler->ZipSetFolder(TextFromNative(m_folder.Path().c_str()));
    std::int32_t result = -1;
    handler->ZipRun(result);
    EXPECT_THAT(skipped, ElementsAre(Pair("a.cdg", "not for memory")));
    EXPECT_EQ(unpacked, 0);
    EXPECT_FALSE(std::filesystem::exists(m_folder / "a.cdg"));
}

TEST_F(ZipHandlerTest, AFolderOrALinkIsNoMember)
{
    ExpectSkipped({.name = "x.cdg/", .contents = ""}, "a folder or a link");
    ExpectSkipped({.name = "x.cdg", .contents = "", .unixMode = S_IFDIR | 0755},
                  "a folder or a link");
    ExpectSkipped({.name = "x.cdg", .contents = "/etc/passwd", .unixMode = S_IFLNK | 0777},
                  "a folder or a link");
    EXPECT_THAT(UnpackOne({.name = "x.cdg/", .contents = ""}).offered, IsEmpty());
    EXPECT_THAT(UnpackOne({.name = "songs/", .contents = ""}).skipped, IsEmpty());
}

TEST_F(ZipHandlerTest, OnlyThisKindOfSystemTellsOfLinksInTheAttributes)
{
    EXPECT_THAT(UnpackOne({.name = "x.cdg", .contents = "1", .unixMode = S_IFREG | 0644}).members,
                ElementsAre(Pair("x.cdg", "1")));
    EXPECT_THAT(
        UnpackOne(
            {.name = "x.cdg", .contents = "1", .isMadeByUnix = false, .unixMode = S_IFLNK | 0777})
            .members,
        ElementsAre(Pair("x.cdg", "1")));
}

} // namespace
} // namespace lantern
