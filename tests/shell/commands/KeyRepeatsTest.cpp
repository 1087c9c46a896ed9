// SPDX-License-Identifier: GPL-3.0-or-later
#include "KeyRepeats.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

class Event : public QKeyEvent {
public:
    Event(QEvent::Type type, int key, quint64 moment, bool isMarked = false)
        : QKeyEvent(type, key, Qt::NoModifier, QString(), isMarked)
    {
        setTimestamp(moment);
    }
};

TEST(KeyRepeats, AMarkedPressIsARepeat)
{
    EXPECT_TRUE(KeyRepeats().IsRepeat(Event(QEvent::KeyPress, Qt::Key_C, 5, true)));
}

TEST(KeyRepeats, APressInTheMomentOfItsReleaseIsARepeat)
{
    KeyRepeats repeats;
    EXPECT_FALSE(repeats.IsRepeat(Event(QEvent::KeyPress, Qt::Key_C, 500)));
    repeats.NoteRelease(Event(QEvent::KeyRelease, Qt::Key_C, 1160));
    EXPECT_TRUE(repeats.IsRepeat(Event(QEvent::KeyPress, Qt::Key_C, 1160)));
}

TEST(KeyRepeats, ALaterPressAndAnotherKeyAreNot)
{
    KeyRepeats repeats;
    repeats.NoteRelease(Event(QEvent::KeyRelease, Qt::Key_C, 1160));
    EXPECT_FALSE(repeats.IsRepeat(Event(QEvent::KeyPress, Qt::Key_C, 1161)));
    EXPECT_FALSE(repeats.IsRepeat(Event(QEvent::KeyPress, Qt::Key_M, 1160)));
}

TEST(KeyRepeats, EventsWithoutAMomentAreNoRepeats)
{
    KeyRepeats repeats;
    repeats.NoteRelease(Event(QEvent::KeyRelease, Qt::Key_C, 0));
    EXPECT_FALSE(repeats.IsRepeat(Event(QEvent::KeyPress, Qt::Key_C, 0)));
}

} // namespace
} // namespace lantern
