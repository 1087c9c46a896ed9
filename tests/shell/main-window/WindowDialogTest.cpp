// SPDX-License-Identifier: GPL-3.0-or-later
// The file dialog, as the main window opens it, and what becomes of it.
#include "PaintCount.h"
#include "WindowHand.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QWindow>

namespace lantern {
namespace {

class WindowDialogTest : public WindowHand {
protected:
    // Asks for the dialog, which is left if the look at it didn't end it. Whether one came.
    bool WithDialog(const std::function<void(QFileDialog&)>& look)
    {
        bool wasOpen = false;
        QTimer poll;
        poll.callOnTimeout(&window, [&] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            poll.stop();
            wasOpen = true;
            look(*dialog);
            if (dialog->isVisible())
                dialog->reject();
        });
        poll.start(1);
        Press('O');
        return wasOpen;
    }
    static QLineEdit& NameIn(QFileDialog& dialog) { return *dialog.findChild<QLineEdit*>(); }
    static void Take(QFileDialog& dialog, const char* name)
    {
        dialog.selectFile(QString::fromLatin1(name));
        static_cast<QDialog&>(dialog).accept();
    }
    QString LastPlayed() { return state.Settings->GetSetting(kLastPlayedKey.toString(), {}); }
    bool AreOptionsOnTop()
    {
        return Options().windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint);
    }
};

TEST_F(WindowDialogTest, ItAsksForATrackAndBeginsAtTheOneThatIsOpen)
{
    MakeBlueTrack();
    Load(MakeBlueTrack());
    EXPECT_TRUE(WithDialog([this](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Select a Karaoke File"));
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_EQ(dialog.parentWidget(), &window);
        ASSERT_EQ(dialog.nameFilters().size(), 3);
        EXPECT_TRUE(dialog.nameFilters().at(0).startsWith(QStringLiteral("CDG / BIN / ZIP (")));
        EXPECT_EQ(dialog.selectedNameFilter(), QStringLiteral("CDG / BIN / ZIP"));
        const QString sounds = dialog.nameFilters().at(1);
        EXPECT_TRUE(sounds.startsWith(QStringLiteral("Audio Files")));
        EXPECT_EQ(sounds.count(u'*'), 14) << sounds.toStdString();
        EXPECT_TRUE(dialog.nameFilters().at(2).startsWith(QStringLiteral("All Files")));
        EXPECT_EQ(dialog.directory(), QDir(folder.path()));
        EXPECT_EQ(NameIn(dialog).text(), QStringLiteral("track2.cdg"));
    }));
}

TEST_F(WindowDialogTest, AChosenTrackIsOpenedEvenByItsBareName)
{
    const QString track = MakeBlueTrack();
    Load(MakeBlueTrack());
    EXPECT_TRUE(WithDialog([](QFileDialog& dialog) { Take(dialog, "track1.cdg"); }));
    EXPECT_EQ(LastPlayed(), track);
    const QString other = MakeBlueTrack();
    EXPECT_TRUE(WithDialog([](QFileDialog& dialog) { Take(dialog, "track3"); }));
    EXPECT_EQ(LastPlayed(), other);
}

TEST_F(WindowDialogTest, ADialogThatIsLeftOpensNothing)
{
    Load(MakeBlueTrack());
    engine.Log.clear();
    EXPECT_TRUE(WithDialog([](QFileDialog&) {}));
    EXPECT_EQ(std::ranges::count(engine.Log, "CloseSound"), 0);
    EXPECT_EQ(engine.Status, SoundStatus::Playing);
}

TEST_F(WindowDialogTest, TheOptionsGiveWayToItAndComeBackToTheTop)
{
    Load();
    window.MainPopup(CommandId::Options);
    ASSERT_TRUE(AreOptionsOnTop());
    EXPECT_TRUE(WithDialog([this](QFileDialog&) { EXPECT_FALSE(AreOptionsOnTop()); }));
    EXPECT_TRUE(AreOptionsOnTop());
    EXPECT_TRUE(Options().isVisible());
}

TEST_F(WindowDialogTest, WhereItStoodTheWindowIsPaintedAnew)
{
    Load();
    PaintCount skin;
    EXPECT_TRUE(WithDialog([&](QFileDialog&) {
        Settle();
        PartNamed("Skinner").installEventFilter(&skin);
        Settle();
        EXPECT_EQ(skin.painted, 0);
    }));
    Settle();
    EXPECT_GT(skin.painted, 0);
}

} // namespace
} // namespace lantern
