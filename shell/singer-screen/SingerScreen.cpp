// SPDX-License-Identifier: GPL-3.0-or-later
#include "SingerScreen.h"

#include "SystemColours.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <utility>

namespace lantern {

SingerScreen::SingerScreen(QWidget& mainWindow, InputTarget& player, PictureMemory& picture)
    : m_mainWindow(mainWindow), m_player(player), m_picture(picture)
{
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this] { FollowSoon(); });
    // At once: a window whose screen has gone is put onto another one.
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this](const QScreen* screen) {
        if (!m_screen || screen == m_screen.data())
            Close();
        FollowSoon();
    });
}

SingerScreen::~SingerScreen() = default;

ScreenIdentities SingerScreen::Screens()
{
    ScreenIdentities screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens.push_back(IdentityOf(*screen));
    return screens;
}

void SingerScreen::Choose(const ScreenIdentity& screen)
{
    if (std::exchange(m_chosen, screen) == screen)
        return;
    m_isClosed = false;
    if (m_chosen.IsNone()) {
        m_watch.reset();
        m_mainWindow.removeEventFilter(this);
    } else {
        m_mainWindow.installEventFilter(this);
    }
    Follow();
}

void SingerScreen::OpenAgain()
{
    if (std::exchange(m_isClosed, false))
        Follow();
}

void SingerScreen::SetLook(PictureLook look)
{
    if (std::exchange(m_look, look) == look || !m_window)
        return;
    m_window->Pic().SetLook(look);
    if (PictureLost)
        PictureLost();
}

void SingerScreen::ShowPicture(ColourValue border)
{
    if (!m_window)
        return;
    PictureSurface& pic = m_window->Pic();
    m_window->SetBorderColour(ResolveColour(border));
    m_shownGeneration = pic.Image().generation;
    m_picture.Buffers().ShowOn(pic, *m_view, m_picture.ViewLeft,
                               m_picture.ViewLeft + kVisibleWidth - 1, m_picture.ViewTop,
                               m_picture.ViewTop + kVisibleHeight - 1, pic.width(), pic.height());
}

void SingerScreen::Flush()
{
    if (m_window)
        m_window->Flush();
}

bool SingerScreen::Covers(const QRect& area) const
{
    return m_window && m_screen && m_screen->geometry().intersects(area);
}

// The player's window may have come to another screen.
bool SingerScreen::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::Show || type == QEvent::WinIdChange)
        FollowSoon();
    return QObject::eventFilter(watched, event);
}

void SingerScreen::FollowSoon()
{
    QMetaObject::invokeMethod(this, &SingerScreen::Follow, Qt::QueuedConnection);
}

void SingerScreen::Watch()
{
    m_watch = std::make_unique<QObject>();
    for (const QScreen* screen : QGuiApplication::screens())
        connect(screen, &QScreen::geometryChanged, m_watch.get(), [this] { FollowSoon(); });
    if (const QWindow* const handle = m_mainWindow.windowHandle())
        connect(handle, &QWindow::screenChanged, m_watch.get(), [this] { FollowSoon(); });
}

SingerState SingerScreen::NextState(const QScreen* chosen) const
{
    if (m_chosen.IsNone())
        return SingerState::Off;
    if (!chosen)
        return SingerState::NotThere;
    if (IsPlayers(*chosen))
        return SingerState::PlayersOwn;
    return m_isClosed ? SingerState::Closed : SingerState::Shown;
}

void SingerScreen::Follow()
{
    QScreen* const chosen = ChosenScreen();
    if (!chosen)
        m_isClosed = false; // it comes back with the screen
    const SingerState state = NextState(chosen);
    if (state != SingerState::Off)
        Watch();
    QScreen* const wanted = state == SingerState::Shown ? chosen : nullptr;
    if (m_window && (!m_screen || m_screen != wanted))
        Close();
    if (m_window)
        m_window->FillScreen();
    else if (wanted && m_mainWindow.isVisible()) // the player comes first
        Open(*wanted, WindowCare::Managed);
    m_state = state;
    if (Changed)
        Changed();
}

QScreen* SingerScreen::ChosenScreen() const
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    const auto isFree = [&](std::size_t i) {
        return !IsPlayers(*screens.at(static_cast<qsizetype>(i)));
    };
    const std::optional<std::size_t> found = FindFreeScreen(m_chosen, Screens(), isFree);
    return found ? screens.at(static_cast<qsizetype>(*found)) : nullptr;
}

// Two screens that show the same have one place. Those of two desktops may, too, and do not.
bool SingerScreen::IsPlayers(const QScreen& screen) const
{
    const QScreen* const own = m_mainWindow.screen();
    if (!own || own == &screen)
        return own != nullptr;
    return own->virtualSiblings().contains(&screen) &&
           own->geometry().intersects(screen.geometry());
}

void SingerScreen::Open(QScreen& screen, WindowCare care)
{
    m_screen = &screen;
    NoteKeyboard(QGuiApplication::focusWindow());
    m_view = std::make_unique<PictureView>();
    m_window = std::make_unique<SingerWindow>(screen, m_player, care);
    m_window->Pic().SetLook(m_look);
    m_window->Pic().PaintPicture = [this] {
        if (PictureLost && m_window->Pic().Image().generation != m_shownGeneration)
            PictureLost();
    };
    m_window->GotKeyboard = [this] { GiveKeyboardBack(); };
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, m_window.get(),
            [this](QWindow* owner) { NoteKeyboard(owner); });
    m_window->CloseAsked = [this] {
        m_isClosed = true;
        FollowSoon();
    };
    // Where asking does not help, the place is taken.
    m_window->Refused = [this] {
        QMetaObject::invokeMethod(
            this,
            [this] {
                QScreen* const screenOfIts = m_screen;
                Close();
                if (screenOfIts)
                    Open(*screenOfIts, WindowCare::Unmanaged);
            },
            Qt::QueuedConnection);
    };
    m_window->FillScreen();
    if (PictureLost)
        PictureLost();
    if (Opened)
        Opened();
}

void SingerScreen::NoteKeyboard(QWindow* owner)
{
    if (owner && !(m_window && owner == m_window->windowHandle()))
        m_hadKeyboard = owner;
}

// The stage window has it while somebody walks through the screens by the keys.
void SingerScreen::GiveKeyboardBack()
{
    const bool isThere = m_hadKeyboard && m_hadKeyboard->isVisible();
    QWindow* const owner = isThere ? m_hadKeyboard.data() : m_mainWindow.windowHandle();
    if (owner && owner->isVisible() && owner->windowState() != Qt::WindowMinimized)
        owner->requestActivate();
}

void SingerScreen::Close()
{
    m_window.reset();
    m_view.reset();
    m_screen = nullptr;
    m_shownGeneration = 0;
}

} // namespace lantern
