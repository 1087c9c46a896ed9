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

    DirectoryClaims ClaimsOf(const std::string& bytes)
    {
        Write(bytes);
        return ReadDirectoryClaims(m_descriptor, static_cast<std::int64_t>(bytes.size()));
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
    const DirectoryClaims claims = ClaimsOf(Joined({std::string(100, 'x'), EndRecord(7, 400)}));
    EXPECT_EQ(claims.entries, 7u);
    EXPECT_EQ(claims.bytes, 400u);
}

TEST_F(DirectoryClaimsTest, TheRecordIsFoundBeforeTheLongestComment)
{
    EXPECT_EQ(ClaimsOf(Joined({"x", EndRecord(7, 400, std::string(65535, 'c'))})).entries, 7u);
}

TEST_F(DirectoryClaimsTest, TheLongRecordCountsWhereThereIsOne)
{
    const std::uint64_t many = std::uint64_t{1} << 40;
    const DirectoryClaims claims = ClaimsOf(Joined({"abc", EndRecord64(5'000'000, many, 3)}));
    EXPECT_EQ(claims.entries, 5'000'000u);
    EXPECT_EQ(claims.bytes, many);
}

TEST_F(DirectoryClaimsTest, TheLargestOfSeveralClaimsCounts)
{
    EXPECT_EQ(ClaimsOf(Joined({EndRecord(9, 900), EndRecord(7, 400)})).bytes, 900u);
}

TEST_F(DirectoryClaimsTest, WhatIsNoArchiveClaimsNothing)
{
    for (const std::string& bytes :
         {std::string(), std::string("PK\5\6"), std::string(70000, 'P'),
          Joined({"PK\6\7", std::string(16, '\xFF'), EndRecord(0, 0)})}) {
        EXPECT_EQ(ClaimsOf(bytes).entries, 0u);
        EXPECT_EQ(ClaimsOf(bytes).bytes, 0u);
    }
}

TEST_F(DirectoryClaimsTest, AnArchiveWithAVastDirectoryIsNotRead)
{
    EXPECT_EQ(ReasonAgainst(test::HandMadeZip({{"a.cdg", "abc"}})), QString());
    EXPECT_NE(ReasonAgainst(EndRecord(9, 17 << 20)), QString());
    const std::string vast =
        Joined({std::string(1000, 'x'), EndRecord64(1'000'000, 60 << 20, 1000)});
    EXPECT_EQ(ReasonAgainst(vast), QStringLiteral("Malloc failure"));
}

} // namespace
} // namespace lantern
