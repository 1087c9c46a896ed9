// SPDX-License-Identifier: GPL-3.0-or-later
#include "DropData.h"

#include "RawFileList.h"

#include <QMimeData>

#include <gmock/gmock.h>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

TEST(HarmlessAction, NothingIsEverMovedAway)
{
    for (int bits = 0; bits < 16; ++bits) {
        Qt::DropActions offered = Qt::IgnoreAction;
        offered.setFlag(Qt::CopyAction, bits & 1);
        offered.setFlag(Qt::MoveAction, bits & 2);
        offered.setFlag(Qt::LinkAction, bits & 4);
        offered.setFlag(Qt::TargetMoveAction, bits & 8);
        const Qt::DropAction wanted = bits & 1   ? Qt::CopyAction
                                      : bits & 4 ? Qt::LinkAction
                                                 : Qt::IgnoreAction;
        EXPECT_EQ(HarmlessAction(DropEffect::Move, offered), wanted) << bits;
        EXPECT_EQ(HarmlessAction(DropEffect::None, offered), Qt::IgnoreAction) << bits;
    }
}

TEST(DropData, NamesAreTheBytesOfTheList)
{
    const test::RawFileList offer("file:///caf%E9.cdg\r\nfile:///\xE6\xBC\xA2.zip\r\n");
    const DropData data(&offer);
    EXPECT_TRUE(data.HasFileList());
    EXPECT_THAT(data.FetchFileNames(), Optional(ElementsAre("/caf\xE9.cdg", "/\xE6\xBC\xA2.zip")));
}

TEST(DropData, AListWithoutFilesIsAListAllTheSame)
{
    const test::RawFileList offer("http://localhost/a.cdg\r\n");
    EXPECT_THAT(DropData(&offer).FetchFileNames(), Optional(IsEmpty()));
}

TEST(DropData, WithoutAListThereIsNothingToFetch)
{
    QMimeData text;
    text.setText(QStringLiteral("file:///a.cdg"));
    EXPECT_FALSE(DropData(&text).HasFileList());
    EXPECT_EQ(DropData(&text).FetchFileNames(), std::nullopt);
    EXPECT_FALSE(DropData(nullptr).HasFileList());
    EXPECT_EQ(DropData(nullptr).FetchFileNames(), std::nullopt);
}

TEST(DropData, AListThatNeverComesIsNoList)
{
    const test::RawFileList offer("");
    EXPECT_TRUE(DropData(&offer).HasFileList());
    EXPECT_EQ(DropData(&offer).FetchFileNames(), std::nullopt);
}

} // namespace
} // namespace lantern
