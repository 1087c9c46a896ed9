// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZeroedText.h"

#include "Zeros.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace lantern {
namespace {

TEST(LeftOfNull, EndsAtTheFirstZeroCharacter)
{
    EXPECT_EQ(sLeftOfNull(Zeros("")), QString());
    EXPECT_EQ(sLeftOfNull(Zeros("ab")), Zeros("ab"));
    EXPECT_EQ(sLeftOfNull(Zeros("ab0c0")), Zeros("ab"));
    EXPECT_EQ(sLeftOfNull(Zeros("0ab")), QString());
}

TEST(LeftOfDoubleNull, EndsAtTheFirstPairAndWithoutAnyAtTheFirstZero)
{
    EXPECT_EQ(sLeftOfDoubleNull(Zeros("a0b00c00")), Zeros("a0b"));
    EXPECT_EQ(sLeftOfDoubleNull(Zeros("a000b")), Zeros("a"));
    EXPECT_EQ(sLeftOfDoubleNull(Zeros("a0b0c")), Zeros("a"));
    EXPECT_EQ(sLeftOfDoubleNull(Zeros("a0b0")), Zeros("a"));
    EXPECT_EQ(sLeftOfDoubleNull(Zeros("abc")), Zeros("abc"));
    EXPECT_EQ(sLeftOfDoubleNull(Zeros("00a")), QString());
    EXPECT_EQ(sLeftOfDoubleNull(QString()), QString());
}

TEST(ZeroedText, TheZerosBehindWhatWasWrittenCount)
{
    ZeroedText text(5);
    text.Write(Zeros("a0b"));
    EXPECT_EQ(text.LeftOfDoubleNull(), Zeros("a0b"));
    ZeroedText tight(4);
    tight.Write(Zeros("a0b"));
    EXPECT_EQ(tight.LeftOfDoubleNull(), Zeros("a"));
}

TEST(ZeroedText, AsManyCharactersAsOneAsksForTakeNoMemory)
{
    ZeroedText text(std::numeric_limits<std::int32_t>::max());
    text.Write(QStringLiteral("abc"));
    EXPECT_EQ(text.Length(), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(text.LeftOfNull(), QStringLiteral("abc"));
    EXPECT_EQ(text.LeftOfDoubleNull(), QStringLiteral("abc"));
    EXPECT_EQ(text.MidToNull(std::numeric_limits<std::int32_t>::max()), QString());
}

TEST(ZeroedText, WhatDoesNotFitIsDropped)
{
    ZeroedText text(2);
    text.Write(QStringLiteral("abc"));
    EXPECT_EQ(text.LeftOfNull(), QStringLiteral("ab"));
    EXPECT_EQ(text.At(2), u'\0');
    ZeroedText none;
    none.Write(QStringLiteral("abc"));
    EXPECT_EQ(none.LeftOfDoubleNull(), QString());
}

// A buffer with all its characters in memory.
struct PlainBuffer {
    QString text;

    void Write(const QString& written)
    {
        for (qsizetype i = 0; i < std::min(written.size(), text.size()); ++i)
            text[i] = written[i];
    }
};

QString RandomZeroedText(std::mt19937& random)
{
    QString text;
    for (auto length = random() % 9; length > 0; --length)
        text +=
            random() % 3 == 0 ? QChar(u'\0') : QChar(static_cast<char16_t>('a' + random() % 26));
    return text;
}

void ExpectSame(const ZeroedText& buffer, const PlainBuffer& plain)
{
    ASSERT_EQ(buffer.LeftOfNull(), sLeftOfNull(plain.text));
    ASSERT_EQ(buffer.LeftOfDoubleNull(), sLeftOfDoubleNull(plain.text));
    for (std::int32_t i = 0; i <= buffer.Length(); ++i) {
        ASSERT_EQ(buffer.Left(i), plain.text.left(i));
        ASSERT_EQ(buffer.MidToNull(i), sLeftOfNull(plain.text.mid(i)));
        ASSERT_EQ(buffer.At(i), i < plain.text.size() ? plain.text[i].unicode() : u'\0');
    }
}

TEST(ZeroedText, ReadsAsABufferThatIsAllInMemory)
{
    std::mt19937 random(5); // NOLINT(cert-msc51-cpp): the same texts in every run
    for (int round = 0; round < 3000; ++round) {
        const auto length = static_cast<std::int32_t>(random() % 10);
        ZeroedText buffer(length);
        PlainBuffer plain = {QString(length, QChar(u'\0'))};
        for (int i = 0; i < 4; ++i) {
            const QString written = RandomZeroedText(random);
            buffer.Write(written);
            plain.Write(written);
            ASSERT_NO_FATAL_FAILURE(ExpectSame(buffer, plain)) << round;
        }
    }
}

} // namespace
} // namespace lantern
