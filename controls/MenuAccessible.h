// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ControlAccessible.h"

#include <vector>

namespace lantern {

class ctlMenus;
class frmMenus;

// An open menu as assistive tools know it: its items by their captions, each of which can be
// pressed, and the hot one as the one with the focus.
class MenuAccessible : public ControlAccessible {
public:
    explicit MenuAccessible(frmMenus& menu);
    ~MenuAccessible() override;
    MenuAccessible(const MenuAccessible&) = delete;
    MenuAccessible& operator=(const MenuAccessible&) = delete;

    QAccessibleInterface* parent() const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

private:
    frmMenus& m_menu;
    mutable std::vector<QAccessible::Id> m_items; // as far as they were asked for
};

// What has the open menu as its only child: the toolkit names no pop-up window among those of the
// program. It shows nothing itself, and its name is the menu's.
class MenusAccessible : public ControlAccessible {
public:
    explicit MenusAccessible(ctlMenus& menus);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QString text(QAccessible::Text kind) const override;

private:
    ctlMenus& m_menus;
};

// To those tools, from the menu.
void TellHotItemChanged(frmMenus& menu);
void TellMenuShown(frmMenus& menu, bool shown);

} // namespace lantern
