// SPDX-License-Identifier: GPL-3.0-or-later
#include "MakeZipHandler.h"

#include "HandMadeZip.h"
#include "PathText.h"
#include "Process.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

namespace lantern {
namespace {

using test::HandMadeMember;
using test::HandMadeZip;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::StartsWith;
using Words = std::vector<std::string>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

std::string Native(const QString& text)
{
    return NativeFromText(text).toStdString();
}

// Bytes that hardly compress.
std::string Noise(std::size_t size, std::uint32_t seed = 1)
{
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i) {
        seed = seed * 1664525 + 1013904223;
        bytes += static_cast<char>(seed >> 24);
    }
    return bytes;
}

class ZipHandlerTest : public ::testing::Test {
protected:
    struct Outcome {
        std::int32_t result = -1;
        Words offered;
        Pairs members; // names with their bytes
        Pairs skipped; // names with the reason
    };

    static constexpr std::int64_t kLargest = 1 << 20;

    // What became of an archive, of which the excluded member isn't wanted.
    Outcome Unpack(const std::filesystem::path& archive, const std::string& excluded = {})
    {
        Outcome outcome;
        const auto handler = MakeZipHandler(kLargest);
        handler->UnzipPreprocessingFile = [&](const QString& name, bool& exclude,
                                              ZipDestination& destination) {
            EXPECT_FALSE(exclude);
            outcome.offered.push_back(Native(name));
            exclude = Native(name) == excluded;
            destination = ZipDestination::Memory;
        };
        handler->UnzippingMemoryFile = [&](const QString& name, std::vector<std::uint8_t> bytes) {
            outcome.members.emplace_back(Native(name), std::string(bytes.begin(), bytes.end()));
        };
        handler->MemberSkipped = [&](const QString& name, const QString& reason) {
            outcome.skipped.emplace_back(Native(name), Native(reason));
        };
        handler->ZipOpenArchive(TextFromNative(archive.native().c_str()));
        handler->ZipSetFilter(QStringLiteral("*.cdg|*.mp3|*.wav"));
        handler->ZipSetFolder(TextFromNative(m_folder.Path().c_str()));
        handler->ZipRun(outcome.result);
        return outcome;
    }
    Outcome UnpackBytes(const std::string& bytes)
    {
        test::WriteFile(m_folder / "a.zip", bytes);
        return Unpack(m_folder / "a.zip");
    }
    Outcome UnpackOne(const HandMadeMember& member) { return UnpackBytes(HandMadeZip({member})); }

    // By the system's archiver, in the folder of the test.
    std::filesystem::path Zip(const std::string& archive, const Words& words)
    {
        const std::string script = R"(cd "$0" && exec zip -q "$@")";
        Words all = {"sh", "-c", script, m_folder.Path().native()};
        all.insert(all.end(), words.begin(), words.end());
        test::OutputOf({.arguments = all});
        return m_folder / archive;
    }
    void Make(const std::string& name, const std::string& bytes)
    {
        std::filesystem::create_directories((m_folder / name).parent_path());
        test::WriteFile(m_folder / name, bytes);
    }

    // The member is skipped for the reason; the sound one beside it isn't.
    void ExpectSkipped(const HandMadeMember& member, const std::string& reason)
    {
        const Outcome outcome =
            UnpackBytes(HandMadeZip({member, {.name = "good.mp3", .contents = "good"}}));
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.members, (Pairs{{"good.mp3", "good"}})) << reason;
        EXPECT_THAT(outcome.skipped, ElementsAre(Pair(member.name, StartsWith(reason))));
    }
    void ExpectUnreadable(const std::filesystem::path& archive)
    {
        const Outcome outcome = Unpack(archive);
        EXPECT_NE(outcome.result, 0);
        EXPECT_THAT(outcome.offered, IsEmpty());
        ASSERT_EQ(outcome.skipped.size(), 1U);
        EXPECT_EQ(outcome.skipped[0].first, "");
        EXPECT_NE(outcome.skipped[0].second, "");
    }

    test::ScratchFolder m_folder;
};

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
    const auto archive = Zip("a.zip", {"a.zip", "a.wav"});
    const auto handler = MakeZipHandler();
    handler->UnzipPreprocessingFile = [](const QString&, bool&, ZipDestination& destination) {
        destination = ZipDestination::Memory;
    };
    std::string whole;
    handler->UnzippingMemoryFile = [&](const QString&, std::vector<std::uint8_t> bytes) {
        whole.assign(bytes.begin(), bytes.end());
    };
    handler->ZipOpenArchive(TextFromNative(archive.native().c_str()));
    handler->ZipSetFilter(QStringLiteral("*"));
    std::int32_t result = -1;
    handler->ZipRun(result);
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(whole == noise);
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
    const std::string bytes = test::ReadFile(archive);
    constexpr char kNeedsVersion45 = 45;
    ASSERT_THAT(bytes, StartsWith(std::string("PK\x03\x04") + kNeedsVersion45));
    EXPECT_THAT(Unpack(archive).members, ElementsAre(Pair("a.cdg", "packets")));
}

TEST_F(ZipHandlerTest, ArchivesWrittenAsAStreamAreRead)
{
    Make("a.cdg", std::string(10'000, 'x'));
    Zip("", {"-fd", "a.zip", "a.cdg"});
    const std::string bytes = test::ReadFile(m_folder / "a.zip");
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
            if (outcome.result == 0) {
                EXPECT_THAT(outcome.members, ElementsAre(Pair(name, "1")));
            }
            // The library refuses an archive that calls something else UTF-8.
            EXPECT_TRUE(outcome.result == 0 || flags != 0) << name;
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
    test::WriteFile(m_folder / "a.zip",
                    HandMadeZip({{.name = "a.cdg", .contents = "1", .checksum = 0},
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
    test::WriteFile(m_folder / "a.zip", HandMadeZip({{.name = "a.cdg", .contents = "1"}}));
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
    test::WriteFile(m_folder / "a.zip", HandMadeZip({{.name = "a.cdg", .contents = "1"}}));
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

TEST_F(ZipHandlerTest, NoDescriptorIsLeftOpen)
{
    const auto openOnes = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    const auto before = openOnes();
    UnpackOne({.name = "x.cdg", .contents = "1"});
    UnpackOne({.name = "x.cdg", .contents = "1", .checksum = 1});
    UnpackBytes("no archive at all");
    EXPECT_EQ(openOnes(), before);
}

TEST_F(ZipHandlerTest, AnEncryptedMemberIsSkipped)
{
    Make("a.cdg", "secret");
    Make("b.mp3", "open");
    Zip("a.zip", {"-P", "password", "a.zip", "a.cdg"});
    const Outcome outcome = Unpack(Zip("a.zip", {"a.zip", "b.mp3"}));
    EXPECT_THAT(outcome.members, ElementsAre(Pair("b.mp3", "open")));
    EXPECT_THAT(outcome.skipped, ElementsAre(Pair("a.cdg", "encrypted")));
    constexpr std::uint16_t kStronglyEncrypted = (1 << 6) | 1;
    ExpectSkipped({.name = "x.cdg", .contents = "secret", .flags = kStronglyEncrypted},
                  "encrypted");
}

TEST_F(ZipHandlerTest, AMemberOfAnUnknownMethodIsSkipped)
{
    for (const std::uint16_t method : {std::uint16_t{6}, std::uint16_t{98}, std::uint16_t{65535}}) {
        ExpectSkipped({.name = "x.cdg", .contents = "1", .method = method},
                      "compressed by an unknown method");
    }
}

TEST_F(ZipHandlerTest, AMemberThatSaysItIsTooLargeIsNotEvenRead)
{
    const auto over = static_cast<std::uint32_t>(kLargest + 1);
    ExpectSkipped({.name = "x.cdg", .contents = "1", .size = over}, "larger than 1048576 bytes");
    ExpectSkipped({.name = "x.cdg", .contents = "1", .size = 0xFFFFFFFE}, "larger than");
    const std::string largest(kLargest, 'x');
    EXPECT_THAT(UnpackOne({.name = "x.cdg", .contents = largest}).members,
                ElementsAre(Pair("x.cdg", largest)));
}

TEST_F(ZipHandlerTest, AMemberOfAnotherSizeThanItSaysIsSkipped)
{
    for (const bool isDeflated : {false, true}) {
        const HandMadeMember member = {
            .name = "x.cdg", .contents = std::string(1000, 'x'), .isDeflated = isDeflated};
        for (const std::uint32_t size : {0U, 999U, 1001U}) {
            HandMadeMember liar = member;
            liar.size = size;
            ExpectSkipped(liar, "wrong size");
        }
    }
}

TEST_F(ZipHandlerTest, AMemberWithAWrongChecksumIsSkipped)
{
    ExpectSkipped({.name = "x.cdg", .contents = "1", .checksum = 1}, "wrong checksum");
    ExpectSkipped({.name = "x.cdg", .contents = "1", .isDeflated = true, .checksum = 1},
                  "wrong checksum");
}

TEST_F(ZipHandlerTest, ADamagedMemberIsSkipped)
{
    ExpectSkipped({.name = "x.cdg", .contents = Noise(500), .method = 8}, "damaged: ");
    ExpectSkipped({.name = "x.cdg", .contents = "1", .offset = 3}, "damaged: ");
    ExpectSkipped({.name = "x.cdg", .contents = "1", .size = 900'000, .storedSize = 900'000},
                  "damaged: ");
}

TEST_F(ZipHandlerTest, ABombEndsAtWhatItSays)
{
    const std::string zeros(4 << 20, '\0');
    ExpectSkipped({.name = "x.cdg", .contents = zeros, .isDeflated = true}, "larger than");
    ExpectSkipped({.name = "x.cdg", .contents = zeros, .isDeflated = true, .size = 1000},
                  "wrong size");
}

TEST_F(ZipHandlerTest, NoMemoryIsTakenForASizeThatIsOnlyTold)
{
    constexpr std::uint32_t kTold = 1'000'000'000;
    test::WriteFile(
        m_folder / "a.zip",
        HandMadeZip({{.name = "a.cdg", .contents = "1", .isDeflated = true, .size = kTold}}));
    const auto peakKibibytes = [] {
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss;
    };
    const long before = peakKibibytes();
    const auto handler = MakeZipHandler();
    handler->UnzipPreprocessingFile = [](const QString&, bool&, ZipDestination& destination) {
        destination = ZipDestination::Memory;
    };
    std::string reason;
    handler->MemberSkipped = [&](const QString&, const QString& text) { reason = Native(text); };
    handler->ZipOpenArchive(TextFromNative((m_folder / "a.zip").native().c_str()));
    handler->ZipSetFilter(QStringLiteral("*"));
    std::int32_t result = -1;
    handler->ZipRun(result);
    EXPECT_EQ(reason, "wrong size");
    EXPECT_LT(peakKibibytes() - before, 50'000);
}

TEST_F(ZipHandlerTest, AnArchiveCutOffAnywhereEnds)
{
    const std::string whole =
        HandMadeZip({{.name = "a.cdg", .contents = std::string(50, 'x'), .isDeflated = true},
                     {.name = "b.mp3", .contents = "good"}});
    ASSERT_EQ(UnpackBytes(whole).members.size(), 2U);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Outcome outcome = UnpackBytes(whole.substr(0, size));
        EXPECT_NE(outcome.result, 0) << size;
        EXPECT_THAT(outcome.members, IsEmpty());
        EXPECT_THAT(outcome.skipped, ElementsAre(Pair("", "Not a zip archive"))) << size;
    }
}

TEST_F(ZipHandlerTest, AnArchiveWithAnyByteWrongEnds)
{
    const std::string whole =
        HandMadeZip({{.name = "a.cdg", .contents = "12345678", .isDeflated = true},
                     {.name = "b.mp3", .contents = "12345678"}});
    for (std::size_t i = 0; i < whole.size(); ++i) {
        for (const char change : {'\x01', '\x80', '\xFF'}) {
            std::string wrong = whole;
            wrong[i] = static_cast<char>(wrong[i] ^ change);
            for (const auto& [name, bytes] : UnpackBytes(wrong).members)
                EXPECT_EQ(bytes, "12345678") << i;
        }
    }
}

TEST_F(ZipHandlerTest, AnArchiveWithoutMembersIsReadAndEmpty)
{
    const Outcome outcome = UnpackBytes(HandMadeZip({}));
    EXPECT_EQ(outcome.result, 0);
    EXPECT_THAT(outcome.skipped, IsEmpty());
}

TEST_F(ZipHandlerTest, WhatIsNoArchiveEndsAtOnce)
{
    Make("text.zip", "no archive at all");
    Make("empty.zip", "");
    std::filesystem::create_directory(m_folder / "folder.zip");
    ASSERT_EQ(mkfifo((m_folder / "fifo.zip").c_str(), 0600), 0);
    for (const char* name : {"text.zip", "empty.zip", "folder.zip", "fifo.zip", "none.zip"})
        ExpectUnreadable(m_folder / name);
    ExpectUnreadable("/dev/zero");
    ExpectUnreadable("");
}

} // namespace
} // namespace lantern
