// SPDX-License-Identifier: GPL-3.0-or-later
#include "PropertyBag.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(PropertyBag, AMissingKeyGivesItsDefault)
{
    const PropertyBag bag;
    EXPECT_EQ(bag.Read(QStringLiteral("MAX"), 100), 100);
    EXPECT_EQ(bag.Read(QStringLiteral("CAPTION"), QStringLiteral("x")), QStringLiteral("x"));
}

TEST(PropertyBag, KeysCountWithTheirCase)
{
    PropertyBag bag;
    bag.Write(QStringLiteral("IsCheckbox"), true);
    EXPECT_TRUE(bag.Read(QStringLiteral("IsCheckbox"), false));
    EXPECT_FALSE(bag.Read(QStringLiteral("IsCheckBox"), false));
}

TEST(PropertyBag, ADefaultIsNotStored)
{
    PropertyBag bag;
    bag.Write(QStringLiteral("MIN"), 0, 0);
    bag.Write(QStringLiteral("MAX"), 7, 100);
    EXPECT_EQ(bag.KeysInOrder(), QStringList{QStringLiteral("MAX")});
    EXPECT_EQ(bag.Read(QStringLiteral("MAX"), 100), 7);
}

TEST(PropertyBag, KeysKeepTheOrderOfTheirFirstWrite)
{
    PropertyBag bag;
    bag.Write(QStringLiteral("b"), 1);
    bag.Write(QStringLiteral("a"), 2);
    bag.Write(QStringLiteral("b"), 3);
    EXPECT_EQ(bag.KeysInOrder(), (QStringList{QStringLiteral("b"), QStringLiteral("a")}));
    EXPECT_EQ(bag.Read(QStringLiteral("b"), 0), 3);
}

} // namespace
} // namespace lantern
