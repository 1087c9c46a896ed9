// SPDX-License-Identifier: GPL-3.0-or-later
#include "modDragDrop.h"

#include "DropData.h"
#include "PathText.h"
#include "RawFileList.h"

#include <gmock/gmock.h>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(UnicodeDropFiles, ItReplacesTheListByTheTrueNamesInTheirOrder)
{
    const test::RawFileList offer("file:///%E6%BC%A2.cdg\r\nfile:///caf%E9.zip\r\n");
    DropData data(&offer);
    data.Files = {QStringLiteral("/old.cdg")};
    EXPECT_TRUE(UnicodeDropFiles(data));
    EXPECT_THAT(data.Files, ElementsAre(QStringLiteral("/漢.cdg"), TextFromNative("/caf\xE9.zip")));
    EXPECT_EQ(NativeFromText(data.Files.back()), QByteArray("/caf\xE9.zip"));
}

TEST(UnicodeDropFiles, AListOfNoFilesWasLookedAt)
{
    const test::RawFileList offer("http://localhost/a.cdg\r\n");
    DropData data(&offer);
    EXPECT_TRUE(UnicodeDropFiles(data));
    EXPECT_THAT(data.Files, IsEmpty());
}

TEST(UnicodeDropFiles, WithoutAListNothingIsLeftOfAnOldOne)
{
    DropData nothing(nullptr);
    nothing.Files = {QStringLiteral("/old.cdg")};
    EXPECT_FALSE(UnicodeDropFiles(nothing));
    EXPECT_THAT(nothing.Files, IsEmpty());

    const test::RawFileList silent("");
    DropData data(&silent);
    EXPECT_FALSE(UnicodeDropFiles(data));
}

TEST(FirstUsableFile, TheFirstOneInTheListCounts)
{
    EXPECT_EQ(FirstUsableFile(
                  {QStringLiteral("/a.txt"), QStringLiteral("/b.mp3"), QStringLiteral("/b.cdg")}),
              QStringLiteral("/b.mp3"));
}

TEST(FirstUsableFile, EachExtensionOfThePlayerIsTakenInAnyCase)
{
    for (const char* extension :
         {"cdg", "bin", "zip", "mp3", "wav", "ogg", "wma", "flac", "mp4", "mod",
          "xm",  "it",  "aif", "aac", "au",  "ape", "mpc", "CDG",  "Zip", "MP3"}) {
        const QString file = QStringLiteral("/a.") + QLatin1String(extension);
        EXPECT_EQ(FirstUsableFile({file}), file);
    }
}

TEST(FirstUsableFile, WhatThePlayerCannotOpenIsNotTaken)
{
    EXPECT_EQ(FirstUsableFile({QStringLiteral("/a.txt"), QStringLiteral("/cdg"),
                               QStringLiteral("/a.cdg/"), QStringLiteral("/x.zip/a"),
                               QStringLiteral("/a.cdgx"), QStringLiteral("/")}),
              QString());
    EXPECT_EQ(FirstUsableFile({}), QString());
}

} // namespace
} // namespace lantern
