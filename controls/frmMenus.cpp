// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmMenus.h"

#include "MenuAccessible.h"
#include "ProgramFont.h"
#include "ScreenMetrics.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScreen>
#include <QWindow>

#include <algorithm>

namespace lantern {
namespace {

constexpr ColourValue kDimColour = 0x323232; // of what can't be chosen
constexpr ColourValue kShadowColour = 0;
constexpr ColourValue kFrameColour = 0x0008ABFF;

constexpr TextFlags kCaptionFlags = TextLeft | TextSingleLine | TextPlain;
constexpr int kAnyLength = 1 << 20;

// The window's own font, which gives the height of the items, whatever the font of their captions.
QFont OwnFont()
{
    return ProgramFont(QStringLiteral("MS Sans Serif"), 11);
}

Box Measure(const QString& text, const QFont& font)
{
    return RetainedSurface::MeasureText(text, {0, 0, kAnyLength, kAnyLength}, kCaptionFlags, font);
}

// The screen that a menu which opens at a place is for. A pointer near the edge of a screen stands
// in a menu whose corner lies on the screen beside it.
QRect ScreenFor(QPoint place)
{
    const QScreen* screen = QGuiApplication::screenAt(place + QPoint(kInsideMenu, kInsideMenu));
    if (!screen)
        screen = QGuiApplication::screenAt(place);
    return screen ? screen->geometry() : DesktopRect();
}

} // namespace

frmMenus::frmMenus(QWidget& owner, MenuState& state)
    : OwnerDrawn(&owner), m_owner(owner), m_state(state)
{
    setWindowFlags(Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    setMouseTracking(true);
    setCursor(Qt::ArrowCursor);
    setFont(OwnFont());
    StandOverActiveWindow();
    m_itemHeight = Measure(QStringLiteral("abc"), font()).Height() * ScreenTwips().y;
    m_state.hotItem = MenuState::kNone;
    m_state.previousHotItem = MenuState::kNone;
    resize(1, 1);
}

// The toolkit would hide it later, and assistive tools then ask what is no menu any more.
frmMenus::~frmMenus()
{
    hide();
}

// Where a program doesn't know the places of its windows, a menu is placed from the window that it
// stands over, and in front of it. That may be another one than its owner's.
void frmMenus::StandOverActiveWindow()
{
    const QWidget* active = QApplication::activeWindow();
    if (KnowsWindowPlaces() || !active)
        return;
    winId();
    windowHandle()->setTransientParent(active->windowHandle());
}

MenuGeometry frmMenus::Geometry() const
{
    return {ScreenTwips(), m_itemHeight, m_state.useIcons, m_state.useLeftImage};
}

QRect frmMenus::ItemRect(std::size_t index) const
{
    const MenuGeometry geometry = Geometry();
    const int top = geometry.ItemTop(index);
    return {0, top, width(), geometry.ItemTop(index + 1) - top};
}

void frmMenus::SurfaceResized()
{
    if (!m_isDrawing)
        DrawMenu(true, false, true);
}

void frmMenus::DrawMenu(bool Repaint, bool Resize, bool Icons)
{
    const QScopedValueRollback drawing(m_isDrawing, true);
    if (Repaint)
        ClearGround();
    if (m_state.items.empty())
        return;
    if (Resize)
        FitToItems();
    for (std::size_t i = 0; i < m_state.items.size(); ++i)
        DrawItem(i, Repaint, Icons);
    if (Repaint)
        Surface().Outline({0, 0, width(), height()}, ResolveColour(kFrameColour));
    ShowSurface();
}

void frmMenus::ClearGround()
{
    FitSurface();
    Surface().Clear(ResolveColour(m_state.backColor));
    if (m_state.useLeftImage)
        DrawSideBand();
}

void frmMenus::FitToItems()
{
    int widest = 0;
    for (const MenuItem& item : m_state.items)
        widest = std::max(widest, Measure(item.caption, font()).Width());
    const MenuGeometry geometry = Geometry();
    const QSize size(NearestPixel(geometry.Width(widest), geometry.twips.x),
                     NearestPixel(geometry.Height(m_state.items.size()), geometry.twips.y));
    const QRect menu(pos(), size.expandedTo(QSize(1, 1)));
    setGeometry(KeptOnScreen(menu, ScreenFor(pos())));
    ClearGround(); // the surface is a new one
}

void frmMenus::DrawSideBand()
{
    constexpr int kLeft = 2;
    constexpr int kRight = 17;
    constexpr int kTop = 3;
    constexpr int kBottomMargin = 3;
    Surface().Fill({kLeft, kTop, kRight, height() - kBottomMargin - 1},
                   ResolveColour(m_state.leftPicBackColor));
    if (const PictureReference& picture = m_state.sidePicture)
        Surface().DrawPicture(*picture, kLeft, height() - kBottomMargin - picture->Size().height());
}

void frmMenus::DrawItem(std::size_t index, bool repaint, bool icons)
{
    const MenuItem& item = m_state.items[index];
    const auto number = static_cast<std::int16_t>(index + 1);
    if (item.IsSeparator()) {
        DrawSeparator(index);
        return;
    }
    if (icons && m_state.useIcons)
        DrawIcon(index);
    if (!item.enabled) {
        // Once is enough, and smoothed text drawn over itself would grow bolder each time.
        SetItemColor(kDimColour);
        if (repaint)
            DrawCaption(index);
        return;
    }
    SetItemColor(item.foreColor);
    if (number == m_state.hotItem)
        DrawHotItem(index);
    else if (repaint)
        DrawCaption(index);
    else if (number == m_state.previousHotItem)
        DrawCooledItem(index);
}

void frmMenus::DrawHotItem(std::size_t index)
{
    const MenuItem& item = m_state.items[index];
    const Box bar = Geometry().Bar(index, width());
    // In the menu's own colour the bar can't be seen. It is drawn all the same, for the smoothed
    // edges of the text in the other colour.
    Surface().Fill(bar, ResolveColour(item.hotBackColor));
    SetItemColor(item.hotForeColor);
    DrawCaption(index);
}

void frmMenus::DrawCooledItem(std::size_t index)
{
    Surface().Fill(Geometry().Bar(index, width()), ResolveColour(m_state.backColor));
    DrawCaption(index);
}

void frmMenus::DrawSeparator(std::size_t index)
{
    const MenuGeometry geometry = Geometry();
    const int left = geometry.SeparatorLeft();
    const int right = width() - 4;
    const int top = geometry.SeparatorTop(index);
    Surface().Rule(left, right, top, ResolveColour(kDimColour));
    Surface().Rule(left, right, top, ResolveColour(kShadowColour), 1);
}

void frmMenus::DrawIcon(std::size_t index)
{
    const MenuGeometry geometry = Geometry();
    if (const PictureReference& picture = m_state.items[index].picture)
        Surface().DrawPicture(*picture, geometry.IconLeft(), geometry.ItemTop(index));
}

void frmMenus::SetItemColor(ColourValue colour)
{
    m_textColour = ResolveColour(colour);
}

void frmMenus::DrawCaption(std::size_t index)
{
    const MenuGeometry geometry = Geometry();
    const int left = geometry.TextLeft();
    const int top = geometry.ItemTop(index);
    Surface().DrawText(m_state.items[index].caption,
                       {left, top, left + kAnyLength, top + kAnyLength}, kCaptionFlags, font(),
                       m_textColour);
}

void frmMenus::PointerAt(double x, double y)
{
    if (m_state.closed)
        return;
    const MenuGeometry geometry = Geometry();
    const TwipsPerPixel& twips = geometry.twips;
    const auto hotItem = HotItemAt(geometry, x * twips.x, y * twips.y, width() * twips.x,
                                   height() * twips.y, m_state.hotItem);
    if (!hotItem)
        return;
    m_state.previousHotItem = m_state.hotItem;
    m_state.hotItem = *hotItem;
    DrawMenu(false, false, false);
    TellHotItemChanged(*this);
}

void frmMenus::mouseMoveEvent(QMouseEvent* event)
{
    PointerAt(event->position().x(), event->position().y());
}

// Where the window system doesn't tell what the pointer does outside.
void frmMenus::leaveEvent(QEvent*)
{
    PointerAt(-1, -1);
}

void frmMenus::mousePressEvent(QMouseEvent*)
{
    m_wasPressed = true;
}

// The press that follows the opening click closely.
void frmMenus::mouseDoubleClickEvent(QMouseEvent*)
{
    m_wasPressed = true;
}

void frmMenus::mouseReleaseEvent(QMouseEvent*)
{
    // The release of the click that opened the menu has no press here.
    if (!m_wasPressed)
        return;
    m_wasPressed = false;
    CloseMenu();
}

// As the keys count when they are released, the press must do nothing, not even close the window.
void frmMenus::keyPressEvent(QKeyEvent* event)
{
    event->accept();
}

void frmMenus::keyReleaseEvent(QKeyEvent* event)
{
    if (event->isAutoRepeat())
        return;
    const int key = event->key();
    if (key == Qt::Key_Escape)
        m_state.hotItem = MenuState::kNone;
    if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter)
        CloseMenu();
}

void frmMenus::Choose(std::size_t index)
{
    m_state.hotItem = static_cast<std::int16_t>(index + 1);
    CloseMenu();
}

void frmMenus::CloseMenu()
{
    if (m_state.closed)
        return;
    Finish();
    hide();
}

void frmMenus::showEvent(QShowEvent* event)
{
    OwnerDrawn::showEvent(event);
    TellMenuShown(*this, true);
}

// Whoever hides the window without closing it has chosen nothing.
void frmMenus::hideEvent(QHideEvent*)
{
    TellMenuShown(*this, false);
    if (m_state.closed)
        return;
    m_state.hotItem = MenuState::kNone;
    Finish();
}

void frmMenus::Finish()
{
    m_state.closed = true;
    if (Closed)
        Closed();
}

Spoken frmMenus::Speak() const
{
    Spoken spoken;
    spoken.role = QAccessible::PopupMenu;
    return spoken;
}

QAccessibleInterface* frmMenus::MakeAccessible()
{
    return new MenuAccessible(*this);
}

} // namespace lantern
