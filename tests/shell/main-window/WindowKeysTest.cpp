// SPDX-License-Identifier: GPL-3.0-or-later
// Keys that are held down in the main window, as the window system tells of them.
#include "WindowHand.h"

#include <QFileDialog>
#include <QKeyEvent>

namespace lantern {
namespace {

class WindowKeysTest : public WindowHand {
protected:
    void Key(QEvent::Type type, int key, bool isRepeat = false, quint64 moment = 0)
    {
        QKeyEvent event(type, key, Qt::NoModifier, {}, isRepeat);
        event.setTimestamp(moment);
        QApplication::sendEvent(&window, &event);
    }

    // Whether the press opens the file dialog, which is then left.
    bool OpensDialog(int key, bool isRepeat)
    {
        bool wasOpen = false;
        QTimer poll;
        poll.callOnTimeout(&window, [&] {
            if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
                wasOpen = true;
                dialog->reject();
            }
        });
        poll.start(1);
        Key(QEvent::KeyPress, key, isRepeat);
        return wasOpen;
    }
};

// The release of a key that opens a dialog goes to the dialog: the window waits for none.
TEST_F(WindowKeysTest, OHeldDownOpensTheDialogAgainAndHoldsNoOtherKeyUp)
{
    Load(MakeBlueTrack());
    EXPECT_TRUE(OpensDialog(Qt::Key_O, false));
    EXPECT_TRUE(OpensDialog(Qt::Key_O, true));
    Key(QEvent::KeyPress, Qt::Key_P);
    EXPECT_EQ(engine.Status, SoundStatus::Paused);
}

TEST_F(WindowKeysTest, WhatDoesNotRepeatRunsOnceHoweverLongItIsHeld)
{
    Load(MakeBlueTrack());
    Key(QEvent::KeyPress, Qt::Key_P, false, 1000);
    EXPECT_EQ(engine.Status, SoundStatus::Paused);
    Key(QEvent::KeyRelease, Qt::Key_P, true, 1300);
    Key(QEvent::KeyPress, Qt::Key_P, true, 1300);
    Key(QEvent::KeyRelease, Qt::Key_P, false, 1340); // a repeat that bears no mark
    Key(QEvent::KeyPress, Qt::Key_P, false, 1340);
    EXPECT_EQ(engine.Status, SoundStatus::Paused);
    Key(QEvent::KeyRelease, Qt::Key_P, false, 1400);
    Key(QEvent::KeyPress, Qt::Key_P, false, 2000);
    EXPECT_EQ(engine.Status, SoundStatus::Playing);
}

TEST_F(WindowKeysTest, AnArrowRepeatsAsLongAsItIsHeld)
{
    Load();
    for (const bool isRepeat : {false, true, true}) {
        Key(QEvent::KeyPress, Qt::Key_Up, isRepeat);
        Key(QEvent::KeyRelease, Qt::Key_Up, true);
    }
    Key(QEvent::KeyPress, Qt::Key_Down);
    Key(QEvent::KeyPress, Qt::Key_Down, true);
    Key(QEvent::KeyRelease, Qt::Key_Down);
    EXPECT_EQ(engine.Volume, 96) << "up from the top is nowhere";
}

} // namespace
} // namespace lantern
