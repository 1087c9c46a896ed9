// SPDX-License-Identifier: GPL-3.0-or-later
#include "RawFileList.h"
#include "WindowFixture.h"

#include <QDragEnterEvent>

namespace lantern {
namespace {

class WindowDropTest : public WindowFixture {
protected:
    QWidget& Pic() { return *window.findChild<QWidget*>(QStringLiteral("pic")); }

    bool Drop(QWidget& surface, const QByteArray& list)
    {
        const test::RawFileList offer(list);
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &offer, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&surface, &enter);
        QDropEvent drop({5, 5}, Qt::CopyAction, &offer, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&surface, &drop);
        Settle();
        return drop.isAccepted();
    }

    QString LastPlayed() { return state.Settings->GetSetting(kLastPlayedKey.toString(), {}); }
};

TEST_F(WindowDropTest, ATrackOnThePictureIsOpened)
{
    Load(MakeBlueTrack());
    const QString dropped = MakeBlueTrack();
    EXPECT_TRUE(Drop(Pic(), "file://" + QFile::encodeName(dropped)));
    EXPECT_EQ(LastPlayed(), dropped);
}

TEST_F(WindowDropTest, AFileThatProvesBadClearsTheTrackWithoutAWord)
{
    Load(MakeBlueTrack());
    EXPECT_TRUE(Drop(Pic(), "file:///none.cdg"));
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_EQ(engine.Status, SoundStatus::Empty);
}

TEST_F(WindowDropTest, NoOtherSurfaceTakesADrop)
{
    Load(MakeBlueTrack());
    EXPECT_FALSE(window.acceptDrops());
    for (const QWidget* surface : window.findChildren<QWidget*>())
        EXPECT_EQ(surface->acceptDrops(), surface == &Pic()) << surface->metaObject()->className();
    EXPECT_FALSE(Drop(window, "file:///none.cdg"));
}

} // namespace
} // namespace lantern
