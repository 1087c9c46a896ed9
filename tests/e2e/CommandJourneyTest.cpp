// SPDX-License-Identifier: GPL-3.0-or-later
#include "DeskJourney.h"

#include <cmath>

namespace lantern::test {
namespace {

class CommandsByHand : public DeskJourney {};

TEST_F(CommandsByHand, EachButtonOfTheToolbar)
{
    ASSERT_NO_FATAL_FAILURE(OpenDesk());
    for (const int button :
         {2, 1, 3, 4, 5, 24, 25, 12, 14, 0, 26, 31, 32, 33, 34, 35, 7, 8, 9, 21, 22, 10, 41, 42})
        ExpectCommand(button, [this, button] { hand.Click(Desk().Button(button)); });
    // The other speed is heard elsewhere; here it is enough that it was set.
    hand.Click(Desk().Button(6));
    hand.Click(Desk().Button(16));
    EXPECT_EQ(player->Program().WaitForExit(kPatience), 0);
    EXPECT_NE(home.Setting("speed"), "0");
    EXPECT_EQ(home.Setting("speed"), home.Setting("custom_speed"));
}

TEST_F(CommandsByHand, EachKey)
{
    struct Binding {
        int command;
        std::vector<std::string_view> keys;
    };
    const std::vector<Binding> bindings = {
        {0, {"o"}},
        {2, {"p", "space", "Pause"}},
        {1, {"p", "space", "Pause"}},
        {3, {"period", "KP_Decimal"}},
        {4, {"Right"}},
        {5, {"Page_Down"}},
        {24, {"Left"}},
        {25, {"Page_Up"}},
        {12, {"c"}},
        {14, {"Escape"}},
        {15, {"i", "a", "F1"}},
        {7, {"1"}},
        {8, {"2"}},
        {9, {"3"}},
        {21, {"4"}},
        {22, {"5"}},
        {10, {"f", "r", "0", "6"}},
        {41, {"KP_Add", "equal"}},
        {42, {"KP_Subtract", "minus"}},
        {26, {"m"}},
        {31, {"b"}},
        {32, {"k"}},
        {33, {"t"}},
        {34, {"v"}},
        {35, {"s"}},
    };
    ASSERT_NO_FATAL_FAILURE(OpenDesk());
    for (const Binding& binding : bindings) {
        for (const std::string_view key : binding.keys) {
            SCOPED_TRACE(key);
            ExpectCommand(binding.command, [this, key] { hand.Key(key); });
        }
    }
    // The sizes in between.
    for (const auto& [key, size] : {std::pair("ctrl+1", QSize(432, 288)),
                                    {"ctrl+2", QSize(720, 480)},
                                    {"ctrl+3", QSize(1037, 691)},
                                    {"ctrl+4", QSize(1296, 864)},
                                    {"ctrl+5", QSize(1584, 1056)}}) {
        hand.Key(key);
        EXPECT_TRUE(Eventually(
            [&, wanted = size] {
                const QSize now = PictureArea().size();
                return std::abs(now.width() - wanted.width()) <= 1 &&
                       std::abs(now.height() - wanted.height()) <= 1;
            },
            kPatience, 50ms))
            << key;
    }
    hand.Key("2");
    ASSERT_TRUE(AwaitPictureSize({576, 384}));
    // What only looks like a key of the table.
    EXPECT_TRUE(Moves(0.0, [this] { hand.Key("shift+Right"); }));
    hand.Key("F4");
    EXPECT_TRUE(player->AnswerTime());
    hand.Key("q");
    Leave();
    EXPECT_NE(home.Setting("speed"), "0");
}

TEST_F(CommandsByHand, EachEntryOfTheMenu)
{
    struct Entry {
        int row;
        int command;
    };
    // The rows between are separators.
    constexpr int kRows = 20;
    constexpr std::array<Entry, 14> kEntries = {{{1, 0},
                                                 {2, 2},
                                                 {2, 1},
                                                 {3, 3},
                                                 {5, 12},
                                                 {7, 4},
                                                 {8, 5},
                                                 {9, 24},
                                                 {10, 25},
                                                 {12, 10},
                                                 {13, 41},
                                                 {14, 42},
                                                 {16, 14},
                                                 {17, 15}}};
    ASSERT_NO_FATAL_FAILURE(OpenDesk());
    for (const Entry& entry : kEntries)
        ExpectCommand(entry.command, [&] { ChooseRow(entry.row, kRows); });
    ExpectCommand(44, [this] { ChooseRow(19, kRows); });
    ChooseRow(4, kRows); // a separator chooses nothing
    EXPECT_TRUE(AwaitSound());
    ChooseRow(20, kRows);
    EXPECT_EQ(player->Program().WaitForExit(kPatience), 0);
}

TEST_F(CommandsByHand, EachWayOut)
{
    const std::vector<Act> ways = {[this] { hand.Key("alt+F4"); }, [this] { hand.Key("ctrl+q"); },
                                   [this] { hand.Click(Desk().Button(16)); },
                                   [this] { player->AskToClose(); }};
    for (const Act& leave : ways) {
        ASSERT_NO_FATAL_FAILURE(StartPlayer());
        leave();
        EXPECT_EQ(player->Program().WaitForExit(kPatience), 0) << player->Log();
        EXPECT_EQ(player->Log(), "");
    }
}

} // namespace
} // namespace lantern::test
