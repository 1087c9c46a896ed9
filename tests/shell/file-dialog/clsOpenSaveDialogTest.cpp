// SPDX-License-Identifier: GPL-3.0-or-later
#include "clsOpenSaveDialog.h"

#include "Zeros.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <random>

namespace lantern {
namespace {

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

QString Letters(qsizetype count)
{
    return {count, QChar(u'x')};
}

class clsOpenSaveDialogTest : public ::testing::Test {
protected:
    clsOpenSaveDialog dialog{[this](const FileDialogRequest& shown) {
        request = shown;
        return answer;
    }};
    FileDialogRequest request; // as the dialog was shown last
    FileDialogAnswer answer;   // what the user does with the next one

    void Choose(const std::vector<QString>& paths)
    {
        answer = {.paths = paths};
        EXPECT_TRUE(dialog.ShowOpen(nullptr));
    }

    std::optional<std::int32_t> ErrorOf(bool isSave = false)
    {
        try {
            EXPECT_FALSE(isSave ? dialog.ShowSave(nullptr) : dialog.ShowOpen(nullptr));
        } catch (const DialogError& error) {
            source = error.Source;
            return error.Number;
        }
        return {};
    }
    QString source; // of the last error
};

TEST_F(clsOpenSaveDialogTest, ANewOneIsEmptyAndHasTheDefaultSizes)
{
    EXPECT_EQ(dialog.FileName(), QString());
    EXPECT_EQ(dialog.FileTitle(), QString());
    EXPECT_EQ(dialog.FilePath(), QString());
    EXPECT_EQ(dialog.FileExtension(), QString());
    EXPECT_EQ(dialog.Filter(), QString());
    EXPECT_EQ(dialog.MaxFileSize(), 520);
    EXPECT_EQ(dialog.MaxFileTitleSize(), 260);
    EXPECT_EQ(dialog.Flags(), 0);
    EXPECT_EQ(dialog.CustomFilterSize(), 0);
    EXPECT_EQ(dialog.MinimumBufferSizeRequired(), 0);
    EXPECT_FALSE(dialog.CancelError());
}

TEST_F(clsOpenSaveDialogTest, PlainPropertiesKeepWhatTheyAreGiven)
{
    for (const std::int32_t value : {kLowest, -1, 0, 1, 1024, kHighest}) {
        dialog.SetFlagsEx(value);
        dialog.SetCustomHookData(value);
        dialog.SetCustomHookProc(value);
        EXPECT_EQ(dialog.FlagsEx(), value);
        EXPECT_EQ(dialog.CustomHookData(), value);
        EXPECT_EQ(dialog.CustomHookProc(), value);
    }
    dialog.SetDialogTitle(QStringLiteral("Select"));
    dialog.SetDefaultExt(QStringLiteral("cdg"));
    dialog.SetCancelError(true);
    EXPECT_EQ(dialog.DialogTitle(), QStringLiteral("Select"));
    EXPECT_EQ(dialog.DefaultExt(), QStringLiteral("cdg"));
    EXPECT_TRUE(dialog.CancelError());
}

TEST_F(clsOpenSaveDialogTest, ALongerNameGrowsTheBufferToItsLengthAndFillsIt)
{
    dialog.SetFileName(Letters(521));
    EXPECT_EQ(dialog.MaxFileSize(), 521);
    EXPECT_EQ(dialog.FileName(), Letters(521));
    dialog.SetFlags(kMultipleSelectionFlag);
    EXPECT_EQ(dialog.FileName(), Letters(521));
    dialog.SetFileName(Letters(10000));
    EXPECT_EQ(dialog.MaxFileSize(), 10000);
    dialog.SetFileName(Letters(3));
    EXPECT_EQ(dialog.MaxFileSize(), 10000);
    EXPECT_EQ(dialog.FileName(), Letters(3));
}

TEST_F(clsOpenSaveDialogTest, ANameOfAnyLengthComesBack)
{
    for (qsizetype length = 0; length <= 1100; ++length) {
        clsOpenSaveDialog fresh;
        fresh.SetFileName(Letters(length));
        ASSERT_EQ(fresh.FileName(), Letters(length));
        ASSERT_EQ(fresh.MaxFileSize(), std::max<qsizetype>(length, 520));
        fresh.SetFileTitle(Letters(length));
        ASSERT_EQ(fresh.FileTitle(), Letters(length));
        ASSERT_EQ(fresh.MaxFileTitleSize(), std::max<qsizetype>(length, 260));
    }
}

TEST_F(clsOpenSaveDialogTest, BehindAShorterNameTheOldOneStays)
{
    dialog.SetFileName(QStringLiteral("folder_old"));
    dialog.SetFileName(QStringLiteral("folder"));
    EXPECT_EQ(dialog.FileName(), QStringLiteral("folder"));
    dialog.SetFlags(kMultipleSelectionFlag);
    EXPECT_EQ(dialog.FileName(), Zeros("folder0old"));
    dialog.SetFlags(0);
    dialog.SetFileName(QString());
    EXPECT_EQ(dialog.FileName(), QString());
    dialog.SetFlags(kMultipleSelectionFlag);
    EXPECT_EQ(dialog.FileName(), Zeros("0older0old"));
}

TEST_F(clsOpenSaveDialogTest, ASizeEmptiesItsBuffer)
{
    dialog.SetFileName(QStringLiteral("a.cdg"));
    dialog.SetFileTitle(QStringLiteral("A"));
    dialog.SetMaxFileSize(8);
    dialog.SetMaxFileTitleSize(4);
    EXPECT_EQ(dialog.FileName(), QString());
    EXPECT_EQ(dialog.FileTitle(), QString());
    EXPECT_EQ(dialog.MaxFileSize(), 8);
    EXPECT_EQ(dialog.MaxFileTitleSize(), 4);
    dialog.SetMaxFileSize(kHighest);
    EXPECT_EQ(dialog.MaxFileSize(), kHighest);
}

TEST_F(clsOpenSaveDialogTest, ASizeBelowOneBringsTheDefaultBackAndKeepsTheText)
{
    for (const std::int32_t size : {0, -1, kLowest}) {
        dialog.SetFileName(QStringLiteral("a.cdg"));
        dialog.SetMaxFileSize(size);
        dialog.SetMaxFileTitleSize(size);
        EXPECT_EQ(dialog.MaxFileSize(), 520);
        EXPECT_EQ(dialog.MaxFileTitleSize(), 260);
        EXPECT_EQ(dialog.FileName(), QStringLiteral("a.cdg"));
        EXPECT_FALSE(dialog.ShowOpen(nullptr));
        EXPECT_EQ(request.initialPath, QString()); // in its new buffer
        EXPECT_EQ(dialog.FileName(), QString());
    }
}

TEST_F(clsOpenSaveDialogTest, ACustomFilterHasASizeOrNone)
{
    for (const auto& [given, kept] : {std::pair{40, 40}, {1, 1}, {0, 0}, {-1, 0}, {kLowest, 0}}) {
        dialog.SetCustomFilterSize(given);
        EXPECT_EQ(dialog.CustomFilterSize(), kept);
    }
}

TEST_F(clsOpenSaveDialogTest, TheFolderToBeginInEndsInASeparator)
{
    const auto initDirOf = [this](const char* folder) {
        dialog.SetInitDir(QString::fromLatin1(folder));
        return dialog.InitDir().toStdString();
    };
    EXPECT_EQ(initDirOf("/music"), "/music/");
    EXPECT_EQ(initDirOf("/music/"), "/music/");
    EXPECT_EQ(initDirOf("/"), "/");
    EXPECT_EQ(initDirOf("c:\\music"), "c:\\music\\");
    EXPECT_EQ(initDirOf("c:\\music\\"), "c:\\music\\");
    EXPECT_EQ(initDirOf(""), "");
    dialog.SetFilePath(QStringLiteral("/songs"));
    EXPECT_EQ(dialog.InitDir(), QStringLiteral("/songs/"));
    EXPECT_EQ(dialog.FilePath(), QString());
}

TEST_F(clsOpenSaveDialogTest, NegativeFlagsAreIgnoredAndTheDialogsOwnBitIsNotKept)
{
    dialog.SetFlags(6);
    for (const std::int32_t flags : {-1, -6, kLowest}) {
        dialog.SetFlags(flags);
        EXPECT_EQ(dialog.Flags(), 6);
    }
    for (int bit = 0; bit < 31; ++bit) {
        dialog.SetFlags(1 << bit);
        EXPECT_EQ(dialog.Flags(), bit == 10 ? 0 : 1 << bit);
    }
    dialog.SetFlags(kHighest);
    EXPECT_EQ(dialog.Flags(), kHighest - 1024);
}

TEST_F(clsOpenSaveDialogTest, ANegativeFilterIndexIsNone)
{
    for (const auto& [given, kept] : {std::pair{3, 3}, {-1, 0}, {0, 0}, {kLowest, 0}}) {
        dialog.SetFilterIndex(given);
        EXPECT_EQ(dialog.FilterIndex(), kept);
    }
}

TEST(EffectiveFlags, AnOpenAsksForNoOverwritingAndAFileNeedsItsPath)
{
    for (std::int32_t asked = 0; asked < 0x8000; ++asked) {
        std::int32_t open = asked - (asked & 2);
        if ((asked & 4096) != 0 && (asked & 2048) == 0)
            open += 2048;
        ASSERT_EQ(EffectiveFlags(asked, DialogKind::Open), open) << asked;
        ASSERT_EQ(EffectiveFlags(asked, DialogKind::Save), asked - (asked & 4096)) << asked;
    }
}

TEST(DialogFilter, IsKeptWithZerosAndReadWithBars)
{
    EXPECT_EQ(EncodeFilter(QStringLiteral("A|*.a|B|*.b")), Zeros("A0*.a0B0*.b0"));
    EXPECT_EQ(EncodeFilter(QString()), Zeros("0"));
    EXPECT_EQ(DecodeFilter(Zeros("A0*.a00")), QStringLiteral("A|*.a"));
    EXPECT_EQ(DecodeFilter(Zeros("A0*.a00B0")), QStringLiteral("A|*.a"));
    EXPECT_EQ(DecodeFilter(Zeros("A0*.a0")), QStringLiteral("A|*.a|"));
    EXPECT_EQ(DecodeFilter(Zeros("00")), QString());
    EXPECT_EQ(DecodeFilter(QString()), QString());
}

TEST(DialogFilter, IsAListOfPairsThatEndsAtItsFirstEmptyText)
{
    const FileFilter a = {QStringLiteral("A"), QStringLiteral("*.a")};
    const FileFilter b = {QStringLiteral("B"), QStringLiteral("*.b;*.c")};
    EXPECT_EQ(FilterPairs(Zeros("A0*.a0B0*.b;*.c0")), (std::vector{a, b}));
    EXPECT_EQ(FilterPairs(Zeros("A0*.a0B0*.b;*.c00")), (std::vector{a, b}));
    EXPECT_EQ(FilterPairs(Zeros("A0*.a00B0*.b;*.c0")), std::vector{a});
    EXPECT_EQ(FilterPairs(Zeros("A0*.a0B0")), std::vector{a});
    EXPECT_EQ(FilterPairs(Zeros("A0*.a0B00*.b")), std::vector{a});
    EXPECT_TRUE(FilterPairs(Zeros("A")).empty());
    EXPECT_TRUE(FilterPairs(Zeros("0A0*.a0")).empty());
    EXPECT_TRUE(FilterPairs(QString()).empty());
}

TEST_F(clsOpenSaveDialogTest, AFilterShowsItsLastZeroUnlessThereAreTwo)
{
    dialog.SetFilter(QStringLiteral("A|*.a"));
    EXPECT_EQ(dialog.Filter(), QStringLiteral("A|*.a|"));
    dialog.SetFilter(EncodeFilter(QStringLiteral("A|*.a")));
    EXPECT_EQ(dialog.Filter(), QStringLiteral("A|*.a"));
    dialog.SetFilter(QString());
    EXPECT_EQ(dialog.Filter(), QString());
}

TEST_F(clsOpenSaveDialogTest, TheServiceGetsWhatThePropertiesTell)
{
    dialog.SetDialogTitle(QStringLiteral("Select"));
    dialog.SetFilter(QStringLiteral("A|*.a"));
    dialog.SetFilterIndex(1);
    dialog.SetInitDir(QStringLiteral("/music"));
    dialog.SetFileName(QStringLiteral("a.cdg"));
    dialog.SetDefaultExt(QStringLiteral("cdg"));
    dialog.SetFlags(kFileMustExistFlag | kOverwritePromptFlag | kMultipleSelectionFlag);
    FileDialogRequest expected = {.title = QStringLiteral("Select"),
                                  .filters = {{QStringLiteral("A"), QStringLiteral("*.a")}},
                                  .filterIndex = 1,
                                  .initialFolder = QStringLiteral("/music/"),
                                  .initialPath = QStringLiteral("a.cdg"),
                                  .defaultExtension = QStringLiteral("cdg"),
                                  .fileMustExist = true,
                                  .pathMustExist = true,
                                  .multipleSelection = true};
    EXPECT_FALSE(dialog.ShowOpen(nullptr));
    EXPECT_EQ(request, expected);
    EXPECT_FALSE(dialog.ShowSave(nullptr));
    expected.isSave = true;
    expected.fileMustExist = false;
    expected.pathMustExist = false;
    expected.overwritePrompt = true;
    EXPECT_EQ(request, expected);
    EXPECT_EQ(dialog.Flags(), kFileMustExistFlag | kOverwritePromptFlag | kMultipleSelectionFlag);
}

TEST_F(clsOpenSaveDialogTest, AChosenFileIsTakenApart)
{
    Choose({QStringLiteral("/music/a.b/Song One.CDG")});
    EXPECT_EQ(dialog.FileName(), QStringLiteral("/music/a.b/Song One.CDG"));
    EXPECT_EQ(dialog.FileTitle(), QStringLiteral("Song One.CDG"));
    EXPECT_EQ(dialog.FilePath(), QStringLiteral("/music/a.b"));
    EXPECT_EQ(dialog.FileExtension(), QStringLiteral("CDG"));
    Choose({QStringLiteral("/a.b/song")});
    EXPECT_EQ(dialog.FileExtension(), QString());
    Choose({QStringLiteral("/song.")});
    EXPECT_EQ(dialog.FileExtension(), QString());
    EXPECT_EQ(dialog.FilePath(), QString());
    EXPECT_EQ(dialog.FileTitle(), QStringLiteral("song."));
}

TEST_F(clsOpenSaveDialogTest, ANameThatIsNoTextComesThroughAsItIs)
{
    const QString path = QStringLiteral("/music/caf") + QChar(u'\xDCE9') + QStringLiteral(".cdg");
    Choose({path});
    EXPECT_EQ(dialog.FileName(), path);
}

TEST_F(clsOpenSaveDialogTest, SeveralFilesComeAsTheirFolderAndTheirNames)
{
    dialog.SetFlags(kMultipleSelectionFlag);
    Choose({QStringLiteral("/music/a.cdg"), QStringLiteral("/music/b.cdg")});
    EXPECT_EQ(dialog.FileName(), Zeros("/music0a.cdg0b.cdg"));
    EXPECT_EQ(dialog.FilePath(), QStringLiteral("/music"));
    EXPECT_EQ(dialog.FileTitle(), QStringLiteral("a.cdg"));
    EXPECT_EQ(dialog.FileExtension(), QString());
    Choose({QStringLiteral("/a"), QStringLiteral("/b")});
    EXPECT_EQ(dialog.FileName(), Zeros("/0a0b"));
    Choose({QStringLiteral("/one")}); // with the longer text of before behind it
    EXPECT_EQ(dialog.FileName(), QStringLiteral("/one"));
}

TEST_F(clsOpenSaveDialogTest, TheFilterOfTheAnswerIsTheNewOne)
{
    answer = {.paths = {QStringLiteral("/a")}, .filterIndex = 2};
    EXPECT_TRUE(dialog.ShowOpen(nullptr));
    EXPECT_EQ(dialog.FilterIndex(), 2);
}

TEST_F(clsOpenSaveDialogTest, ATitleThatIsTooLongIsCut)
{
    dialog.SetMaxFileTitleSize(4);
    Choose({QStringLiteral("/music/abcdef")});
    EXPECT_EQ(dialog.FileTitle(), QStringLiteral("abc"));
    dialog.SetMaxFileTitleSize(1);
    Choose({QStringLiteral("/music/abcdef")});
    EXPECT_EQ(dialog.FileTitle(), QString());
}

TEST_F(clsOpenSaveDialogTest, AQuietCancelChangesNothing)
{
    dialog.SetFileName(QStringLiteral("/music/a.cdg"));
    dialog.SetFilterIndex(2);
    EXPECT_EQ(ErrorOf(), std::nullopt);
    EXPECT_EQ(dialog.FileName(), QStringLiteral("/music/a.cdg"));
    EXPECT_EQ(dialog.FilterIndex(), 2);
}

TEST_F(clsOpenSaveDialogTest, ACancelThatCountsAsAnErrorIsThrown)
{
    dialog.SetCancelError(true);
    EXPECT_EQ(ErrorOf(), -2147221504);
    EXPECT_EQ(source, QStringLiteral("Common Dialog Open"));
    EXPECT_EQ(ErrorOf(true), -2147221504);
    EXPECT_EQ(source, QStringLiteral("Common Dialog Save"));
}

TEST_F(clsOpenSaveDialogTest, AFailureIsThrownWhateverCancelErrorSays)
{
    for (const std::int32_t code : {1, 9, 11, 12290, 65535, -1}) {
        for (const bool cancelError : {false, true}) {
            dialog.SetCancelError(cancelError);
            answer = {.errorCode = code};
            EXPECT_EQ(ErrorOf(), code);
        }
    }
}

TEST_F(clsOpenSaveDialogTest, APathThatDoesNotFitTellsTheSizeThatItNeeds)
{
    for (std::int32_t size = 1; size <= 12; ++size) {
        dialog.SetMaxFileSize(size);
        answer = {.paths = {QStringLiteral("/song.cdg")}};
        if (size >= 10) {
            EXPECT_TRUE(dialog.ShowOpen(nullptr));
            EXPECT_EQ(dialog.MinimumBufferSizeRequired(), 0);
            continue;
        }
        EXPECT_EQ(ErrorOf(), 12291);
        EXPECT_EQ(dialog.MinimumBufferSizeRequired(), size > 4 ? 10 : -1);
    }
    answer = {.paths = {u'/' + Letters(70000)}};
    EXPECT_EQ(ErrorOf(), 12291);
    EXPECT_EQ(dialog.MinimumBufferSizeRequired(), 65535);
    answer = {};
    EXPECT_FALSE(dialog.ShowOpen(nullptr));
    EXPECT_EQ(dialog.MinimumBufferSizeRequired(), 0);
}

TEST_F(clsOpenSaveDialogTest, TheServiceMayTellOfATooSmallBufferItself)
{
    dialog.SetMaxFileSize(5);
    dialog.SetFileName(QStringLiteral("A"));
    answer = {.errorCode = kBufferTooSmall};
    EXPECT_EQ(ErrorOf(), 12291);
    EXPECT_EQ(dialog.MinimumBufferSizeRequired(), 'A');
}

TEST_F(clsOpenSaveDialogTest, ClearEmptiesTheRequestAndKeepsWhatIsTheObjectsOwn)
{
    dialog.SetFlags(6);
    dialog.SetCancelError(true);
    dialog.SetFilter(QStringLiteral("A|*.a"));
    dialog.SetMaxFileSize(40);
    dialog.SetFilterIndex(3);
    dialog.SetInitDir(QStringLiteral("/music"));
    Choose({QStringLiteral("/music/a.cdg")});
    dialog.Clear();
    EXPECT_EQ(dialog.FileName(), QString());
    EXPECT_EQ(dialog.FilePath(), QString());
    EXPECT_EQ(dialog.Filter(), QString());
    EXPECT_EQ(dialog.InitDir(), QString());
    EXPECT_EQ(dialog.MaxFileSize(), 520);
    EXPECT_EQ(dialog.FilterIndex(), 0);
    EXPECT_EQ(dialog.Flags(), 6);
    EXPECT_TRUE(dialog.CancelError());
}

QString RandomText(std::mt19937& random)
{
    constexpr std::u16string_view kLetters = u"ab.|/\\\0\xDCE9\xD83D;*";
    QString text;
    for (auto length = random() % 40; length > 0; --length)
        text += QChar(kLetters[random() % kLetters.size()]);
    return text;
}

std::int32_t RandomNumber(std::mt19937& random)
{
    const auto wide = static_cast<std::int32_t>(random());
    return random() % 2 == 0 ? wide : wide % 40;
}

void SetSomething(clsOpenSaveDialog& dialog, std::mt19937& random)
{
    switch (random() % 10) {
    case 0:
        return dialog.SetFileName(RandomText(random));
    case 1:
        return dialog.SetFileTitle(RandomText(random));
    case 2:
        return dialog.SetInitDir(RandomText(random));
    case 3:
        return dialog.SetFilter(RandomText(random));
    case 4:
        return dialog.SetFlags(RandomNumber(random));
    case 5:
        return dialog.SetMaxFileSize(RandomNumber(random));
    case 6:
        return dialog.SetMaxFileTitleSize(RandomNumber(random));
    case 7:
        return dialog.SetFilterIndex(RandomNumber(random));
    case 8:
        return dialog.SetDefaultExt(RandomText(random));
    default:
        return dialog.Clear();
    }
}

void ExpectSound(const clsOpenSaveDialog& dialog)
{
    ASSERT_GE(dialog.MaxFileSize(), 1);
    ASSERT_GE(dialog.MaxFileTitleSize(), 1);
    ASSERT_GE(dialog.FilterIndex(), 0);
    ASSERT_GE(dialog.Flags(), 0);
    ASSERT_EQ(dialog.Flags() & 1024, 0);
    ASSERT_FALSE(dialog.FileTitle().contains(QChar(u'\0')));
    ASSERT_FALSE(dialog.FileExtension().contains(QChar(u'\0')));
    ASSERT_FALSE(dialog.Filter().contains(QChar(u'\0')));
}

// Whatever came before, an answer is either there whole or an error with the size that it needs.
TEST_F(clsOpenSaveDialogTest, AnyOrderOfCallsEndsInADefinedState)
{
    std::mt19937 random(11); // NOLINT(cert-msc51-cpp): the same calls in every run
    for (int i = 0; i < 30000; ++i) {
        SetSomething(dialog, random);
        ASSERT_NO_FATAL_FAILURE(ExpectSound(dialog)) << i;
        const QString path = u'/' + RandomText(random).remove(QChar(u'\0'));
        answer = {.paths = {path}};
        try {
            ASSERT_TRUE(random() % 2 == 0 ? dialog.ShowOpen(nullptr) : dialog.ShowSave(nullptr));
            ASSERT_EQ(dialog.FileName(), path) << i;
            ASSERT_LT(path.size(), dialog.MaxFileSize());
        } catch (const DialogError& error) {
            ASSERT_EQ(error.Number, kBufferTooSmall);
            ASSERT_GE(path.size(), dialog.MaxFileSize() - 1);
        }
        ASSERT_NO_FATAL_FAILURE(ExpectSound(dialog)) << i;
    }
}

} // namespace
} // namespace lantern
