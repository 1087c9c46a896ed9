// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileDialogFilters.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

std::string LineOf(const char* label, const char* patterns)
{
    return ToolkitFilters({{QString::fromUtf8(label), QString::fromUtf8(patterns)}})
        .front()
        .toStdString();
}

TEST(ToolkitFilters, EachLetterStandsForBothCases)
{
    EXPECT_EQ(LineOf("Songs", "*.cdg;*.BIN"), "Songs (*.[cC][dD][gG] *.[bB][iI][nN])");
    EXPECT_EQ(LineOf("Old", "*.mp3"), "Old (*.[mM][pP]3)");
    EXPECT_EQ(LineOf("Some", "[ab]?.x"), "Some ([aAbB]?.[xX])");
    EXPECT_EQ(LineOf("Open end", "[ab"), "Open end ([aAbB)");
}

TEST(ToolkitFilters, AStarOnBothSidesOfAFullStopMeansAllNames)
{
    EXPECT_EQ(LineOf("All Files (*.*)", "*.*"), "All Files (*.*) (*)");
    EXPECT_EQ(LineOf("x", "*.*.cdg"), "x (*.*.[cC][dD][gG])");
}

TEST(ToolkitFilters, WhatTheToolkitTakesForNoPatternBecomesAnyCharacter)
{
    EXPECT_EQ(LineOf("x", "a b;(c);\xC3\xA9*"), "x ([aA]?[bB] ?[cC]? ?*)");
    EXPECT_EQ(LineOf("x", ""), "x ()");
    EXPECT_EQ(LineOf("x", ";; ;"), "x ()");
}

TEST(ToolkitFilters, KeepTheirOrder)
{
    const std::vector<FileFilter> filters = {{QStringLiteral("b"), QStringLiteral("1")},
                                             {QStringLiteral("a"), QStringLiteral("2")}};
    EXPECT_EQ(ToolkitFilters(filters),
              (QStringList{QStringLiteral("b (1)"), QStringLiteral("a (2)")}));
    EXPECT_TRUE(ToolkitFilters({}).isEmpty());
}

} // namespace
} // namespace lantern
