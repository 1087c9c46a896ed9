// SPDX-License-Identifier: GPL-3.0-or-later
#include "TickerFace.h"

#include <gtest/gtest.h>

#include <limits>

namespace lantern {
namespace {

QString Shown(std::int32_t seconds)
{
    return TickerText(TickerCover::None, TimeOf(seconds).digits);
}

TEST(TickerFace, AnHourIsSixtyMinutesAndAHundredMinutesAreNone)
{
    EXPECT_EQ(Shown(0), QStringLiteral("00:00"));
    EXPECT_EQ(Shown(59), QStringLiteral("00:59"));
    EXPECT_EQ(Shown(60), QStringLiteral("01:00"));
    EXPECT_EQ(Shown(3599), QStringLiteral("59:59"));
    EXPECT_EQ(Shown(3600), QStringLiteral("60:00"));
    EXPECT_EQ(Shown(5999), QStringLiteral("99:59"));
    EXPECT_EQ(Shown(6000), QStringLiteral("00:00"));
    EXPECT_EQ(Shown(6001), QStringLiteral("00:01"));
}

TEST(TickerFace, EverySecondHasItsOwnFourDigits)
{
    for (std::int32_t seconds = 0; seconds < 12000; ++seconds) {
        const QString expected = QStringLiteral("%1:%2")
                                     .arg(seconds % 6000 / 60, 2, 10, QLatin1Char('0'))
                                     .arg(seconds % 60, 2, 10, QLatin1Char('0'));
        ASSERT_EQ(Shown(seconds), expected);
        ASSERT_EQ(TimeOf(seconds).seconds, seconds % 60);
    }
}

TEST(TickerFace, TheFarthestTimesHaveDigitsToo)
{
    EXPECT_EQ(TimeOf(std::numeric_limits<std::int32_t>::max()).digits, (TickerDigits{7, 0, 4, 9}));
    EXPECT_EQ(TimeOf(std::numeric_limits<std::int32_t>::min()).digits,
              (TickerDigits{-8, 0, -4, -9}));
}

TEST(TickerFace, LoadingCoversWhateverTheStateIsAndTheTitleOnlyNothing)
{
    for (const bool state : {false, true}) {
        EXPECT_EQ(CoverFor(-1, state), TickerCover::Loading);
        EXPECT_EQ(CoverFor(1, state), TickerCover::None);
    }
    EXPECT_EQ(CoverFor(0, false), TickerCover::Idle);
    EXPECT_EQ(CoverFor(0, true), TickerCover::None);
}

TEST(TickerFace, TheDigitsStandFromTheRightAroundTheColon)
{
    EXPECT_EQ(kDigitLefts, (std::array{51, 38, 18, 5}));
    EXPECT_EQ(kColonLeft, 31);
}

} // namespace
} // namespace lantern
