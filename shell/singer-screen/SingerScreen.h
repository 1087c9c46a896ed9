// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Colours.h"
#include "KnownScreens.h"
#include "PictureMemory.h"
#include "PictureView.h"
#include "SingerWindow.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class QWindow;

namespace lantern {

enum class SingerState : std::uint8_t {
    Off,
    Shown,
    NotThere,   // the screen that was chosen
    PlayersOwn, // the player stands on it, and is not to be covered
    Closed,     // by the desktop, until OpenAgain
};

// The singer's screen: which of the screens shows the picture alone, and when. It comes up with
// the screen that was chosen and goes with it. While the player's window stands on that screen
// itself, or on one that shows the same, it keeps away.
//
// It shows the player's own picture, and is painted in the same painting as the player's window.
// While it is off there is no window and nothing is watched but the coming and going of screens.
//
// Life cycle: construct, set the functions, then any call at any time, Choose with none before the
// picture's memory goes. Everything runs on the user-interface thread.
class SingerScreen : public QObject {
public:
    // All are borrowed and outlive it.
    SingerScreen(QWidget& mainWindow, InputTarget& player, PictureMemory& picture);
    ~SingerScreen() override;

    std::function<void()> Changed; // the state, or which screens there are
    // What stood there is lost: the player is to paint both pictures.
    std::function<void()> PictureLost;
    std::function<void()> Opened; // it has come up, over all that stood there

    void Choose(const ScreenIdentity& screen); // none for off
    // A desktop that ends closes all windows one by one, and that is no choice: what was closed is
    // there again at the next start, or by this.
    void OpenAgain();
    const ScreenIdentity& Chosen() const { return m_chosen; }
    SingerState State() const { return m_state; }
    bool Covers(const QRect& area) const; // even some of it
    void SetLook(PictureLook look);

    // Draws what has changed of the picture, with that colour around it.
    void ShowPicture(ColourValue border);
    void Flush(); // brings it to the screen

    static ScreenIdentities Screens();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    SingerState NextState(const QScreen* chosen) const;
    void Watch();
    void Follow();
    void FollowSoon();
    QScreen* ChosenScreen() const;
    bool IsPlayers(const QScreen& screen) const;
    void Open(QScreen& screen, WindowCare care);
    void Close();
    void NoteKeyboard(QWindow* owner);
    void GiveKeyboardBack();

    QWidget& m_mainWindow;
    InputTarget& m_player;
    PictureMemory& m_picture;
    ScreenIdentity m_chosen;
    SingerState m_state = SingerState::Off;
    bool m_isClosed = false;
    PictureLook m_look = PictureLook::Sharp;
    std::unique_ptr<QObject> m_watch; // what is connected through it ends with it
    QPointer<QScreen> m_screen;       // that the window stands on
    QPointer<QWindow> m_hadKeyboard;  // the last one of the others
    std::unique_ptr<SingerWindow> m_window;
    std::unique_ptr<PictureView> m_view;
    std::uint64_t m_shownGeneration = 0;
};

} // namespace lantern
