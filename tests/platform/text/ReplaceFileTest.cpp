// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReplaceFile.h"

#include "PathText.h"
#include "Process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <set>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

constexpr uid_t kNobody = 65534;

// The administrator may write everything: what is refused shows to somebody else.
class AsNobody {
public:
    AsNobody() { std::ignore = geteuid() == 0 ? seteuid(kNobody) : 0; }
    ~AsNobody() { std::ignore = getuid() == 0 ? seteuid(0) : 0; }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;
};

// Files can't grow beyond the size, as on a disk that is full.
class FullDisk {
public:
    explicit FullDisk(rlim_t size)
    {
        signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit = {size, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        signal(SIGXFSZ, SIG_DFL);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_before = {};
};

class ReplaceFileTest : public ::testing::Test {
protected:
    QString In(const char* name) const
    {
        return TextFromNative((m_folder / name).native().c_str());
    }
    void Make(const char* name, const char* bytes = "old") const
    {
        test::WriteFile(m_folder / name, bytes);
    }
    std::string Bytes(const char* name) const { return test::ReadFile(m_folder / name); }
    std::set<std::string> Names() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path()))
            names.insert(entry.path().filename());
        return names;
    }
    struct stat StatusOf(const char* name) const
    {
        struct stat status = {};
        EXPECT_EQ(lstat((m_folder / name).c_str(), &status), 0);
        return status;
    }
    mode_t Permissions(const char* name) const { return StatusOf(name).st_mode & 07777; }
    void GiveToNobody(const std::filesystem::path& path) const
    {
        if (geteuid() == 0) {
            ASSERT_EQ(chown(path.c_str(), kNobody, kNobody), 0);
        }
    }

    const test::ScratchFolder m_folder;
};

TEST_F(ReplaceFileTest, TheNewBytesTakeThePlaceOfTheOldOnes)
{
    Make("a", "old and long");
    EXPECT_EQ(ReplaceFile(In("a"), "new"), 0);
    EXPECT_EQ(Bytes("a"), "new");
    EXPECT_EQ(ReplaceFile(In("a"), ""), 0);
    EXPECT_EQ(Bytes("a"), "");
    EXPECT_EQ(Names(), std::set<std::string>{"a"});
}

TEST_F(ReplaceFileTest, AReaderKeepsAllOfTheOldBytes)
{
    Make("a", "old");
    const int reader = open((m_folder / "a").c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(ReplaceFile(In("a"), "new bytes"), 0);
    std::array<char, 16> bytes = {};
    EXPECT_EQ(read(reader, bytes.data(), bytes.size()), 3);
    EXPECT_STREQ(bytes.data(), "old");
    close(reader);
}

TEST_F(ReplaceFileTest, AFileThatIsNotThereIsMadeAsAnyProgramMakesOne)
{
    const mode_t before = umask(027);
    EXPECT_EQ(ReplaceFile(In("a"), "new"), 0);
    umask(before);
    EXPECT_EQ(Bytes("a"), "new");
    EXPECT_EQ(Permissions("a"), 0640U);
}

TEST_F(ReplaceFileTest, TheNameIsFoundWhateverItsLetterCase)
{
    Make("Data.ini");
    EXPECT_EQ(ReplaceFile(In("data.INI"), "new"), 0);
    EXPECT_EQ(Bytes("Data.ini"), "new");
    EXPECT_EQ(Names(), std::set<std::string>{"Data.ini"});
}

TEST_F(ReplaceFileTest, OwnerAndPermissionsStay)
{
    for (const mode_t mode : {0600U, 0640U, 0666U, 0700U}) {
        Make("a");
        ASSERT_EQ(chmod((m_folder / "a").c_str(), mode), 0);
        GiveToNobody(m_folder / "a");
        const struct stat before = StatusOf("a");
        EXPECT_EQ(ReplaceFile(In("a"), "new"), 0);
        EXPECT_EQ(Permissions("a"), mode);
        EXPECT_EQ(StatusOf("a").st_uid, before.st_uid);
        EXPECT_EQ(StatusOf("a").st_gid, before.st_gid);
    }
}

TEST_F(ReplaceFileTest, ALinkStaysALink)
{
    std::filesystem::create_directory(m_folder / "far");
    Make("far/file");
    std::filesystem::create_symlink("far/second", m_folder / "first");
    std::filesystem::create_symlink(m_folder / "far/file", m_folder / "far/second");
    EXPECT_EQ(ReplaceFile(In("first"), "new"), 0);
    EXPECT_EQ(Bytes("far/file"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder / "first"));
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder / "far/second"));
    EXPECT_EQ(Names(), (std::set<std::string>{"far", "first"}));
}

TEST_F(ReplaceFileTest, AsManyLinksStayAsTheSystemFollows)
{
    Make("0");
    for (int link = 1; link <= 40; ++link)
        std::filesystem::create_symlink(std::to_string(link - 1), m_folder / std::to_string(link));
    EXPECT_EQ(ReplaceFile(In("40"), "new"), 0);
    EXPECT_EQ(Bytes("0"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder / "1"));
}

TEST_F(ReplaceFileTest, AtTheEndOfALinkThatLeadsNowhereTheFileIsMade)
{
    std::filesystem::create_directory(m_folder / "far");
    std::filesystem::create_symlink("far/file", m_folder / "link");
    EXPECT_EQ(ReplaceFile(In("link"), "new"), 0);
    EXPECT_EQ(Bytes("far/file"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder / "link"));
}

TEST_F(ReplaceFileTest, LinksInACircleAreAnError)
{
    std::filesystem::create_symlink("b", m_folder / "a");
    std::filesystem::create_symlink("a", m_folder / "b");
    EXPECT_EQ(ReplaceFile(In("a"), "new"), ELOOP);
    EXPECT_EQ(Names(), (std::set<std::string>{"a", "b"}));
}

TEST_F(ReplaceFileTest, WhatAKilledProgramLeftBehindIsUsedUp)
{
    Make("a");
    Make("a.new", "the long rest of something");
    EXPECT_EQ(ReplaceFile(In("a"), "new"), 0);
    EXPECT_EQ(Bytes("a"), "new");
    EXPECT_EQ(Names(), std::set<std::string>{"a"});
}

TEST_F(ReplaceFileTest, WhatAnotherProgramIsWritingIsLeftToIt)
{
    Make("a");
    Make("a.new", "half");
    const int other = open((m_folder / "a.new").c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    EXPECT_EQ(ReplaceFile(In("a"), "new"), 0);
    EXPECT_EQ(Bytes("a"), "new");
    EXPECT_EQ(Bytes("a.new"), "half");
    EXPECT_EQ(Names(), (std::set<std::string>{"a", "a.new"}));
    close(other);
}

TEST_F(ReplaceFileTest, WhatHasTheNameOfTheNewFileIsLeftAlone)
{
    Make("a");
    Make("precious", "gold");
    std::filesystem::create_symlink("precious", m_folder / "a.new");
    EXPECT_EQ(ReplaceFile(In("a"), "new"), 0);
    EXPECT_EQ(Bytes("precious"), "gold");
    std::filesystem::remove(m_folder / "a.new");
    ASSERT_EQ(mkfifo((m_folder / "a.new").c_str(), 0600), 0);
    EXPECT_EQ(ReplaceFile(In("a"), "newer"), 0);
    EXPECT_EQ(Bytes("a"), "newer");
    EXPECT_EQ(Names(), (std::set<std::string>{"a", "a.new", "precious"}));
}

TEST_F(ReplaceFileTest, AFullDiskKeepsTheOldBytes)
{
    Make("a");
    {
        const FullDisk full(100);
        EXPECT_EQ(ReplaceFile(In("a"), QByteArray(101, 'x')), EFBIG);
        EXPECT_EQ(ReplaceFile(In("b"), QByteArray(101, 'x')), EFBIG);
    }
    EXPECT_EQ(Bytes("a"), "old");
    EXPECT_EQ(Names(), std::set<std::string>{"a"});
}

TEST_F(ReplaceFileTest, AFileThatMayNotBeWrittenIsRefused)
{
    Make("a");
    ASSERT_EQ(chmod((m_folder / "a").c_str(), 0444), 0);
    GiveToNobody(m_folder / "a");
    GiveToNobody(m_folder.Path());
    const AsNobody nobody;
    EXPECT_EQ(ReplaceFile(In("a"), "new"), EACCES);
    EXPECT_EQ(Bytes("a"), "old");
    EXPECT_EQ(Names(), std::set<std::string>{"a"});
}

TEST_F(ReplaceFileTest, InAFolderThatMayNotBeWrittenTheFileIsWrittenWhereItIs)
{
    Make("a", "old and long");
    GiveToNobody(m_folder / "a");
    ASSERT_EQ(chmod(m_folder.Path().c_str(), 0555), 0);
    {
        const AsNobody nobody;
        EXPECT_EQ(ReplaceFile(In("a"), "new"), 0);
        EXPECT_EQ(Bytes("a"), "new");
        EXPECT_EQ(ReplaceFile(In("b"), "new"), EACCES);
    }
    ASSERT_EQ(chmod(m_folder.Path().c_str(), 0755), 0);
}

TEST_F(ReplaceFileTest, WhatIsNoRegularFileIsWrittenToOrRefused)
{
    std::filesystem::create_directory(m_folder / "folder");
    ASSERT_EQ(mkfifo((m_folder / "fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/full", m_folder / "full");
    std::filesystem::create_symlink("/dev/null", m_folder / "null");
    EXPECT_EQ(ReplaceFile(In("folder"), "new"), EISDIR);
    EXPECT_EQ(ReplaceFile(In("fifo"), "new"), ENXIO);
    EXPECT_EQ(ReplaceFile(In("full"), "new"), ENOSPC);
    EXPECT_EQ(ReplaceFile(In("null"), "new"), 0);
    EXPECT_EQ(Names(), (std::set<std::string>{"fifo", "folder", "full", "null"}));

    const int reader = open((m_folder / "fifo").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    EXPECT_EQ(ReplaceFile(In("fifo"), "new"), 0);
    std::array<char, 8> bytes = {};
    EXPECT_EQ(read(reader, bytes.data(), bytes.size()), 3);
    close(reader);
}

TEST_F(ReplaceFileTest, NamesThatNoFileCanHaveAreRefused)
{
    EXPECT_EQ(ReplaceFile(In("none/a"), "new"), ENOENT);
    EXPECT_EQ(ReplaceFile(QString(), "new"), ENOENT);
    EXPECT_EQ(ReplaceFile(In("a") + QChar(u'\0') + u'b', "new"), EINVAL);
    EXPECT_EQ(Names(), std::set<std::string>{});
}

TEST_F(ReplaceFileTest, NoDescriptorIsLeftOpen)
{
    const int before = dup(STDIN_FILENO);
    close(before);
    Make("a");
    EXPECT_EQ(ReplaceFile(In("a"), "new"), 0);
    EXPECT_EQ(ReplaceFile(In("b"), "new"), 0);
    EXPECT_EQ(ReplaceFile(In("none/a"), "new"), ENOENT);
    const int after = dup(STDIN_FILENO);
    close(after);
    EXPECT_EQ(after, before);
}

} // namespace
} // namespace lantern
