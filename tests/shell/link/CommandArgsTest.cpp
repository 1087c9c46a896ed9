// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandArgs.h"
#include "NameSearch.h"
#include "PathText.h"
#include "Process.h"

#include <gtest/gtest.h>
#include <vector>

namespace lantern {
namespace {

QString Joined(const std::vector<const char*>& arguments)
{
    return JoinedCommandLine(arguments);
}

TEST(CommandArgs, BehindAQuotedNameStandsWhatFollowsTheClosingMark)
{
    EXPECT_EQ(ParseCommandArgs(QStringLiteral(R"("c:\my player\p.exe"  "c:\a b.cdg" )")),
              QStringLiteral(R"("c:\a b.cdg")"));
    EXPECT_EQ(ParseCommandArgs(QStringLiteral(R"("c:\p.exe")")), QString());
    EXPECT_EQ(ParseCommandArgs(QStringLiteral(R"("c:\p.exe"x.cdg)")), QStringLiteral("x.cdg"));
}

TEST(CommandArgs, BehindAPlainNameStandsWhatFollowsTheFirstBlank)
{
    EXPECT_EQ(ParseCommandArgs(QStringLiteral("p.exe  a b.cdg  ")), QStringLiteral("a b.cdg"));
    EXPECT_EQ(ParseCommandArgs(QStringLiteral("p.exe ")), QString());
}

TEST(CommandArgs, WithoutADelimiterTheWholeLineIsTheArgument)
{
    EXPECT_EQ(ParseCommandArgs(QStringLiteral("p.exe")), QStringLiteral("p.exe"));
    EXPECT_EQ(ParseCommandArgs(QStringLiteral(R"("p.exe)")), QStringLiteral(R"("p.exe)"));
    EXPECT_EQ(ParseCommandArgs(QString()), QString());
    EXPECT_EQ(ParseCommandArgs(QStringLiteral("\"")), QStringLiteral("\""));
}

TEST(CommandArgs, TheDelimiterIsSearchedFromTheSecondCharacterOn)
{
    EXPECT_EQ(ParseCommandArgs(QStringLiteral("\"\" a.cdg")), QStringLiteral("a.cdg"));
    EXPECT_EQ(ParseCommandArgs(QStringLiteral(" p a.cdg")), QStringLiteral("a.cdg"));
}

TEST(CommandArgs, OnlyBlanksAreTrimmed)
{
    EXPECT_EQ(ParseCommandArgs(QStringLiteral("p \ta.cdg\t ")), QStringLiteral("\ta.cdg\t"));
}

TEST(CommandArgs, AStartWithoutArgumentsHasNone)
{
    EXPECT_EQ(ParseCommandArgs(Joined({"/usr/bin/player"})), QString());
    EXPECT_EQ(ParseCommandArgs(Joined({"player", ""})), QString());
    EXPECT_EQ(ParseCommandArgs(Joined({})), QString());
}

TEST(CommandArgs, AnArgumentWithABlankIsQuoted)
{
    EXPECT_EQ(ParseCommandArgs(Joined({"player", "/m/My Song.cdg"})),
              QStringLiteral("\"/m/My Song.cdg\""));
    EXPECT_EQ(ParseCommandArgs(Joined({"player", "/m/song.cdg"})), QStringLiteral("/m/song.cdg"));
}

TEST(CommandArgs, APathThatTheShellSplitIsOnePathAgain)
{
    EXPECT_EQ(ParseCommandArgs(Joined({"player", "/m/My", "Song.cdg"})),
              QStringLiteral("/m/My Song.cdg"));
}

TEST(CommandArgs, AMarkInTheProgramsNameDoesNotCutIt)
{
    EXPECT_EQ(ParseCommandArgs(Joined({"/a\"b/player", "x.cdg"})), QStringLiteral("x.cdg"));
}

TEST(CommandArgs, BytesThatAreNoTextSurvive)
{
    const QString args = ParseCommandArgs(Joined({"player", "/m/Caf\xE9.cdg"}));
    EXPECT_EQ(NativeFromText(args), QByteArray("/m/Caf\xE9.cdg"));
}

TEST(ResolveTypedPath, ARelativePathLiesBelowTheFolderWhereItWasTyped)
{
    EXPECT_EQ(ResolveTypedPath(QStringLiteral("a.cdg"), QStringLiteral("/home/me")),
              QStringLiteral("/home/me/a.cdg"));
    EXPECT_EQ(ResolveTypedPath(QStringLiteral("../b/a.cdg"), QStringLiteral("/home/me")),
              QStringLiteral("/home/me/../b/a.cdg"));
    EXPECT_EQ(ResolveTypedPath(QStringLiteral("a.cdg"), QStringLiteral("/")),
              QStringLiteral("/a.cdg"));
}

TEST(ResolveTypedPath, QuotationMarksAreKept)
{
    EXPECT_EQ(ResolveTypedPath(QStringLiteral("\"a b.cdg\""), QStringLiteral("/m x")),
              QStringLiteral("\"/m x/a b.cdg\""));
}

TEST(ResolveTypedPath, AFullPathAndNothingStayAsTheyAre)
{
    for (const QString& args : {QStringLiteral("/m/a.cdg"), QStringLiteral("\"/m/a b.cdg\""),
                                QString(), QStringLiteral("\"\"")})
        EXPECT_EQ(ResolveTypedPath(args, QStringLiteral("/home/me")), args);
    EXPECT_EQ(ResolveTypedPath(QStringLiteral("a.cdg"), QString()), QStringLiteral("a.cdg"));
}

// In a folder of its own, where the names that are typed may be files.
class TypedArguments : public ::testing::Test {
protected:
    TypedArguments() { std::filesystem::current_path(m_folder.Path()); }
    ~TypedArguments() override { std::filesystem::current_path(m_before); }

    void Make(const std::string& name) const { test::WriteFile(m_folder / name, ""); }
    QByteArray In(const std::string& name) const
    {
        return QByteArray::fromStdString((m_folder / name).native());
    }
    static QByteArray Args(std::vector<const char*> arguments)
    {
        arguments.insert(arguments.begin(), "/usr/bin/player");
        return NativeFromText(GetCommandArgs(ProgramArguments::Of(arguments)));
    }

    const test::ScratchFolder m_folder;
    const std::filesystem::path m_before = std::filesystem::current_path();
};

TEST_F(TypedArguments, ANameWithMarksOrOuterBlanksIsTakenAsItStands)
{
    for (const char* name : {"a\"b\"c.cdg", "\"a b\".cdg", " lead .cdg", "a \"b\" c.cdg"}) {
        Make(name);
        EXPECT_EQ(Args({name}), In(name));
        const QString fromFullPath = TextFromNative(Args({In(name).constData()}));
        EXPECT_EQ(NativeFromText(PathInText(fromFullPath)), In(name));
    }
}

TEST_F(TypedArguments, ANameOfUsualLettersKeepsItsFormOnTheCommandLine)
{
    Make("My Song.cdg");
    Make("song.cdg");
    EXPECT_EQ(Args({"My Song.cdg"}), '"' + In("My Song.cdg") + '"');
    EXPECT_EQ(Args({"song.cdg"}), In("song.cdg"));
    EXPECT_EQ(Args({"My", "Song.cdg"}), '"' + In("My Song.cdg") + '"');
    EXPECT_EQ(Args({"SONG.cdg"}), In("SONG.cdg")) << "letter case does not count";
}

TEST_F(TypedArguments, TextThatNamesNothingIsAsItWasTyped)
{
    EXPECT_EQ(Args({"none.cdg"}), In("none.cdg"));
    EXPECT_EQ(Args({"no ne.cdg"}), '"' + In("no ne.cdg") + '"');
    EXPECT_EQ(Args({"a\"b\".cdg"}), In("ab.cdg"));
    EXPECT_EQ(Args({}), "");
    EXPECT_EQ(Args({""}), "");
}

TEST_F(TypedArguments, OfTwoTracksTheFirstIsTaken)
{
    Make("a.cdg");
    Make("b c.cdg");
    EXPECT_EQ(Args({"a.cdg", "b c.cdg"}), In("a.cdg"));
    EXPECT_EQ(Args({"b c.cdg", "a.cdg"}), '"' + In("b c.cdg") + '"');
    EXPECT_EQ(Args({"none.cdg", "a.cdg"}), In("a.cdg"));
    std::filesystem::create_directory(m_folder / "folder");
    EXPECT_EQ(Args({"folder", "a.cdg"}), In("a.cdg"));
}

TEST_F(TypedArguments, AnAddressOfAFileIsThatFile)
{
    Make("a b.cdg");
    Make("caf\xE9.cdg");
    const QByteArray address = "file://" + In("a%20b.cdg");
    EXPECT_EQ(Args({address.constData()}), In("a b.cdg"));
    EXPECT_EQ(Args({("file://localhost" + In("caf%E9.cdg")).constData()}), In("caf\xE9.cdg"));
    EXPECT_EQ(Args({"none.cdg", address.constData()}), In("a b.cdg"));
    EXPECT_EQ(Args({"file:///no/such%20file.cdg"}), "/no/such file.cdg");
    EXPECT_EQ(Args({"http://localhost/a.cdg"}), In("http://localhost/a.cdg"));
}

TEST_F(TypedArguments, AFileIsWhatItIsNamedEvenLikeAnAddress)
{
    std::filesystem::create_directory(m_folder / "file:");
    Make("file:/a.cdg");
    EXPECT_EQ(Args({"file:/a.cdg"}), In("file:/a.cdg"));
}

TEST_F(TypedArguments, TwoDashesOnlySayThatANameFollows)
{
    Make("--help.cdg");
    Make("a.cdg");
    EXPECT_EQ(Args({"--", "a.cdg"}), In("a.cdg"));
    EXPECT_EQ(Args({"--", "--help.cdg"}), In("--help.cdg"));
    EXPECT_EQ(Args({"--"}), "");
    EXPECT_EQ(Args({"--", "--"}), In("--")) << "only the first";
}

} // namespace
} // namespace lantern
