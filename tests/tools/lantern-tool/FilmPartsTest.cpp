// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmPictures.h"
#include "SongName.h"

#include <gtest/gtest.h>

namespace lantern::tool {
namespace {

SongName Song(const char* artist, const char* title)
{
    return {.title = QString::fromUtf8(title), .artist = QString::fromUtf8(artist)};
}

SongName Named(const char* name)
{
    return SongNameFrom(QString::fromUtf8(name));
}

TEST(SongName, IsArtistAndTitle)
{
    EXPECT_EQ(Named("Title"), Song("", "Title"));
    EXPECT_EQ(Named("Artist - Title"), Song("Artist", "Title"));
    EXPECT_EQ(Named("An Artist -  The Title - Live"), Song("An Artist", "The Title - Live"));
    EXPECT_EQ(Named("An_Artist_-_The_Title"), Song("An Artist", "The Title"));
    EXPECT_EQ(Named("Twenty-One"), Song("", "Twenty-One"));
    EXPECT_EQ(Named(""), Song("", ""));
    EXPECT_EQ(Named(" - "), Song("", ""));
}

TEST(SongName, HasNoNumberOfADisc)
{
    EXPECT_EQ(Named("SC8123-05 - Artist - Title"), Song("Artist", "Title"));
    EXPECT_EQ(Named("SC8123 - 05 - Artist - Title"), Song("Artist", "Title"));
    EXPECT_EQ(Named("SC8123-05 - Title"), Song("", "Title"));
    EXPECT_EQ(Named("07 - Artist - Title"), Song("Artist", "Title"));
}

TEST(SongName, AnArtistMayLookLikeANumber)
{
    EXPECT_EQ(Named("U2 - Title"), Song("U2", "Title"));
    EXPECT_EQ(Named("311 - Title"), Song("311", "Title"));
    EXPECT_EQ(Named("AB123 - Title"), Song("AB123", "Title"));
}

TEST(PictureInFilm, IsThreeToTwoWithABorderAround)
{
    EXPECT_EQ(PictureInFilm({1920, 1080}), QRect(240, 60, 1440, 960));
    EXPECT_EQ(PictureInFilm({300, 216}), QRect(6, 12, 288, 192));
    EXPECT_EQ(PictureInFilm({600, 1000}), QRect(12, 308, 576, 384));
    for (int width = kSmallestFilm; width < 400; width += 7) {
        for (int height = kSmallestFilm; height < 400; height += 5) {
            const QRect place = PictureInFilm({width, height});
            EXPECT_GE(place.height(), 2);
            EXPECT_EQ(place.width() * 2, place.height() * 3);
            EXPECT_GE(place.left(), width / 100);
            EXPECT_GE(place.top(), height / 36);
            EXPECT_LE(std::abs(width - place.width() - 2 * place.left()), 1);
            EXPECT_LE(std::abs(height - place.height() - 2 * place.top()), 1);
        }
    }
}

TEST(PictureInFilm, LargeOnesToo)
{
    EXPECT_EQ(PictureInFilm({4096, 4096}).width(), 3930);
    EXPECT_EQ(PictureInFilm({4096, 4096}).height(), 2620);
}

} // namespace
} // namespace lantern::tool
