// SPDX-License-Identifier: GPL-3.0-or-later
#include "DirectoryClaims.h"

#include "HandMadeZip.h"
#include "MakeZipHandler.h"
#include "PathText.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <unistd.h>
#include <vector>

namespace lantern {
namespace {

std::string LittleEndian(std::uint64_t value, int size)
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

std::string EndRecord(std::uint64_t entries, std::uint64_t bytes, const std::string& comment = {})
{
    return Joined({"PK\5\6", std::string(4, '\0'), LittleEndian(entries, 2),
                   LittleEndian(entries, 2), LittleEndian(bytes, 4), LittleEndian(0, 4),
                   LittleEndian(comment.size(), 2), comment});
}

// The 64-bit record, at the offset given, with its locator and an end record that points to it.
std::string EndRecord64(std::uint64_t entries, std::uint64_t bytes, std::uint64_t offset)
{
    return Joined({"PK\6\6", LittleEndian(44, 8), std::string(12, '\0'), LittleEndian(entries, 8),
                   LittleEndian(entries, 8), LittleEndian(bytes, 8), LittleEndian(0, 8), "PK\6\7",
                   LittleEndian(0, 4), LittleEndian(offset, 8), LittleEndian(1, 4),
                   EndRecord(0xFFFF, 0xFFFFFFFF)});
}

class DirectoryClaimsTest : public ::testing::Test {
protected:
    DirectoryClaimsTest() : m_descriptor(mkstemp(m_path)) {}
    ~DirectoryClaimsTest() override
    {
        close(m_descriptor);
        unlink(m_path);
    }

    std::uint64_t BytesClaimed(const std::string& archive)
    {
        Write(archive);
        return ClaimedDirectoryBytes(m_descriptor, static_cast<std::int64_t>(archive.size()));
    }
    // Why the archive can't be used; empty if it can.
    QString ReasonAgainst(const std::string& bytes)
    {
        Write(bytes);
        QString reason;
        const auto handler = MakeZipHandler();
        handler->MemberSkipped = [&](const QString& name, const QString& why) {
            if (name.isEmpty())
                reason = why;
        };
        handler->ZipOpenArchive(TextFromNative(m_path));
        std::int32_t result = 0;
        handler->ZipRun(result);
        return reason;
    }

private:
    void Write(const std::string& bytes)
    {
        ASSERT_EQ(ftruncate(m_descriptor, 0), 0);
        ASSERT_EQ(pwrite(m_descriptor, bytes.data(), bytes.size(), 0),
                  static_cast<ssize_t>(bytes.size()));
    }

    char m_path[32] = "/tmp/lantern-claims-XXXXXX";
    int m_descriptor;
};

TEST_F(DirectoryClaimsTest, TheEndRecordTellsOfTheDirectory)
{
    EXPECT_EQ(BytesClaimed(Joined({std::string(100, 'x'), EndRecord(7, 0x12345678)})), 0x12345678u);
    EXPECT_EQ(BytesClaimed(EndRecord(7, 400)), 400u);
}

TEST_F(DirectoryClaimsTest, TheRecordIsFoundBeforeTheLongestComment)
{
    EXPECT_EQ(BytesClaimed(Joined({"x", EndRecord(7, 400, std::string(65535, 'c'))})), 400u);
}

TEST_F(DirectoryClaimsTest, TheLongRecordCountsWhereThereIsOne)
{
    const std::uint64_t many = 0x0123456789ABCDEF;
    for (const std::size_t before : {0U, 3U, 300U, 70'000U}) {
        EXPECT_EQ(BytesClaimed(Joined({std::string(before, 'x'), EndRecord64(5, many, before)})),
                  many);
        EXPECT_EQ(
            BytesClaimed(Joined({std::string(before, 'x'), EndRecord64(5, many, before + 1)})),
            0xFFFFFFFFU);
    }
}

TEST_F(DirectoryClaimsTest, ALongRecordThatIsCutOffClaimsNothing)
{
    const std::string whole = EndRecord64(5, 1, 98);
    ASSERT_EQ(whole.size(), 98u);
    EXPECT_EQ(BytesClaimed(Joined({whole, "PK\6\6", std::string(43, '\xFF')})), 0xFFFFFFFFu);
    EXPECT_EQ(BytesClaimed(Joined({whole, "PK\6\6", std::string(44, '\xFF')})), ~0ull);
}

TEST_F(DirectoryClaimsTest, TheLargestOfSeveralClaimsCounts)
{
    EXPECT_EQ(BytesClaimed(Joined({EndRecord(9, 900), EndRecord(7, 400)})), 900u);
    EXPECT_EQ(BytesClaimed(Joined({EndRecord(9, 400), EndRecord(7, 900)})), 900u);
}

TEST_F(DirectoryClaimsTest, WhatIsNoArchiveClaimsNothing)
{
    for (const std::string& bytes :
         {std::string(), std::string("PK\5\6"), std::string(70000, 'P'),
          EndRecord(7, 400).substr(0, 21), EndRecord(7, 400).replace(3, 1, "7"),
          Joined({"PK\6\7", std::string(16, '\xFF'), EndRecord(0, 0)})})
        EXPECT_EQ(BytesClaimed(bytes), 0u);
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

TEST_F(DirectoryClaimsTest, AnArchiveWithAVastDirectoryIsNotRead)
{
    EXPECT_EQ(ReasonAgainst(ZipOfLongNames(0)), QString());
    EXPECT_EQ(ReasonAgainst(ZipOfLongNames(1)), QStringLiteral("Malloc failure"));
    const std::string vast = Joined({std::string(1000, 'x'), EndRecord64(9, 60 << 20, 1000)});
    EXPECT_EQ(ReasonAgainst(vast), QStringLiteral("Malloc failure"));
}

} // namespace
} // namespace lantern
