// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipDirectory.h"

#include "HandMadeZip.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <vector>

namespace lantern {
namespace {

using ::testing::IsEmpty;

std::string Bytes(std::uint64_t value, int size)
{
    std::string bytes;
    for (int i = 0; i < size; ++i)
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    return bytes;
}

std::string Joined(std::initializer_list<std::string> pieces)
{
    std::string whole;
    for (const std::string& piece : pieces)
        whole += piece;
    return whole;
}

std::string EndRecord(std::uint64_t size, std::uint64_t offset, const std::string& comment = {},
                      std::uint64_t disk = 0)
{
    return Joined({"PK\5\6", Bytes(disk, 2), Bytes(disk, 2), Bytes(1, 2), Bytes(1, 2),
                   Bytes(size, 4), Bytes(offset, 4), Bytes(comment.size(), 2), comment});
}

// The 64-bit record, said to be at the offset, with its locator.
std::string EndRecord64(std::uint64_t size, std::uint64_t directory, std::uint64_t offset)
{
    return Joined({"PK\6\6", Bytes(44, 8), std::string(12, '\0'), Bytes(1, 8), Bytes(1, 8),
                   Bytes(size, 8), Bytes(directory, 8), "PK\6\7", Bytes(0, 4), Bytes(offset, 8),
                   Bytes(1, 4)});
}

constexpr std::uint64_t kMark = 0xFFFFFFFF;
constexpr std::size_t kEndSize = 22;

// An archive of one member in its pieces.
struct Pieces {
    std::string member;
    std::string directory;
    std::string end;
};
Pieces OneMember(const std::string& name = "a.cdg")
{
    const std::string whole = test::HandMadeZip({{.name = name, .contents = "packets"}});
    const std::size_t directory = whole.find("PK\1\2");
    return {whole.substr(0, directory),
            whole.substr(directory, whole.size() - directory - kEndSize),
            whole.substr(whole.size() - kEndSize)};
}

ZipDirectory Read(const std::string& archive)
{
    return ReadZipDirectory(MemoryBytes(archive));
}

// That the member is found and the header is where it says.
void ExpectMember(const std::string& archive, const std::string& name = "a.cdg")
{
    const ZipDirectory directory = Read(archive);
    EXPECT_EQ(directory.failure.toStdString(), "");
    ASSERT_EQ(directory.entries.size(), 1U);
    const ZipEntry& entry = directory.entries[0];
    EXPECT_EQ(entry.name, name);
    EXPECT_EQ(entry.size, 7U);
    const std::uint64_t data = OffsetOfData(MemoryBytes(archive), entry);
    EXPECT_EQ(archive.substr(data, 7), "packets");
}

void ExpectFailure(const std::string& archive, const std::string& reason)
{
    const ZipDirectory directory = Read(archive);
    EXPECT_EQ(directory.failure.toStdString(), reason);
    EXPECT_THAT(directory.entries, IsEmpty());
}

TEST(ZipDirectory, AMemberIsFound)
{
    const auto [member, directory, end] = OneMember();
    ExpectMember(member + directory + end);
}

TEST(ZipDirectory, SomethingInFrontDoesNotMatter)
{
    const auto [member, directory, end] = OneMember();
    for (const std::size_t before : {1U, 1000U, 3'000'000U})
        ExpectMember(Joined({std::string(before, 'x'), member, directory, end}));
    // A self-extractor that has corrected the offsets.
    const std::string program(512, 'x');
    std::string corrected = directory;
    corrected.replace(42, 4, Bytes(program.size(), 4));
    ExpectMember(Joined(
        {program, member, corrected, EndRecord(directory.size(), program.size() + member.size())}));
}

TEST(ZipDirectory, SomethingBehindDoesNotMatter)
{
    const auto [member, directory, end] = OneMember();
    for (const std::size_t behind : {1U, 70'000U, 900'000U})
        ExpectMember(Joined({member, directory, end, std::string(behind, '\0')}));
    ExpectMember(Joined({member, directory,
                         EndRecord(directory.size(), member.size(),
                                   "a comment, as long as can be" + std::string(65'000, 'c'))}));
}

TEST(ZipDirectory, SomethingBetweenDirectoryAndEndDoesNotMatter)
{
    const auto [member, directory, end] = OneMember();
    ExpectMember(Joined({member, directory, "a signature, for instance", end}));
}

TEST(ZipDirectory, AnEndRecordInACommentIsPassedOver)
{
    const auto [member, directory, end] = OneMember();
    for (const std::string& fake : {EndRecord(400, 0), EndRecord(46, 1), EndRecord(kMark, kMark),
                                    Joined({"PK\1\2", std::string(42, '\xFF'), EndRecord(46, 0)})})
        ExpectMember(Joined(
            {member, directory, EndRecord(directory.size(), member.size(), fake + "and more")}));
}

TEST(ZipDirectory, TheSixtyFourBitRecordCountsWhereTheOtherHasMarks)
{
    const auto [member, directory, end] = OneMember();
    const std::uint64_t at = member.size() + directory.size();
    const std::string end64 = EndRecord64(directory.size(), member.size(), at);
    for (const std::string& marked :
         {EndRecord(kMark, kMark), EndRecord(directory.size(), kMark),
          EndRecord(kMark, member.size()), EndRecord(directory.size(), member.size(), {}, 0xFFFF)})
        ExpectMember(Joined({member, directory, end64, marked}));
    // In front of which something stands that the locator doesn't know of.
    ExpectMember(
        Joined({std::string(500, 'x'), member, directory, end64, EndRecord(kMark, kMark)}));
}

TEST(ZipDirectory, NumbersOfAMemberMayBeSixtyFourBitsLong)
{
    auto [member, directory, end] = OneMember();
    directory.replace(20, 4 + 4, Bytes(kMark, 4) + Bytes(kMark, 4));
    directory.replace(42, 4, Bytes(kMark, 4));
    // The field of another kind in front is passed over, the order is size, stored size, offset.
    const std::string extra = Joined({Bytes(0x5455, 2), Bytes(5, 2), "times", Bytes(1, 2),
                                      Bytes(24, 2), Bytes(7, 8), Bytes(8, 8), Bytes(0, 8)});
    directory.replace(30, 2, Bytes(extra.size(), 2));
    directory += extra;
    const ZipDirectory read = Read(member + directory + EndRecord(directory.size(), member.size()));
    ASSERT_EQ(read.entries.size(), 1U);
    EXPECT_EQ(read.entries[0].size, 7U);
    EXPECT_EQ(read.entries[0].storedSize, 8U);
    EXPECT_EQ(read.entries[0].offset, 0U);
}

TEST(ZipDirectory, AnExtraFieldThatIsCutOffIsLeftAlone)
{
    for (std::size_t size = 0; size < 12; ++size) {
        auto [member, directory, end] = OneMember();
        directory.replace(24, 4, Bytes(kMark, 4));
        const std::string extra = Joined({Bytes(1, 2), Bytes(8, 2), Bytes(7, 8)}).substr(0, size);
        directory.replace(30, 2, Bytes(size, 2));
        directory += extra;
        const auto read = Read(member + directory + EndRecord(directory.size(), member.size()));
        ASSERT_EQ(read.entries.size(), 1U) << size;
        EXPECT_EQ(read.entries[0].size, kMark) << size;
    }
}

TEST(ZipDirectory, AMemberMayHaveAComment)
{
    auto [member, directory, end] = OneMember();
    const std::string comment = "ripped with care";
    directory.replace(32, 2, Bytes(comment.size(), 2));
    directory += comment;
    const std::string two = directory + directory;
    const auto read = Read(member + two + EndRecord(two.size(), member.size()));
    EXPECT_EQ(read.failure.toStdString(), "");
    EXPECT_EQ(read.entries.size(), 2U);
}

TEST(ZipDirectory, APartOfASplitArchiveSaysSo)
{
    const auto [member, directory, end] = OneMember();
    ExpectFailure(Joined({member, directory, EndRecord(directory.size(), member.size(), {}, 3)}),
                  "one part of a split archive");
}

TEST(ZipDirectory, ADirectoryThatIsNotWhereItShouldBeIsMissing)
{
    const auto [member, directory, end] = OneMember();
    ExpectFailure(member + end, "the directory is missing");
    ExpectFailure(end, "the directory is missing");
    ExpectFailure(EndRecord(1 << 20, 1 << 20), "the directory is missing");
}

TEST(ZipDirectory, ADirectoryCutOffOrOfOtherBytesIsDamaged)
{
    const auto [member, directory, end] = OneMember();
    for (std::size_t size = 4; size < directory.size(); ++size) {
        ExpectFailure(Joined({member, directory.substr(0, size), EndRecord(size, member.size())}),
                      "the directory is damaged");
    }
    ExpectFailure(
        Joined({member, directory, "PK?", EndRecord(directory.size() + 3, member.size())}),
        "the directory is damaged");
}

TEST(ZipDirectory, WhatIsNoArchiveSaysSo)
{
    const std::string end = OneMember().end;
    for (const std::string& bytes : {std::string(), std::string("PK\5\6"), std::string(70'000, 'P'),
                                     end.substr(0, 21), std::string(end).replace(3, 1, "7")})
        ExpectFailure(bytes, "Not a zip archive");
}

// As many members as make a directory of 16 MiB, of which the last name may be longer.
std::string ZipOfLongNames(std::size_t longer)
{
    constexpr std::size_t kEntry = 65536;
    constexpr std::size_t kName = kEntry - 46;
    std::vector<test::HandMadeMember> members((std::size_t{16} << 20) / kEntry);
    for (test::HandMadeMember& member : members)
        member.name = std::string(kName, 'x');
    members.back().name += std::string(longer, 'y');
    return test::HandMadeZip(members);
}

TEST(ZipDirectory, AVastDirectoryIsNotRead)
{
    const ZipDirectory largest = Read(ZipOfLongNames(0));
    EXPECT_EQ(largest.failure.toStdString(), "");
    EXPECT_EQ(largest.entries.size(), 256U);
    ExpectFailure(ZipOfLongNames(1), "the directory is larger than 16 MiB");
    ExpectFailure(
        Joined({std::string(1000, 'x'), EndRecord64(60 << 20, 0, 1000), EndRecord(kMark, kMark)}),
        "the directory is larger than 16 MiB");
}

TEST(ZipDirectory, AMemberIsWhereItsHeaderIs)
{
    const auto [member, directory, end] = OneMember();
    const std::string archive = member + directory + end;
    ZipEntry entry = Read(archive).entries.at(0);
    for (const std::uint64_t elsewhere : {std::uint64_t{1}, std::uint64_t{archive.size() - 20},
                                          std::uint64_t{archive.size()}, ~std::uint64_t{0}}) {
        entry.offset = elsewhere;
        EXPECT_EQ(OffsetOfData(MemoryBytes(archive), entry), 0U);
    }
}

} // namespace
} // namespace lantern
