// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandArgs.h"
#include "PathText.h"

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

} // namespace
} // namespace lantern
