// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaTypes.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(MediaTypes, TheAudioExtensionsStandInTheOrderOfTheSearch)
{
    EXPECT_EQ(JoinedAudioExtensions(u","),
              QStringLiteral("mp3,wav,ogg,wma,flac,mp4,mod,xm,it,aif,aac,au,ape,mpc"));
}

TEST(MediaTypes, FiltersJoinTheAudioExtensionsTheirOwnWay)
{
    const QString filter = QStringLiteral("*.") + JoinedAudioExtensions(u";*.");
    EXPECT_TRUE(filter.startsWith(QStringLiteral("*.mp3;*.wav;*.ogg;")));
    EXPECT_TRUE(filter.endsWith(QStringLiteral(";*.ape;*.mpc")));
}

TEST(MediaTypes, EachAudioExtensionIsOneWhateverItsLetterCase)
{
    for (const QStringView extension : AudioExtensions) {
        const QString path = QStringLiteral("/music/a.") + extension.toString();
        EXPECT_TRUE(IsAudioExtension(path)) << path.toStdString();
        EXPECT_TRUE(IsAudioExtension(path.toUpper())) << path.toStdString();
        EXPECT_FALSE(IsMediaExtension(path)) << path.toStdString();
    }
}

TEST(MediaTypes, EachMediaExtensionIsOneWhateverItsLetterCase)
{
    for (const QStringView extension : MediaExtensions) {
        const QString path = QStringLiteral("/music/a.") + extension.toString();
        EXPECT_TRUE(IsMediaExtension(path)) << path.toStdString();
        EXPECT_TRUE(IsMediaExtension(path.toUpper())) << path.toStdString();
        EXPECT_FALSE(IsAudioExtension(path)) << path.toStdString();
    }
}

TEST(MediaTypes, OtherNamesAreNeither)
{
    for (const char* name : {"a", "", "a.", "mp3", "a.mp", "a.p3", "a.mp3x", "a.xmp3", "a.txt",
                             "c:\\x.y\\a", "/x.mp3/a", "a.cdg.txt", "a.m4a"}) {
        EXPECT_FALSE(IsAudioExtension(QString::fromUtf8(name))) << name;
        EXPECT_FALSE(IsMediaExtension(QString::fromUtf8(name))) << name;
    }
}

TEST(MediaTypes, ATracksTitleIsItsFilesNameWithoutFolderAndExtension)
{
    const auto title = [](const char* path) {
        return TrackTitle(QString::fromUtf8(path)).toStdString();
    };
    EXPECT_EQ(title("/music/Singer - Song.cdg"), "Singer - Song");
    EXPECT_EQ(title("/music.cdg/Mr. Song.zip"), "Mr. Song");
    EXPECT_EQ(title("song.bin"), "song");
    EXPECT_EQ(title("/music.cdg/song"), "song");
    EXPECT_EQ(title(""), "");
}

// The list is searched as one text between stars.
TEST(MediaTypes, StarsInAnExtensionMatchThoseOfTheList)
{
    EXPECT_TRUE(IsAudioExtension(QStringLiteral("a.mp3*wav")));
    EXPECT_FALSE(IsAudioExtension(QStringLiteral("a.mp3*ogg")));
    EXPECT_FALSE(IsAudioExtension(QStringLiteral("a.*")));
}

} // namespace
} // namespace lantern
