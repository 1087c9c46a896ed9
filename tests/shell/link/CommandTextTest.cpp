// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandLink.h"
#include "PathText.h"
#include "fDDE.h"

#include <gtest/gtest.h>
#include <random>

namespace lantern {
namespace {

TEST(CommandText, EachUnitIsFourUpperCaseDigits)
{
    EXPECT_EQ(EncodeCommand(QStringLiteral("ab.cdg")), QByteArray("00610062002E006300640067"));
    EXPECT_EQ(EncodeCommand(QString()), QByteArray());
    EXPECT_EQ(EncodeCommand(QStringLiteral(u"漢")), QByteArray("6F22"));
    EXPECT_EQ(EncodeCommand(QStringLiteral(u"🎤")), QByteArray("D83CDFA4"));
}

TEST(CommandText, DecodingGivesBackAnyText)
{
    std::mt19937 random(11);
    for (int round = 0; round < 2000; ++round) {
        QString text;
        for (auto length = random() % 40; length > 0; --length)
            text += QChar(static_cast<char16_t>(random()));
        ASSERT_EQ(DecodeCommand(EncodeCommand(text)), text);
    }
    const QString noText = TextFromNative("caf\xE9");
    EXPECT_EQ(DecodeCommand(EncodeCommand(noText)), noText);
}

TEST(CommandText, AShortLastGroupIsReadAsFarAsItGoes)
{
    EXPECT_EQ(DecodeCommand("006100"), QStringLiteral("a") + QChar(u'\0'));
    EXPECT_EQ(DecodeCommand("006162"), QStringLiteral("a") + QChar(u'\x62'));
    EXPECT_EQ(DecodeCommand("7"), QStringLiteral(u"\u0007"));
}

TEST(CommandText, LowerCaseDigitsAreDigitsToo)
{
    EXPECT_EQ(DecodeCommand("6f22"), QStringLiteral(u"漢"));
}

TEST(CommandText, WhatIsNoCommandIsRefused)
{
    EXPECT_EQ(ReceivedCommand("0061 062"), std::nullopt);
    EXPECT_EQ(ReceivedCommand("006G"), std::nullopt);
    EXPECT_EQ(ReceivedCommand(QByteArray(4, '\0')), std::nullopt);
    EXPECT_EQ(ReceivedCommand(QByteArray(kLongestCommand + 1, '0')), std::nullopt);
    EXPECT_TRUE(ReceivedCommand(QByteArray(kLongestCommand, '0')).has_value());
    EXPECT_EQ(ReceivedCommand(""), QString());
}

} // namespace
} // namespace lantern
