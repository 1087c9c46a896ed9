// SPDX-License-Identifier: GPL-3.0-or-later
#include "PicDrop.h"

#include "PictureSurface.h"
#include "RawFileList.h"

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QStringList>

#include <gmock/gmock.h>
#include <memory>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Qt::DropActions kAll = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;

// Drags over the picture by the events that the toolkit sends, and looks at the answers.
class PicDropTest : public ::testing::Test {
protected:
    PicDropTest()
    {
        window.resize(200, 150);
        pic->setGeometry(10, 10, 100, 80);
        window.show();
    }

    Qt::DropAction Enter(const QMimeData& offer, Qt::DropActions offered = kAll)
    {
        QDragEnterEvent enter({5, 5}, offered, &offer, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(pic.get(), &enter);
        EXPECT_TRUE(enter.isAccepted()) << "otherwise no move and no leave would follow";
        return Move(offer, offered);
    }

    Qt::DropAction Move(const QMimeData& offer, Qt::DropActions offered = kAll)
    {
        QDragMoveEvent move({6, 6}, offered, &offer, Qt::LeftButton, Qt::NoModifier);
        move.accept();
        QCoreApplication::sendEvent(pic.get(), &move);
        return move.isAccepted() ? move.dropAction() : Qt::IgnoreAction;
    }

    void Leave()
    {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(pic.get(), &leave);
    }

    Qt::DropAction Drop(const QMimeData& offer, Qt::DropActions offered = kAll)
    {
        QDropEvent event({6, 6}, offered, &offer, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(pic.get(), &event);
        EXPECT_THAT(m_opened, IsEmpty()) << "the source has to have its answer first";
        return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
    }

    QStringList Opened()
    {
        QCoreApplication::processEvents();
        return std::exchange(m_opened, {});
    }

    QWidget window;
    std::unique_ptr<PictureSurface> pic = std::make_unique<PictureSurface>(&window);
    PicDrop picDrop{*pic, [this](const QString& path) { m_opened.append(path); }};

private:
    QStringList m_opened;
};

TEST_F(PicDropTest, ATrackMayBeDroppedAndIsOpened)
{
    const test::RawFileList track("file:///m/a.cdg\r\n");
    EXPECT_EQ(Enter(track), Qt::CopyAction);
    EXPECT_EQ(Move(track), Qt::CopyAction);
    EXPECT_EQ(Drop(track), Qt::CopyAction);
    EXPECT_THAT(Opened(), ElementsAre(QStringLiteral("/m/a.cdg")));
}

TEST_F(PicDropTest, ATextFileIsRefusedAndNotOpened)
{
    const test::RawFileList text("file:///m/a.txt\r\n");
    EXPECT_EQ(Enter(text), Qt::IgnoreAction);
    EXPECT_EQ(Move(text), Qt::IgnoreAction);
    EXPECT_EQ(Drop(text), Qt::IgnoreAction) << "a source may drop in spite of the answer";
    EXPECT_THAT(Opened(), IsEmpty());
}

TEST_F(PicDropTest, TheFirstUsableFileOfManyIsOpenedAndNoOther)
{
    const test::RawFileList files("file:///m/a.txt\r\nfile:///m/b.ZIP\r\nfile:///m/c.cdg\r\n");
    EXPECT_EQ(Enter(files), Qt::CopyAction);
    EXPECT_EQ(Drop(files), Qt::CopyAction);
    EXPECT_THAT(Opened(), ElementsAre(QStringLiteral("/m/b.ZIP")));
}

TEST_F(PicDropTest, WhatIsNoListOfFilesIsRefused)
{
    QMimeData text;
    text.setText(QStringLiteral("/m/a.cdg"));
    EXPECT_EQ(Enter(text), Qt::IgnoreAction);
    EXPECT_EQ(Drop(text), Qt::IgnoreAction);
    EXPECT_THAT(Opened(), IsEmpty());
}

TEST_F(PicDropTest, ADragThatWouldMoveTheFileAwayIsRefused)
{
    const test::RawFileList track("file:///m/a.cdg\r\n");
    EXPECT_EQ(Enter(track, Qt::MoveAction), Qt::IgnoreAction);
    EXPECT_EQ(Move(track, Qt::MoveAction | Qt::LinkAction), Qt::LinkAction) << "a key was pressed";
    EXPECT_EQ(Drop(track, Qt::MoveAction), Qt::IgnoreAction);
    EXPECT_THAT(Opened(), IsEmpty());
}

TEST_F(PicDropTest, TheSourceIsAskedForItsListOnceADragAndOnceADrop)
{
    const test::RawFileList track("file:///m/a.cdg\r\n");
    Enter(track);
    for (int i = 0; i < 20; ++i)
        Move(track);
    EXPECT_EQ(track.timesAsked, 1);
    Drop(track);
    EXPECT_EQ(track.timesAsked, 2);
}

TEST_F(PicDropTest, TheNextDragIsLookedAtAnew)
{
    const test::RawFileList track("file:///m/a.cdg\r\n");
    const test::RawFileList text("file:///m/a.txt\r\n");
    EXPECT_EQ(Enter(track), Qt::CopyAction);
    Leave();
    EXPECT_EQ(Enter(text), Qt::IgnoreAction);
    Leave();
    EXPECT_EQ(Enter(track), Qt::CopyAction);
}

TEST_F(PicDropTest, WhatHasLeftOrWasDroppedIsOfferedNothingMore)
{
    const test::RawFileList track("file:///m/a.cdg\r\n");
    DropData nothing(nullptr);
    Enter(track);
    EXPECT_EQ(picDrop.DragOver(nothing, DragState::Over), DropEffect::Move);
    EXPECT_EQ(picDrop.DragOver(nothing, DragState::Leave), DropEffect::None);
    EXPECT_EQ(picDrop.DragOver(nothing, DragState::Over), DropEffect::None);
    Enter(track);
    Drop(track);
    Opened();
    EXPECT_EQ(picDrop.DragOver(nothing, DragState::Over), DropEffect::None);
}

TEST_F(PicDropTest, ASourceThatFallsSilentAtTheDropOpensNothing)
{
    const test::RawFileList track("file:///m/a.cdg\r\n");
    const test::RawFileList silent("");
    EXPECT_EQ(Enter(track), Qt::CopyAction);
    EXPECT_EQ(Drop(silent), Qt::IgnoreAction);
    EXPECT_THAT(Opened(), IsEmpty());
}

TEST_F(PicDropTest, AWindowThatGoesAfterTheDropOpensNothing)
{
    const test::RawFileList track("file:///m/a.cdg\r\n");
    Enter(track);
    Drop(track);
    pic.reset();
    EXPECT_THAT(Opened(), IsEmpty());
}

} // namespace
} // namespace lantern
