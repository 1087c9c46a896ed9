// SPDX-License-Identifier: GPL-3.0-or-later
#include "ContextMenu.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>

namespace lantern {
namespace {

constexpr ContextMenuState kPlaying = {
    .canPlay = false, .canPause = true, .canStop = true, .canSkip = true, .isMaximised = false};

QStringList TextsOf(const ContextMenuState& state)
{
    QStringList texts;
    for (const MenuEntry& item : ContextMenuItems(state))
        texts += item.text;
    return texts;
}

QStringList KeysOf(const ContextMenuState& state)
{
    QStringList keys;
    for (const MenuEntry& item : ContextMenuItems(state))
        keys += item.key;
    return keys;
}

QStringList List(const char* texts)
{
    return QString::fromLatin1(texts).split(u'|');
}

TEST(ContextMenu, WithoutATrackOnlyWhatNeedsNoneIsOffered)
{
    EXPECT_EQ(TextsOf({}), List("Open |-|Copy Screen|-|Full Screen|Increase Display Size|"
                                "Reduce Display Size|-|Options|About Lyric Lantern CDG Player |-|"
                                "Go to the Lyric Lantern web site|Exit Lyric Lantern CDG Player"));
    EXPECT_EQ(KeysOf({}), List("0||12||10|41|42||OPTIONS|15||44|16"));
}

TEST(ContextMenu, WhileATrackPlaysEverythingButPlayIsOffered)
{
    EXPECT_EQ(TextsOf(kPlaying),
              List("Open |Pause|Stop|-|Copy Screen|-|Forward +10 seconds |"
                   "Forward +60 seconds |Rewind 10 seconds |Rewind 60 seconds |-|Full Screen|"
                   "Increase Display Size|Reduce Display Size|-|Options|"
                   "About Lyric Lantern CDG Player |-|Go to the Lyric Lantern web site|"
                   "Exit Lyric Lantern CDG Player"));
    EXPECT_EQ(KeysOf(kPlaying), List("0|2|3||12||4|5|24|25||10|41|42||OPTIONS|15||44|16"));
}

TEST(ContextMenu, StoppedAtTheStartThereIsNoStop)
{
    const QStringList keys = KeysOf({.canPlay = true, .canSkip = true});
    EXPECT_EQ(keys.mid(0, 3), List("0|1|"));
    EXPECT_FALSE(keys.contains(QStringLiteral("3")));
    EXPECT_TRUE(keys.contains(QStringLiteral("25")));
}

TEST(ContextMenu, InFullScreenTheSizeIsRestored)
{
    const QStringList texts = TextsOf({.isMaximised = true});
    EXPECT_TRUE(texts.contains(QStringLiteral("Restore Screen Size")));
    EXPECT_FALSE(texts.contains(QStringLiteral("Full Screen")));
    EXPECT_EQ(KeysOf({.isMaximised = true}), KeysOf({}));
}

TEST(ContextMenu, InEveryStateTheSameItemsFollowEachOtherAndNoTwoSeparators)
{
    for (int bits = 0; bits < 32; ++bits) {
        const ContextMenuState state = {.canPlay = (bits & 1) != 0,
                                        .canPause = (bits & 2) != 0,
                                        .canStop = (bits & 4) != 0,
                                        .canSkip = (bits & 8) != 0,
                                        .isMaximised = (bits & 16) != 0};
        const QStringList keys = KeysOf(state);
        EXPECT_EQ(keys.contains(QStringLiteral("1")), state.canPlay);
        EXPECT_EQ(keys.contains(QStringLiteral("2")), state.canPause);
        EXPECT_EQ(keys.contains(QStringLiteral("3")), state.canStop);
        for (const char* number : {"4", "5", "24", "25"})
            EXPECT_EQ(keys.contains(QLatin1String(number)), state.canSkip);
        const auto areBothSeparators = [](const QString& one, const QString& next) {
            return one.isEmpty() && next.isEmpty();
        };
        EXPECT_EQ(std::ranges::adjacent_find(keys, areBothSeparators), keys.end());
        EXPECT_FALSE(TextsOf(state).contains(QString())) << "each item has a text";
    }
}

} // namespace
} // namespace lantern
