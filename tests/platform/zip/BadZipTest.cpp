// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipHandlerFixture.h"

#include <sys/resource.h>
#include <sys/stat.h>

namespace lantern {
namespace {

using namespace test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::StartsWith;

class BadZipTest : public ZipHandlerFixture {};

TEST_F(BadZipTest, NoDescriptorIsLeftOpen)
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

TEST_F(BadZipTest, AnEncryptedMemberIsSkipped)
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

TEST_F(BadZipTest, AMemberOfAnUnknownMethodIsSkipped)
{
    for (const std::uint16_t method : {std::uint16_t{6}, std::uint16_t{97}, std::uint16_t{65535}}) {
        ExpectSkipped({.name = "x.cdg", .contents = "1", .method = method},
                      "compressed by an unknown method");
    }
}

TEST_F(BadZipTest, AMemberThatSaysItIsTooLargeIsNotEvenRead)
{
    const auto over = static_cast<std::uint32_t>(kLargest + 1);
    ExpectSkipped({.name = "x.cdg", .contents = "1", .size = over}, "larger than 1048576 bytes");
    ExpectSkipped({.name = "x.cdg", .contents = "1", .size = 0xFFFFFFFE}, "larger than");
    const std::string largest(kLargest, 'x');
    EXPECT_THAT(UnpackOne({.name = "x.cdg", .contents = largest}).members,
                ElementsAre(Pair("x.cdg", largest)));
}

TEST_F(BadZipTest, AMemberOfAnotherSizeThanItSaysIsSkipped)
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

TEST_F(BadZipTest, AMemberWithAWrongChecksumIsSkipped)
{
    ExpectSkipped({.name = "x.cdg", .contents = "1", .checksum = 1}, "wrong checksum");
    ExpectSkipped({.name = "x.cdg", .contents = "1", .isDeflated = true, .checksum = 1},
                  "wrong checksum");
}

TEST_F(BadZipTest, ADamagedMemberIsSkipped)
{
    ExpectSkipped({.name = "x.cdg", .contents = Noise(500), .method = 8}, "damaged: ");
    ExpectSkipped({.name = "x.cdg", .contents = "1", .offset = 3}, "damaged: ");
    ExpectSkipped({.name = "x.cdg", .contents = "1", .size = 900'000, .storedSize = 900'000},
                  "damaged: ");
}

TEST_F(BadZipTest, ABombEndsAtWhatItSays)
{
    const std::string zeros(4 << 20, '\0');
    ExpectSkipped({.name = "x.cdg", .contents = zeros, .isDeflated = true}, "larger than");
    ExpectSkipped({.name = "x.cdg", .contents = zeros, .isDeflated = true, .size = 1000},
                  "wrong size");
}

TEST_F(BadZipTest, WhatWouldGrowBeyondMeasureIsNotUnpacked)
{
    const HandMadeMember bomb = {.name = "x.wav",
                                 .contents = std::string(100'000, '\0'),
                                 .isDeflated = true,
                                 .size = 70 << 20};
    WriteFile(m_folder / "a.zip", HandMadeZip({bomb}));
    const Outcome outcome = Unpack(m_folder / "a.zip", {}, kLargestZipMember);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_THAT(outcome.skipped, ElementsAre(Pair("x.wav", StartsWith("no song: "))));
}

TEST_F(BadZipTest, NoMemoryIsTakenForASizeThatIsOnlyTold)
{
    constexpr std::uint32_t kTold = 60 << 20;
    WriteFile(m_folder / "a.zip",
              HandMadeZip({{.name = "a.cdg", .contents = "1", .isDeflated = true, .size = kTold}}));
    const auto peakKibibytes = [] {
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss;
    };
    const long before = peakKibibytes();
    const Outcome outcome = Unpack(m_folder / "a.zip", {}, kLargestZipMember);
    EXPECT_THAT(outcome.skipped, ElementsAre(Pair("a.cdg", "wrong size")));
    EXPECT_LT(peakKibibytes() - before, 50'000);
}

TEST_F(BadZipTest, AnArchiveCutOffAnywhereEnds)
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

TEST_F(BadZipTest, AnArchiveWithAnyByteWrongEnds)
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

TEST_F(BadZipTest, AnArchiveWithoutMembersIsReadAndEmpty)
{
    const Outcome outcome = UnpackBytes(HandMadeZip({}));
    EXPECT_EQ(outcome.result, 0);
    EXPECT_THAT(outcome.skipped, IsEmpty());
}

TEST_F(BadZipTest, WhatIsNoArchiveEndsAtOnce)
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
