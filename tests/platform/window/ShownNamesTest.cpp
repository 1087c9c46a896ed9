// SPDX-License-Identifier: GPL-3.0-or-later
#include "ShownNames.h"

#include "PathText.h"
#include "Process.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

using Match = ShownFile::Match;

class ShownNamesTest : public ::testing::Test {
protected:
    void Make(const std::string& name) const
    {
        std::filesystem::create_directories((folder / name).parent_path());
        test::WriteFile(folder / name, "");
    }

    QString TextOf(const std::string& name) const
    {
        return TextFromNative((folder / name).native().c_str());
    }

    ShownFile Shown(const std::string& name) const { return FileShownAs(ShownPath(TextOf(name))); }

    test::ScratchFolder folder;
};

TEST_F(ShownNamesTest, ANameThatIsTextStandsForItself)
{
    for (const char* name : {"a.cdg", "caf\xC3\xA9.cdg", "not there", "\xF0\x9F\x8E\xA4.zip"}) {
        const ShownFile file = Shown(name);
        EXPECT_EQ(file.match, Match::One);
        EXPECT_EQ(file.path, TextOf(name));
        EXPECT_FALSE(MayBeShownOnly(ShownPath(TextOf(name))));
    }
    EXPECT_EQ(FileShownAs(QStringLiteral("/")).path, QStringLiteral("/"));
}

TEST_F(ShownNamesTest, BytesThatAreNoTextAreFoundBehindTheirMark)
{
    Make("caf\xE9.cdg");
    Make("cafe.cdg");
    EXPECT_EQ(ShownPath(TextOf("caf\xE9.cdg")).right(8), QStringLiteral("caf\uFFFD.cdg"));
    EXPECT_TRUE(MayBeShownOnly(ShownPath(TextOf("caf\xE9.cdg"))));
    const ShownFile file = Shown("caf\xE9.cdg");
    EXPECT_EQ(file.match, Match::One);
    EXPECT_EQ(file.path, TextOf("caf\xE9.cdg"));
}

TEST_F(ShownNamesTest, AFolderOnTheWayIsFoundToo)
{
    Make("m\xFCsik/x/\xFF\xFE.cdg");
    const ShownFile file = Shown("m\xFCsik/x/\xFF\xFE.cdg");
    EXPECT_EQ(file.match, Match::One);
    EXPECT_EQ(file.path, TextOf("m\xFCsik/x/\xFF\xFE.cdg"));
}

TEST_F(ShownNamesTest, NoneIsPreferredOfSeveral)
{
    Make("caf\xE8.cdg");
    Make("caf\xE9.cdg");
    EXPECT_EQ(Shown("caf\xE9.cdg").match, Match::Several);
    EXPECT_EQ(Shown("caf\xE9.cdg").path, QString());
}

TEST_F(ShownNamesTest, TheMarkItselfMayBeInAName)
{
    Make("caf\xEF\xBF\xBD.cdg");
    EXPECT_EQ(Shown("caf\xEF\xBF\xBD.cdg").path, TextOf("caf\xEF\xBF\xBD.cdg"));
    Make("caf\xE9.cdg");
    EXPECT_EQ(Shown("caf\xE9.cdg").match, Match::Several);
}

TEST_F(ShownNamesTest, WhatIsNotThereIsNone)
{
    EXPECT_EQ(FileShownAs(QString()).match, Match::None);
    EXPECT_EQ(Shown("caf\xE9.cdg").match, Match::None);
    EXPECT_EQ(Shown("no\xE9/such/file").match, Match::None);
    Make("plain");
    EXPECT_EQ(Shown("plain/caf\xE9.cdg").match, Match::None);
}

} // namespace
} // namespace lantern
