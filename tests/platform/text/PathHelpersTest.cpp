// SPDX-License-Identifier: GPL-3.0-or-later
#include "PathHelpers.h"

#include "PathText.h"
#include "Process.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

class FileCheckTest : public ::testing::Test {
protected:
    QString Folder() const { return TextFromNative(m_folder.Path().native().c_str()); }
    QString In(const QString& name) const { return Folder() + u'/' + name; }
    QByteArray Native(const QString& name) const { return NativeFromText(In(name)); }
    void Make(const QString& name) { test::WriteFile(Native(name).toStdString(), ""); }

    test::ScratchFolder m_folder;
};

TEST_F(FileCheckTest, TellsFilesFoldersAndNothingApart)
{
    Make(QStringLiteral("a.cdg"));
    EXPECT_EQ(FileCheck(In(QStringLiteral("a.cdg"))), QStringLiteral("FILE"));
    EXPECT_EQ(FileCheck(Folder()), QStringLiteral("DIR"));
    EXPECT_EQ(FileCheck(Folder() + u'/'), QStringLiteral("DIR"));
    EXPECT_EQ(FileCheck(QStringLiteral("/")), QStringLiteral("DIR"));
    EXPECT_EQ(FileCheck(In(QStringLiteral("b.cdg"))), QString());
    EXPECT_EQ(FileCheck(QString()), QString());
    EXPECT_EQ(FileCheck(In(QStringLiteral("a.cdg/b"))), QString());
}

TEST_F(FileCheckTest, ADanglingLinkIsNothingAndALinkToAFolderIsAFolder)
{
    ASSERT_EQ(symlink("/no/such/file", Native(QStringLiteral("dangling")).constData()), 0);
    ASSERT_EQ(symlink("/", Native(QStringLiteral("root")).constData()), 0);
    EXPECT_EQ(FileCheck(In(QStringLiteral("dangling"))), QString());
    EXPECT_EQ(FileCheck(In(QStringLiteral("root"))), QStringLiteral("DIR"));
}

TEST_F(FileCheckTest, AFifoIsAFileAndIsLookedAtWithoutWaiting)
{
    ASSERT_EQ(mkfifo(Native(QStringLiteral("a.mp3")).constData(), 0600), 0);
    EXPECT_EQ(FileCheck(In(QStringLiteral("a.mp3"))), QStringLiteral("FILE"));
}

TEST_F(FileCheckTest, NeitherLetterCaseNorTheFormOfAccentsCounts)
{
    Make(QStringLiteral(u"Café.CDG"));
    EXPECT_EQ(FileCheck(In(QStringLiteral(u"caFÉ.cdg"))), QStringLiteral("FILE"));
    EXPECT_EQ(FileCheck(In(QStringLiteral(u"Cafe\u0301.CDG"))), QStringLiteral("FILE"));
}

TEST_F(FileCheckTest, NamesOfAnyBytesAreFound)
{
    const QString name = TextFromNative("\xFF\xE9.cdg");
    Make(name);
    EXPECT_EQ(FileCheck(In(name)), QStringLiteral("FILE"));
}

TEST(FolderOf, EndsWithTheLastSeparatorAndIsEmptyForABareName)
{
    EXPECT_EQ(FolderOf(QStringLiteral("/a/b.cdg"), u'/'), QStringLiteral("/a/"));
    EXPECT_EQ(FolderOf(QStringLiteral("b.cdg"), u'/'), QString());
    EXPECT_EQ(FolderOf(QStringLiteral("c:\\a/b"), u'\\'), QStringLiteral("c:\\"));
}

TEST(FileExtension, IsTheLowerCaseTextBehindTheLastDot)
{
    EXPECT_EQ(FileExtension(QStringLiteral("a.MP3")), QStringLiteral("mp3"));
    EXPECT_EQ(FileExtension(QStringLiteral("a.b.Cdg")), QStringLiteral("cdg"));
    EXPECT_EQ(FileExtension(QStringLiteral(".cdg")), QStringLiteral("cdg"));
    EXPECT_EQ(FileExtension(QStringLiteral("a.")), QString());
    EXPECT_EQ(FileExtension(QStringLiteral("a")), QString());
    EXPECT_EQ(FileExtension(QString()), QString());
}

TEST(FileExtension, ADotInAFoldersNameCountsWhenTheFilesNameHasNone)
{
    EXPECT_EQ(FileExtension(QStringLiteral("c:\\x.y\\a")), QStringLiteral("y\\a"));
    EXPECT_EQ(FileExtension(QStringLiteral("/x.Y/a")), QStringLiteral("y/a"));
}

TEST(FileExtension, BytesThatAreNoTextStayInIt)
{
    EXPECT_EQ(NativeFromText(FileExtension(TextFromNative("\xE9.M\xE9"))), QByteArray("m\xE9"));
}

TEST(StripExtension, IsTheTextBeforeTheLastDot)
{
    EXPECT_EQ(StripExtension(QStringLiteral("/m/a.b.CDG")), QStringLiteral("/m/a.b"));
    EXPECT_EQ(StripExtension(QStringLiteral(".cdg")), QString());
    EXPECT_EQ(StripExtension(QStringLiteral("a")), QStringLiteral("a"));
    EXPECT_EQ(StripExtension(QStringLiteral("/x.y/a")), QStringLiteral("/x"));
}

TEST(RelativePath, StripsTheFolderOfTheBaseWhateverItsLetterCase)
{
    const QString base = QStringLiteral("c:\\music\\list.txt");
    EXPECT_EQ(RelativePath(base, QStringLiteral("C:\\MUSIC\\sub\\a.cdg")),
              QStringLiteral("sub\\a.cdg"));
    EXPECT_EQ(RelativePath(QStringLiteral("/music/list.txt"), QStringLiteral("/Music/sub/a.cdg")),
              QStringLiteral("sub/a.cdg"));
    EXPECT_EQ(RelativePath(QStringLiteral("/music/"), QStringLiteral("/music/a.cdg")),
              QStringLiteral("a.cdg"));
}

TEST(RelativePath, LeavesAPathElsewhereUnchanged)
{
    EXPECT_EQ(RelativePath(QStringLiteral("c:\\music\\list.txt"), QStringLiteral("d:\\a.cdg")),
              QStringLiteral("d:\\a.cdg"));
    EXPECT_EQ(RelativePath(QStringLiteral("/music/list.txt"), QStringLiteral("/musical/a.cdg")),
              QStringLiteral("/musical/a.cdg"));
    EXPECT_EQ(RelativePath(QStringLiteral("list.txt"), QStringLiteral("/music/a.cdg")),
              QStringLiteral("/music/a.cdg"));
}

TEST(RelativePath, ABackslashInANameOfThisSystemSeparatesNothing)
{
    EXPECT_EQ(RelativePath(QStringLiteral("/music/a\\b"), QStringLiteral("/music/a\\c.cdg")),
              QStringLiteral("a\\c.cdg"));
}

TEST(AbsolutePath, PutsTheFolderOfTheBaseInFront)
{
    EXPECT_EQ(AbsolutePath(QStringLiteral("c:\\music\\list.txt"), QStringLiteral("sub\\a.cdg")),
              QStringLiteral("c:\\music\\sub\\a.cdg"));
    EXPECT_EQ(AbsolutePath(QStringLiteral("/music/list.txt"), QStringLiteral("sub/a.cdg")),
              QStringLiteral("/music/sub/a.cdg"));
    EXPECT_EQ(AbsolutePath(QStringLiteral("list.txt"), QStringLiteral("a.cdg")),
              QStringLiteral("a.cdg"));
}

TEST(AbsolutePath, KeepsEmptyTextAndPathsThatAreAbsolute)
{
    const QString base = QStringLiteral("c:\\music\\list.txt");
    EXPECT_EQ(AbsolutePath(base, QString()), QString());
    for (const QString& path : {QStringLiteral("\\\\server\\a.cdg"), QStringLiteral("d:\\a.cdg"),
                                QStringLiteral("/music/a.cdg")}) {
        EXPECT_EQ(AbsolutePath(base, path), path);
    }
}

TEST(AbsolutePath, UndoesRelativePath)
{
    const QString base = QStringLiteral("/home/u/.config/Lyric Lantern/data_player.ini");
    for (const QString& path : {QStringLiteral("/home/u/.config/Lyric Lantern/a/b.cdg"),
                                QStringLiteral("/media/b.cdg")}) {
        EXPECT_EQ(AbsolutePath(base, RelativePath(base, path)), path);
    }
}

} // namespace
} // namespace lantern
