// SPDX-License-Identifier: GPL-3.0-or-later
#include "UriList.h"

#include <climits>
#include <gmock/gmock.h>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

std::optional<QByteArray> Name(QByteArrayView uri)
{
    return FileNameOfUri(uri, "karaoke-box");
}

QList<QByteArray> Names(QByteArrayView list)
{
    return FileNamesOfUriList(list, "karaoke-box");
}

QByteArray Bytes(const char* text, qsizetype size)
{
    return {text, size};
}

TEST(FileNameOfUri, AFileIsOnThisMachineWithoutAHostOrByItsNames)
{
    for (const QByteArrayView uri :
         {"file:///m/a.cdg", "file:/m/a.cdg", "file://localhost/m/a.cdg",
          "file://LocalHost/m/a.cdg", "file://karaoke-box/m/a.cdg", "FILE:///m/a.cdg"})
        EXPECT_EQ(Name(uri), QByteArray("/m/a.cdg")) << uri.data();
}

TEST(FileNameOfUri, WhatIsElsewhereOrNoFileIsRefused)
{
    for (const QByteArrayView uri :
         {"file://other/m/a.cdg", "file://karaoke-box.example/m/a.cdg", "file://user@localhost/a",
          "file://localhost:80/a", "http://localhost/a.cdg", "https:///a.cdg", "sftp://me/a.cdg",
          "/m/a.cdg", "m/a.cdg", "file:", "file://", "file://localhost", "file:a.cdg",
          "file:%2Fa.cdg", "file", "files:///a.cdg", " file:///a.cdg", ""})
        EXPECT_EQ(Name(uri), std::nullopt) << uri.data();
}

TEST(FileNameOfUri, WithoutAHostNameOfItsOwnAnEmptyHostIsStillThisMachine)
{
    EXPECT_EQ(FileNameOfUri("file:///a", ""), QByteArray("/a"));
    EXPECT_EQ(FileNameOfUri("file://x/a", ""), std::nullopt);
}

TEST(FileNameOfUri, EscapesAreBytes)
{
    EXPECT_EQ(Name("file:///%E6%BC%A2%20%23%3f.cdg"), QByteArray("/\u6F22 #?.cdg"));
    EXPECT_EQ(Name("file:///caf%E9%FF.cdg"), QByteArray("/caf\xE9\xFF.cdg"));
    EXPECT_EQ(Name("file:///a%2525"), QByteArray("/a%25")) << "decoded once";
    EXPECT_EQ(Name("file:///a%0Ab"), QByteArray("/a\nb"));
}

TEST(FileNameOfUri, WhatShouldHaveBeenEscapedMeansItself)
{
    EXPECT_EQ(Name("file:///100%.cdg"), QByteArray("/100%.cdg"));
    EXPECT_EQ(Name("file:///%4"), QByteArray("/%4"));
    EXPECT_EQ(Name("file:///%"), QByteArray("/%"));
    EXPECT_EQ(Name("file:///%G1%1G"), QByteArray("/%G1%1G"));
    EXPECT_EQ(Name("file:///%%41"), QByteArray("/%A"));
    EXPECT_EQ(Name("file:///a b#c?d.cdg"), QByteArray("/a b#c?d.cdg"));
    EXPECT_EQ(Name("file:///\xE9.cdg"), QByteArray("/\xE9.cdg"));
}

TEST(FileNameOfUri, WhatLiesBehindTheTextIsNotOfAnEscape)
{
    const QByteArrayView text = "file:///%41";
    EXPECT_EQ(Name(text), QByteArray("/A"));
    EXPECT_EQ(Name(text.first(10)), QByteArray("/%4"));
    EXPECT_EQ(Name(text.first(9)), QByteArray("/%"));
}

TEST(FileNameOfUri, ANameThatNoFileCanHaveIsRefused)
{
    EXPECT_EQ(Name("file:///a%00.cdg"), std::nullopt);
    const QByteArray longest = '/' + QByteArray(PATH_MAX - 2, 'x');
    EXPECT_EQ(Name("file://" + longest), longest);
    EXPECT_EQ(Name("file://" + longest + 'x'), std::nullopt);
}

TEST(UriList, NamesStandInTheOrderOfTheList)
{
    EXPECT_THAT(Names("file:///c.txt\r\nfile:///a.zip\r\nfile:///b.cdg\r\n"),
                ElementsAre("/c.txt", "/a.zip", "/b.cdg"));
}

TEST(UriList, EachKindOfLineEndIsOne)
{
    EXPECT_THAT(Names("file:///a\nfile:///b\rfile:///c"), ElementsAre("/a", "/b", "/c"));
    EXPECT_THAT(Names(Bytes("file:///a\0file:///b\0", 20)), ElementsAre("/a", "/b"));
    EXPECT_THAT(Names(Bytes("\0\n\r\n", 4)), IsEmpty());
    EXPECT_THAT(Names(""), IsEmpty());
}

TEST(UriList, CommentsAndOtherLinesArePassedOver)
{
    EXPECT_THAT(Names("# file:///x\r\n#file:///y\r\n\r\nhttp://a/b.cdg\r\nfile://other/c.cdg\r\n"
                      "file:///d.cdg"),
                ElementsAre("/d.cdg"));
}

TEST(UriList, MegabytesWithoutALineEndNameNothing)
{
    EXPECT_THAT(Names(QByteArray(kLongestUriList * 2, 'x')), IsEmpty());
    EXPECT_THAT(Names("file:///" + QByteArray(kLongestUriList * 2, 'x')), IsEmpty());
    EXPECT_THAT(Names(QByteArray(kLongestUriList * 2, '%')), IsEmpty());
    EXPECT_THAT(Names(QByteArray(kLongestUriList * 2, '\n')), IsEmpty());
}

TEST(UriList, OfATooLongListTheWholeLinesWithinTheLimitCount)
{
    QByteArray list =
        "file:///first\n#" + QByteArray(kLongestUriList - 29, 'x') + "\nfile:///whole";
    ASSERT_EQ(list.size(), kLongestUriList);
    EXPECT_THAT(Names(list), ElementsAre("/first", "/whole"));
    EXPECT_THAT(Names(list + "-and-cut"), ElementsAre("/first"));
}

TEST(UriList, ThereIsALimitToTheNames)
{
    EXPECT_THAT(Names(QByteArray("file:/a\n").repeated(kMostUriListNames + 10)),
                SizeIs(kMostUriListNames));
}

} // namespace
} // namespace lantern
