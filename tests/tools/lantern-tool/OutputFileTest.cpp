// SPDX-License-Identifier: GPL-3.0-or-later
#include "OutputFile.h"
#include "Interruption.h"
#include "Process.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lantern::tool {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class OutputFileTest : public ::testing::Test {
protected:
    QString In(const std::string& name) const
    {
        return QString::fromStdString((m_folder / name).native());
    }
    std::string Text(const std::string& name) const { return test::ReadFile(m_folder / name); }
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path()))
            names.push_back(entry.path().filename());
        std::ranges::sort(names);
        return names;
    }
    std::string Kept(const std::string& name) const
    {
        return "Cannot write " + In(name).toStdString() + ": it exists (--force replaces it)";
    }

    test::ScratchFolder m_folder;
};

TEST_F(OutputFileTest, NobodySeesItUnderItsNameBeforeItIsPut)
{
    OutputFile file;
    ASSERT_EQ(file.Open(In("a"), IfExists::Keep).toStdString(), "");
    EXPECT_EQ(file.Write("one ").toStdString(), "");
    EXPECT_FALSE(std::filesystem::exists(m_folder / "a"));
    EXPECT_EQ(file.Write("two").toStdString(), "");
    EXPECT_EQ(file.Put().toStdString(), "");
    EXPECT_EQ(Text("a"), "one two");
    EXPECT_THAT(Names(), ElementsAre("a"));
}

TEST_F(OutputFileTest, WhatIsNotPutGoesAway)
{
    {
        OutputFile file;
        ASSERT_EQ(file.Open(In("a"), IfExists::Keep).toStdString(), "");
        EXPECT_EQ(file.Write("half").toStdString(), "");
        EXPECT_EQ(Names().size(), 1U);
    }
    EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(OutputFileTest, OneThatExistsIsKeptAndKnownAtOnce)
{
    test::WriteFile(m_folder / "a", "mine");
    OutputFile file;
    EXPECT_EQ(file.Open(In("a"), IfExists::Keep).toStdString(), Kept("a"));
    EXPECT_THAT(Names(), ElementsAre("a"));
    EXPECT_EQ(WriteOutput(In("a"), "new", IfExists::Replace).toStdString(), "");
    EXPECT_EQ(Text("a"), "new");
}

TEST_F(OutputFileTest, OfTwoRunsToOneFileTheFirstThatPutsItWins)
{
    OutputFile first;
    OutputFile second;
    ASSERT_EQ(first.Open(In("a"), IfExists::Keep).toStdString(), "");
    ASSERT_EQ(second.Open(In("a"), IfExists::Keep).toStdString(), "");
    EXPECT_EQ(second.Write("second").toStdString(), "");
    EXPECT_EQ(first.Write("first").toStdString(), "");
    EXPECT_EQ(second.Put().toStdString(), "");
    EXPECT_EQ(first.Put().toStdString(), Kept("a"));
    EXPECT_EQ(Text("a"), "second");
}

TEST_F(OutputFileTest, ReplacedItIsWholeAtAnyMoment)
{
    test::WriteFile(m_folder / "a", "old");
    chmod((m_folder / "a").c_str(), 0604);
    OutputFile file;
    ASSERT_EQ(file.Open(In("a"), IfExists::Replace).toStdString(), "");
    EXPECT_EQ(file.Write("new").toStdString(), "");
    EXPECT_EQ(Text("a"), "old");
    EXPECT_EQ(file.Put().toStdString(), "");
    EXPECT_EQ(Text("a"), "new");
    struct stat status = {};
    ASSERT_EQ(stat((m_folder / "a").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0604U);
}

TEST_F(OutputFileTest, ALinkStaysALinkEvenToNothing)
{
    std::filesystem::create_symlink("b", m_folder / "a");
    EXPECT_EQ(WriteOutput(In("a"), "new", IfExists::Keep).toStdString(), "");
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder / "a"));
    EXPECT_EQ(Text("b"), "new");
    EXPECT_EQ(WriteOutput(In("a"), "newer", IfExists::Keep).toStdString(), Kept("a"));
}

TEST_F(OutputFileTest, ANameMayBeAsLongAsNamesCanBe)
{
    const std::string name(255, 'x');
    EXPECT_EQ(WriteOutput(In(name), "text", IfExists::Keep).toStdString(), "");
    EXPECT_EQ(Text(name), "text");
    EXPECT_NE(WriteOutput(In(name + 'x'), "text", IfExists::Keep).toStdString(), "");
    EXPECT_NE(WriteOutput(In("a") + QChar(u'\0') + u'b', "text", IfExists::Keep).toStdString(), "");
    EXPECT_THAT(Names(), ElementsAre(name));
}

TEST_F(OutputFileTest, WhatIsNoFileIsWrittenWhereItIs)
{
    EXPECT_EQ(WriteOutput(QStringLiteral("/dev/null"), "text", IfExists::Keep).toStdString(), "");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_EQ(WriteOutput(QStringLiteral("/dev/full"), "text", IfExists::Replace).toStdString(),
              "Cannot write /dev/full: No space left on device");
}

// What a child has half written as the signal comes; how it ended.
int EndedBy(int signal, const QString& path, bool isIgnored)
{
    std::array<int, 2> written = {};
    if (pipe(written.data()) != 0)
        return -1;
    const pid_t child = fork();
    if (child == 0) {
        std::signal(signal, isIgnored ? SIG_IGN : SIG_DFL);
        Interruption::Watch();
        OutputFile file;
        const bool isGood = file.Open(path, IfExists::Keep).isEmpty() &&
                            file.Write("half").isEmpty() && write(written[1], "x", 1) == 1;
        usleep(isIgnored ? 200'000 : 30'000'000);
        _exit(isGood ? 0 : 99);
    }
    char byte = 0;
    EXPECT_EQ(read(written[0], &byte, 1), 1);
    EXPECT_FALSE(
        std::filesystem::is_empty(std::filesystem::path(path.toStdString()).parent_path()));
    kill(child, signal);
    int status = 0;
    waitpid(child, &status, 0);
    close(written[0]);
    close(written[1]);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

TEST_F(OutputFileTest, ASignalToEndLeavesNoHalfFile)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        EXPECT_EQ(EndedBy(signal, In("a"), false), 128 + signal);
        EXPECT_THAT(Names(), IsEmpty()) << signal;
    }
}

// As head and less do it, which leave when they have seen enough.
TEST_F(OutputFileTest, AReaderThatHasGoneLeavesNoHalfFile)
{
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        Interruption::Watch();
        std::array<int, 2> ends = {};
        OutputFile file;
        if (!file.Open(In("a"), IfExists::Keep).isEmpty() || !file.Write("half").isEmpty() ||
            pipe(ends.data()) != 0 || close(ends[0]) != 0)
            _exit(99);
        _exit(write(ends[1], "x", 1) == 1 ? 98 : 97);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGPIPE) << status;
    EXPECT_THAT(Names(), IsEmpty());
}

// As nohup does it.
TEST_F(OutputFileTest, ASignalThatIsIgnoredEndsNothing)
{
    EXPECT_EQ(EndedBy(SIGHUP, In("a"), true), 0);
}

} // namespace
} // namespace lantern::tool
