// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"

namespace lantern::test {
namespace {

class DemoSong : public Journey {};

TEST_F(DemoSong, ItPlaysByItsOption)
{
    StartPlayer({"--demo"});
    EXPECT_TRUE(AwaitSound());
    constexpr QRgb kPage = 0xFF001144; // what is behind the words

    const QRect window = player->WindowArea();
    EXPECT_TRUE(AwaitColour({window.x() + 60, window.y() + 60}, kPage));
    Leave();
    EXPECT_TRUE(home.Setting("lastplayed").ends_with("/share/lyric-lantern/demo/demo.cdg"))
        << home.Setting("lastplayed");
}

} // namespace
} // namespace lantern::test
