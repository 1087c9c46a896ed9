// SPDX-License-Identifier: GPL-3.0-or-later
#include "ActivationToken.h"

#include "OwnedDescriptor.h"
#include "Process.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

using test::ReadFile;
using test::ScratchFolder;
using test::WriteFile;

class ActivationToken : public ::testing::Test {
protected:
    std::filesystem::path File() const { return m_folder / "link.token"; }
    void Leave(const QByteArray& token) const { LeaveActivationToken(m_link, token); }
    QByteArray Take() const { return TakeActivationToken(m_link); }
    bool IsThere() const
    {
        struct stat status = {};
        return lstat(File().c_str(), &status) == 0;
    }

    ScratchFolder m_folder;
    const QByteArray m_link = QByteArray::fromStdString((m_folder / "link").string());
};

TEST_F(ActivationToken, IsTakenOnceAndIsForTheUserAlone)
{
    Leave("gnome-shell/Files/1234-5-host_TIME678");
    struct stat status = {};
    ASSERT_EQ(stat(File().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    EXPECT_EQ(Take(), "gnome-shell/Files/1234-5-host_TIME678");
    EXPECT_FALSE(IsThere());
    EXPECT_EQ(Take(), "");
}

TEST_F(ActivationToken, TheLastOneCounts)
{
    Leave("a much longer first one");
    Leave("second");
    EXPECT_EQ(Take(), "second");
}

TEST_F(ActivationToken, AStartWithoutOneTakesAwayWhatWasLeft)
{
    Leave("old");
    Leave("");
    EXPECT_FALSE(IsThere());
    EXPECT_EQ(Take(), "");
}

TEST_F(ActivationToken, WhatIsNoneIsNotLeft)
{
    for (const QByteArray& bytes :
         {QByteArray("two\nlines"), QByteArray("nul\0inside", 10), QByteArray("caf\xC3\xA9"),
          QByteArray("del\x7F"), QByteArray(kLongestToken + 1, 'a')}) {
        Leave(bytes);
        EXPECT_FALSE(IsThere()) << bytes.toPercentEncoding().constData();
    }
    Leave("blank ~");
    EXPECT_EQ(Take(), "blank ~");
    Leave(QByteArray(kLongestToken, 'a'));
    EXPECT_EQ(Take().size(), kLongestToken);
}

TEST_F(ActivationToken, AFileThatHoldsNoneGivesNoneAndGoes)
{
    for (const std::string& bytes : {std::string(), std::string("two\nlines"), std::string(1, '\0'),
                                     std::string("\xFF"), std::string(1 << 20, 'a')}) {
        WriteFile(File(), bytes);
        EXPECT_EQ(Take(), "");
        EXPECT_FALSE(IsThere());
    }
}

TEST_F(ActivationToken, WhatIsNoFileIsNeitherReadNorWaitedFor)
{
    ASSERT_EQ(mkfifo(File().c_str(), 0600), 0);
    EXPECT_EQ(Take(), "");
    EXPECT_FALSE(IsThere());

    WriteFile(m_folder / "secret", "token");
    std::filesystem::create_symlink(m_folder / "secret", File());
    EXPECT_EQ(Take(), "");
    EXPECT_FALSE(IsThere());
    std::filesystem::create_symlink(m_folder / "secret", File());
    Leave("mine");
    EXPECT_EQ(ReadFile(m_folder / "secret"), "token");
    EXPECT_EQ(Take(), "mine");

    std::filesystem::create_directory(File());
    Leave("mine");
    EXPECT_EQ(Take(), "");
}

TEST_F(ActivationToken, WhatAWriterSaysThroughAPipeIsNone)
{
    ASSERT_EQ(mkfifo(File().c_str(), 0600), 0);
    const OwnedDescriptor writer(open(File().c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(write(writer.Number(), "token", 5), 5);
    EXPECT_EQ(Take(), "");
    EXPECT_FALSE(IsThere());
}

// A part of one would look like another one.
TEST_F(ActivationToken, OneThatFindsNoRoomIsNotLeft)
{
    struct rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    struct rlimit small = before;
    small.rlim_cur = 3;
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    Leave("token");
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    signal(SIGXFSZ, handler);
    EXPECT_FALSE(IsThere());
    EXPECT_EQ(Take(), "");
}

TEST_F(ActivationToken, WithoutALinkThereIsNone)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Path());
    WriteFile(".token", "another's");
    LeaveActivationToken({}, "token");
    EXPECT_EQ(TakeActivationToken({}), "");
    EXPECT_EQ(ReadFile(".token"), "another's") << "nothing of the working folder is touched";
    std::filesystem::current_path(before);
    LeaveActivationToken("/nowhere/link", "token");
    EXPECT_EQ(TakeActivationToken("/nowhere/link"), "");
}

} // namespace
} // namespace lantern
