// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QKeyEvent>

namespace lantern {

// Tells the presses that come from holding a key down from those of a finger.
//
// The toolkit's own mark is not enough. X11 tells of a repeat by a release and a press of one
// moment, and the toolkit marks the pair only if both have arrived when it looks at the first: on
// a busy machine most of a held key's repeats come without the mark.
class KeyRepeats {
public:
    void NoteRelease(const QKeyEvent& event)
    {
        m_key = event.key();
        m_moment = event.timestamp();
    }

    bool IsRepeat(const QKeyEvent& event) const
    {
        const bool followsItsRelease =
            m_moment != 0 && event.key() == m_key && event.timestamp() == m_moment;
        return event.isAutoRepeat() || followsItsRelease;
    }

private:
    int m_key = 0;
    quint64 m_moment = 0; // of the last release, in the window system's time; 0 is none
};

} // namespace lantern
