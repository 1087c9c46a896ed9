// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MenuGeometry.h"
#include "MenuState.h"
#include "OwnerDrawn.h"

namespace lantern {

// The window of a menu while it is open: it draws the items, follows the mouse and closes. It takes
// the mouse and the keyboard as pop-up windows do; the window below stays the active one.
class frmMenus : public OwnerDrawn {
public:
    // The owner outlives it. The item list must hold still while the window is open.
    frmMenus(QWidget& owner, MenuState& state);
    ~frmMenus() override;

    // Called when the menu has closed, by the user or by the window system.
    std::function<void()> Closed;

    // Repaint draws everything, not only the items whose heat has changed. Resize fits the window
    // to the items and keeps it on the screen. Icons are drawn only if asked for.
    void DrawMenu(bool Repaint, bool Resize, bool Icons);
    void CloseMenu();

    // What a click on the item does, for those who don't use the mouse.
    void Choose(std::size_t index);

    QWidget& Owner() const { return m_owner; }
    const MenuState& State() const { return m_state; }
    QRect ItemRect(std::size_t index) const; // in the window

    Spoken Speak() const override;
    QAccessibleInterface* MakeAccessible() override;

protected:
    void SurfaceResized() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void StandOverActiveWindow();
    MenuGeometry Geometry() const;
    void FitToItems();
    void ClearGround();
    void DrawSideBand();
    void DrawItem(std::size_t index, bool repaint, bool icons);
    void DrawHotItem(std::size_t index);
    void DrawCooledItem(std::size_t index);
    void DrawSeparator(std::size_t index);
    void DrawIcon(std::size_t index);
    void SetItemColor(ColourValue colour);
    void DrawCaption(std::size_t index);
    void PointerAt(double x, double y);
    void Finish();

    QWidget& m_owner;
    MenuState& m_state;
    std::int32_t m_itemHeight = 0; // twips
    bool m_wasPressed = false;
    bool m_isDrawing = false;
    QRgb m_textColour = 0;
};

} // namespace lantern
