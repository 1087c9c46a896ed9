// SPDX-License-Identifier: GPL-3.0-or-later
#include "clsFileIO.h"
#include "PathText.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

// The error that the call throws; nothing if it throws none.
template <typename Call>
std::optional<FileIOError> Thrown(Call call)
{
    try {
        call();
    } catch (const FileIOError& error) {
        return error;
    }
    return std::nullopt;
}

class clsFileIOTest : public ::testing::Test {
protected:
    QString Path(const char* name = "file.txt") const { return TextFromNative(NativePath(name)); }
    QByteArray NativePath(const char* name = "file.txt") const
    {
        return m_folder.path().toUtf8() + '/' + name;
    }
    QString Made(const std::string& bytes, const char* name = "file.txt") const
    {
        std::ofstream(NativePath(name).constData(), std::ios::binary) << bytes;
        return Path(name);
    }
    std::string Written(const char* name = "file.txt") const
    {
        std::ifstream file(NativePath(name).constData(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    QString Read(const std::string& bytes, bool normaliseLineEnds = false)
    {
        return m_file.FileRead(Made(bytes), normaliseLineEnds);
    }

    QTemporaryDir m_folder;
    clsFileIO m_file;
};

TEST_F(clsFileIOTest, EachEncodingIsRecognised)
{
    const QString text = QStringLiteral(u"Größe 漢\r\n");
    EXPECT_EQ(Read("Gr\xC3\xB6\xC3\x9F"
                   "e \xE6\xBC\xA2\r\n"),
              text);
    EXPECT_EQ(Read("\xEF\xBB\xBFGr\xC3\xB6\xC3\x9F"
                   "e \xE6\xBC\xA2\r\n"),
              text);
    EXPECT_EQ(Read(std::string("\xFF\xFEG\0r\0\xF6\0\xDF\0e\0 \0\x22\x6F\r\0\n\0", 20)), text);
    EXPECT_EQ(Read(std::string("\xFE\xFF\0G\0r\0\xF6\0\xDF\0e\0 \x6F\x22\0\r\0\n", 20)), text);
    EXPECT_EQ(Read("Gr\xF6\xDF"
                   "e"),
              QStringLiteral(u"Größe"));
}

TEST_F(clsFileIOTest, ALoneMarkOfUtf16IsEmptyText)
{
    EXPECT_EQ(Read("\xFF\xFE"), QString());
    EXPECT_EQ(Read("\xFE\xFF"), QString());
}

TEST_F(clsFileIOTest, AHalfMarkIsACharacter)
{
    EXPECT_EQ(Read("\xFF"), QStringLiteral(u"\u00FF"));
    EXPECT_EQ(Read("\xEF\xBB"), QStringLiteral(u"\u00EF\u00BB"));
}

TEST_F(clsFileIOTest, AnOddLastByteOfUtf16IsDropped)
{
    EXPECT_EQ(Read(std::string("\xFF\xFE"
                               "A\0B",
                               5)),
              QStringLiteral("A"));
    EXPECT_EQ(Read(std::string("\xFE\xFF\0A\0", 5)), QStringLiteral("A"));
}

TEST_F(clsFileIOTest, BytesThatAreNoUtf8AreLatin1)
{
    EXPECT_EQ(Read("\x41\xE9\x42"), QStringLiteral(u"A\u00E9B"));
}

TEST_F(clsFileIOTest, AFileOfNothingButTheMarkOfUtf8IsAnError)
{
    const QString path = Made("\xEF\xBB\xBF");
    const auto error = Thrown([&] { m_file.FileRead(path, false); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number, EINVAL);
    EXPECT_EQ(error->Source, QStringLiteral("FileRead"));
    EXPECT_EQ(error->Description, QStringLiteral("MultiByteToWideChar"));
    EXPECT_STREQ(error->what(), "FileRead: MultiByteToWideChar");
}

TEST_F(clsFileIOTest, TheSecondMarkIsText)
{
    EXPECT_EQ(Read("\xEF\xBB\xBF\xEF\xBB\xBF"
                   "a"),
              QStringLiteral(u"\uFEFFa"));
}

TEST_F(clsFileIOTest, ZerosAreCharacters)
{
    EXPECT_EQ(Read(std::string("a\0b", 3)).size(), 3);
}

TEST_F(clsFileIOTest, LineEndsAreMadeOneKindOnlyWhereThereIsNoProperOne)
{
    EXPECT_EQ(Read("a\nb\n", true), QStringLiteral("a\r\nb\r\n"));
    EXPECT_EQ(Read("a\rb\r", true), QStringLiteral("a\r\nb\r\n"));
    EXPECT_EQ(Read("a\rb\nc", true), QStringLiteral("a\rb\r\nc"));
    EXPECT_EQ(Read("a\r\nb\nc\rd", true), QStringLiteral("a\r\nb\nc\rd"));
    EXPECT_EQ(Read("a", true), QStringLiteral("a"));
    EXPECT_EQ(Read("a\nb\n", false), QStringLiteral("a\nb\n"));
}

TEST_F(clsFileIOTest, WhatIsNoFileReadsAsEmpty)
{
    EXPECT_EQ(m_file.FileRead(Path("none"), false), QString());
    EXPECT_EQ(m_file.FileRead(QString(), false), QString());
    EXPECT_EQ(m_file.FileRead(m_folder.path(), false), QString());
    EXPECT_EQ(m_file.FileRead(Made("text") + QChar(u'\0') + u'x', false), QString());
    EXPECT_EQ(m_file.FileRead(QStringLiteral("/dev/zero"), false), QString());
    EXPECT_EQ(Read(""), QString());
    EXPECT_EQ(access(NativePath("none").constData(), F_OK), -1) << "reading makes no file";
}

TEST_F(clsFileIOTest, AFifoNeitherBlocksReadingNorWriting)
{
    ASSERT_EQ(mkfifo(NativePath("fifo").constData(), 0600), 0);
    EXPECT_EQ(m_file.FileRead(Path("fifo"), false), QString());
    EXPECT_EQ(m_file.WriteOpen(Path("fifo"), TextEncoding::Utf8),
              QStringLiteral("No such device or address"));
}

TEST_F(clsFileIOTest, AFileAboveTheBoundReadsAsEmptyWithoutBeingRead)
{
    const QString path = Made("text");
    ASSERT_EQ(truncate(NativePath().constData(), off_t{1} << 40), 0);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(m_file.FileRead(path, false), QString());
    EXPECT_LT(timer.elapsed(), 1000);
}

TEST_F(clsFileIOTest, APathMayHoldAnyBytes)
{
    const QString path = Path("Caf\xE9 \xE6\xBC\xA2.txt");
    ASSERT_EQ(m_file.WriteOpen(path, TextEncoding::Utf8), QString());
    m_file.WriteData(QStringLiteral("x"));
    m_file.WriteClose();
    EXPECT_EQ(Written("Caf\xE9 \xE6\xBC\xA2.txt"), "x");
    EXPECT_EQ(m_file.FileRead(path, false), QStringLiteral("x"));
    EXPECT_TRUE(m_file.Kill(path));
    EXPECT_EQ(access(NativePath("Caf\xE9 \xE6\xBC\xA2.txt").constData(), F_OK), -1);
}

TEST_F(clsFileIOTest, KillTellsWhetherTheFileWent)
{
    EXPECT_FALSE(m_file.Kill(Path()));
    EXPECT_TRUE(m_file.Kill(Made("x")));
    EXPECT_FALSE(m_file.Kill(m_folder.path()));
    EXPECT_FALSE(m_file.Kill(QString()));
    EXPECT_TRUE(QFileInfo::exists(m_folder.path()));
}

TEST_F(clsFileIOTest, BytesAreUtf8IfTheyKeepTheirLength)
{
    EXPECT_TRUE(m_file.IsUTF8Ex("plain"));
    EXPECT_TRUE(m_file.IsUTF8Ex("\xC3\xA9"));
    EXPECT_TRUE(m_file.IsUTF8Ex("\xF0\x9F\x8E\xA4"));
    EXPECT_FALSE(m_file.IsUTF8Ex("\x80\x41"));
    EXPECT_FALSE(m_file.IsUTF8Ex("\x41\xE9\x42"));
    EXPECT_FALSE(m_file.IsUTF8Ex("\xC3"));
    EXPECT_FALSE(m_file.IsUTF8Ex("\xC0\xAF"));
    EXPECT_FALSE(m_file.IsUTF8Ex("\xED\xA0\x80")) << "an encoded surrogate";
    EXPECT_FALSE(m_file.IsUTF8Ex("\xF0\x9F\x8E")) << "three bytes of four";
    EXPECT_FALSE(m_file.IsUTF8Ex("\xF5\x80\x80\x80"));
}

TEST_F(clsFileIOTest, AnyTextKeepsItsBytesThroughUtf8)
{
    std::mt19937 random(3);
    for (int round = 0; round < 2000; ++round) {
        QString text;
        for (auto length = 1 + random() % 20; length > 0; --length) {
            const auto unit = static_cast<char16_t>(random());
            text += QChar::isSurrogate(unit) ? QChar(u'x') : QChar(unit);
        }
        const QByteArray bytes = m_file.ToUTF8(text);
        ASSERT_EQ(m_file.FromUTF8(bytes, 0), text);
        ASSERT_TRUE(m_file.IsUTF8Ex(bytes));
    }
}

TEST_F(clsFileIOTest, OnlySequencesOfSeveralBytesProveUtf8)
{
    EXPECT_FALSE(m_file.IsUTF8("plain", 5));
    EXPECT_TRUE(m_file.IsUTF8("\xC3\xA9", 2));
    EXPECT_FALSE(m_file.IsUTF8("\xC3\xA9", 1)) << "cut off, nothing was counted";
    EXPECT_TRUE(m_file.IsUTF8("\xC3\xA9\xC3\xA9", 3)) << "the second one is cut off";
    EXPECT_FALSE(m_file.IsUTF8("\xC3\xA9", 0));
    EXPECT_FALSE(m_file.IsUTF8("\xC3\xA9", -1));
    EXPECT_TRUE(m_file.IsUTF8("\xC3\xA9", 1000));
    EXPECT_FALSE(m_file.IsUTF8("\x80\x41", 2));
    EXPECT_FALSE(m_file.IsUTF8("\xC3\x41", 2));
    EXPECT_FALSE(m_file.IsUTF8("\xC3\xA9\x80", 3));
    EXPECT_TRUE(m_file.IsUTF8("\xFE\xFF\xC3\xA9", 4)) << "two bytes that prove nothing";
    EXPECT_FALSE(m_file.IsUTF8("\xFE\xFF", 2));
    EXPECT_FALSE(m_file.IsUTF8("", 0));
}

TEST_F(clsFileIOTest, TheLeadByteTellsHowManyFollow)
{
    EXPECT_TRUE(m_file.IsUTF8("\xE6\xBC\xA2", 3));
    EXPECT_TRUE(m_file.IsUTF8("\xF0\x9F\x8E\xA4", 4));
    EXPECT_TRUE(m_file.IsUTF8("\xF8\x80\x80\x80\x80", 5));
    EXPECT_TRUE(m_file.IsUTF8("\xFC\x80\x80\x80\x80\x80", 6));
    EXPECT_TRUE(m_file.IsUTF8("\xFD\x80\x80\x80\x80\x80", 6));
    EXPECT_FALSE(m_file.IsUTF8("\xFC\x80\x80\x80\x80\x41", 6));
    EXPECT_FALSE(m_file.IsUTF8("\xE6\xBC", 2));
    EXPECT_TRUE(m_file.IsUTF8("\xC0\x80", 2)) << "overlong forms aren't looked for";
}

TEST_F(clsFileIOTest, NothingToConvertIsAnError)
{
    const auto toError = Thrown([&] { m_file.ToUTF8(QString()); });
    ASSERT_TRUE(toError);
    EXPECT_EQ(toError->Source, QStringLiteral("ToUTF8"));
    EXPECT_EQ(toError->Description, QStringLiteral("WideCharToMultiByte"));
    for (const auto start : {3, 4, -1}) {
        const auto fromError = Thrown([&] { m_file.FromUTF8("abc", start); });
        ASSERT_TRUE(fromError) << start;
        EXPECT_EQ(fromError->Source, QStringLiteral("FromUTF8"));
        EXPECT_EQ(fromError->Description, QStringLiteral("MultiByteToWideChar"));
    }
    EXPECT_TRUE(Thrown([&] { m_file.FromUTF8("", 0); }));
    EXPECT_TRUE(Thrown([&] { m_file.IsUTF8Ex(""); }));
    EXPECT_EQ(m_file.FromUTF8("abc", 2), QStringLiteral("c"));
}

TEST_F(clsFileIOTest, WhatCannotBeConvertedIsReplaced)
{
    EXPECT_EQ(m_file.FromUTF8("a\xE9z", 0), QStringLiteral(u"a\uFFFDz"));
    EXPECT_EQ(m_file.FromUTF8("a\xE2\x82", 0), QStringLiteral(u"a\uFFFD\uFFFD"));
    EXPECT_EQ(m_file.ToUTF8(QString(QChar(0xD800)) + u'a'), QByteArray("\xEF\xBF\xBD"
                                                                       "a"));
    EXPECT_EQ(m_file.ToUTF8(QString(QChar(0xDCE9))), QByteArray("\xEF\xBF\xBD"));
    EXPECT_EQ(m_file.ToUTF8(QStringLiteral(u"🎤")), QByteArray("\xF0\x9F\x8E\xA4"));
}

TEST_F(clsFileIOTest, OneByteForEachCharacterAndBack)
{
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    EXPECT_EQ(m_file.ToUnicode(all).size(), 256);
    EXPECT_EQ(m_file.FromUnicode(m_file.ToUnicode(all)), all);
    EXPECT_EQ(m_file.FromUnicode(QStringLiteral(u"漢")), QByteArray("\x22")) << "the low byte";
    EXPECT_EQ(m_file.ToUnicode(""), QString());
    EXPECT_EQ(m_file.FromUnicode(QString()), QByteArray());
}

TEST_F(clsFileIOTest, AShortPathIsThePathItself)
{
    EXPECT_EQ(m_file.GetShortPath(QStringLiteral("/a b/c")), QStringLiteral("/a b/c"));
}

TEST_F(clsFileIOTest, LinesAreTakenOneByOne)
{
    EXPECT_EQ(m_file.ReadLoad(Made("A\r\nB\r\n")), QStringLiteral("A\r\nB\r\n"));
    EXPECT_EQ(m_file.ReadCount(), 3);
    EXPECT_EQ(m_file.ReadLine(), QStringLiteral("A"));
    EXPECT_EQ(m_file.ReadCount(), 2);
    EXPECT_EQ(m_file.ReadLine(), QStringLiteral("B"));
    EXPECT_EQ(m_file.ReadLine(), QString());
    EXPECT_EQ(m_file.ReadCount(), 0);
    EXPECT_EQ(m_file.ReadLine(), QString()) << "none is left";
    EXPECT_EQ(m_file.ReadCount(), 0);
}

TEST_F(clsFileIOTest, OtherLineEndsStayInTheirLine)
{
    m_file.ReadLoad(Made("A\nB\rC"));
    EXPECT_EQ(m_file.ReadCount(), 1);
    EXPECT_EQ(m_file.ReadLine(), QStringLiteral("A\nB\rC"));
}

TEST_F(clsFileIOTest, AMissingFileHasNoLines)
{
    m_file.ReadLoad(Made("A\r\nB"));
    EXPECT_EQ(m_file.ReadLoad(Path("none")), QString());
    EXPECT_EQ(m_file.ReadCount(), 0);
    EXPECT_EQ(m_file.ReadLine(), QString());
}

TEST_F(clsFileIOTest, TextsAreWrittenOneBehindTheOther)
{
    Made("old text that was longer");
    ASSERT_EQ(m_file.WriteOpen(Path(), TextEncoding::Utf8), QString());
    EXPECT_TRUE(m_file.WriteData(QStringLiteral(u"é")));
    EXPECT_TRUE(m_file.WriteLine(QStringLiteral("b")));
    EXPECT_TRUE(m_file.WriteLine(QString()));
    EXPECT_EQ(Written(), "\xC3\xA9"
                         "b\r\n\r\n")
        << "no mark, and on the disk before it is closed";
}

TEST_F(clsFileIOTest, EveryWriteGoesToTheEndOfTheFile)
{
    ASSERT_EQ(m_file.WriteOpen(Path(), TextEncoding::Utf8), QString());
    m_file.WriteData(QStringLiteral("a"));
    clsFileIO other;
    ASSERT_EQ(other.WriteOpen(Path(), TextEncoding::Utf8), QString());
    other.WriteData(QStringLiteral("bcd"));
    m_file.WriteData(QStringLiteral("e"));
    EXPECT_EQ(Written(), "bcde");
}

TEST_F(clsFileIOTest, OneByteForEachCharacterIsWrittenToo)
{
    ASSERT_EQ(m_file.WriteOpen(Path(), TextEncoding::Latin1), QString());
    m_file.WriteData(QStringLiteral(u"é漢"));
    m_file.WriteData(QString());
    EXPECT_EQ(Written(), "\xE9\x22");
}

TEST_F(clsFileIOTest, EmptyTextAsUtf8IsAnError)
{
    ASSERT_EQ(m_file.WriteOpen(Path(), TextEncoding::Utf8), QString());
    EXPECT_TRUE(Thrown([&] { m_file.WriteData(QString()); }));
}

TEST_F(clsFileIOTest, WithoutAnOpenFileNothingIsWritten)
{
    EXPECT_FALSE(m_file.WriteData(QStringLiteral("a")));
    ASSERT_EQ(m_file.WriteOpen(Path(), TextEncoding::Utf8), QString());
    m_file.WriteClose();
    EXPECT_FALSE(m_file.WriteData(QStringLiteral("a")));
    m_file.WriteClose();
    EXPECT_NE(m_file.WriteOpen(m_folder.path(), TextEncoding::Utf8), QString());
    EXPECT_FALSE(m_file.WriteData(QStringLiteral("a")));
    EXPECT_EQ(Written(), "");
}

TEST_F(clsFileIOTest, AFileThatCannotBeOpenedGivesAMessage)
{
    EXPECT_EQ(m_file.WriteOpen(QString(), TextEncoding::Utf8), QStringLiteral("Filename is empty"));
    EXPECT_EQ(m_file.WriteOpen(m_folder.path(), TextEncoding::Utf8),
              QStringLiteral("Is a directory"));
    EXPECT_EQ(m_file.WriteOpen(Path("no/file"), TextEncoding::Utf8),
              QStringLiteral("No such file or directory"));
    EXPECT_EQ(m_file.WriteOpen(Path() + QChar(u'\0') + u'x', TextEncoding::Utf8),
              QStringLiteral("Invalid argument"));
    EXPECT_EQ(access(NativePath().constData(), F_OK), -1);
}

TEST_F(clsFileIOTest, AFullDiskIsTold)
{
    ASSERT_EQ(m_file.WriteOpen(QStringLiteral("/dev/full"), TextEncoding::Utf8), QString());
    EXPECT_FALSE(m_file.WriteData(QStringLiteral("a")));
    EXPECT_EQ(errno, ENOSPC);
}

TEST_F(clsFileIOTest, AProcessWithoutStandardInputCanWrite)
{
    const int kept = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10);
    close(STDIN_FILENO);
    ASSERT_EQ(m_file.WriteOpen(Path(), TextEncoding::Utf8), QString());
    EXPECT_TRUE(m_file.WriteData(QStringLiteral("a")));
    EXPECT_EQ(Written(), "a");
    dup2(kept, STDIN_FILENO);
    close(kept);
}

} // namespace
} // namespace lantern
