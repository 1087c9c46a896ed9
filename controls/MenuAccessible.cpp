// SPDX-License-Identifier: GPL-3.0-or-later
#include "MenuAccessible.h"

#include "ControlAccessibility.h"
#include "ctlMenus.h"
#include "frmMenus.h"

#include <QPointer>

#include <utility>

namespace lantern {
namespace {

class ItemAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    ItemAccessible(frmMenus& menu, std::size_t index) : m_menu(&menu), m_index(index) {}

    bool isValid() const override { return m_menu && m_index < m_menu->State().items.size(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_menu.data());
    }
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name && isValid() ? Item().caption : QString();
    }
    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QRect rect = m_menu->ItemRect(m_index);
        return {m_menu->mapToGlobal(rect.topLeft()), rect.size()};
    }
    QAccessible::Role role() const override
    {
        if (!isValid())
            return QAccessible::MenuItem;
        if (Item().IsSeparator())
            return QAccessible::Separator;
        return Item().isChosen ? QAccessible::RadioButton : QAccessible::MenuItem;
    }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invalid = !isValid();
        if (!isValid())
            return state;
        state.disabled = !Item().enabled;
        state.focusable = Item().enabled;
        state.focused = Item().enabled && m_menu->State().Choice() == &Item();
        state.hotTracked = state.focused;
        state.checkable = Item().isChosen.has_value();
        state.checked = Item().isChosen.value_or(false);
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override
    {
        return isValid() && Item().enabled ? QStringList{pressAction()} : QStringList{};
    }
    void doAction(const QString& name) override
    {
        if (actionNames().contains(name))
            m_menu->Choose(m_index);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    const MenuItem& Item() const { return m_menu->State().items[m_index]; }

    QPointer<frmMenus> m_menu;
    std::size_t m_index;
};

} // namespace

MenuAccessible::MenuAccessible(frmMenus& menu) : ControlAccessible(menu), m_menu(menu)
{
}

MenuAccessible::~MenuAccessible()
{
    for (const QAccessible::Id item : m_items)
        QAccessible::deleteAccessibleInterface(item);
}

// To the toolkit it is the window, which does not know of it.
QAccessibleInterface* MenuAccessible::parent() const
{
    return QAccessible::queryAccessibleInterface(&m_menu.Owner());
}

int MenuAccessible::childCount() const
{
    return static_cast<int>(m_menu.State().items.size());
}

QAccessibleInterface* MenuAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    const auto wanted = static_cast<std::size_t>(index);
    while (m_items.size() <= wanted) {
        m_items.push_back(
            QAccessible::registerAccessibleInterface(new ItemAccessible(m_menu, m_items.size())));
    }
    return QAccessible::accessibleInterface(m_items[wanted]);
}

int MenuAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    for (int i = 0; i < childCount(); ++i) {
        if (this->child(i) == child)
            return i;
    }
    return -1;
}

QAccessibleInterface* MenuAccessible::childAt(int x, int y) const
{
    const QPoint point = m_menu.mapFromGlobal(QPoint(x, y));
    for (int i = 0; i < childCount(); ++i) {
        if (m_menu.ItemRect(static_cast<std::size_t>(i)).contains(point))
            return child(i);
    }
    return nullptr;
}

QAccessibleInterface* MenuAccessible::focusChild() const
{
    return m_menu.State().Choice() ? child(m_menu.State().hotItem - 1) : nullptr;
}

MenusAccessible::MenusAccessible(ctlMenus& menus) : ControlAccessible(menus), m_menus(menus)
{
}

int MenusAccessible::childCount() const
{
    return m_menus.OpenMenu() ? 1 : 0;
}

QAccessibleInterface* MenusAccessible::child(int index) const
{
    frmMenus* const menu = m_menus.OpenMenu();
    return menu && index == 0 ? QAccessible::queryAccessibleInterface(menu) : nullptr;
}

int MenusAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    frmMenus* const menu = m_menus.OpenMenu();
    return menu && child && child->object() == menu ? 0 : -1;
}

QString MenusAccessible::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? QString() : ControlAccessible::text(kind);
}

void TellHotItemChanged(frmMenus& menu)
{
    if (!menu.State().Choice())
        return;
    QAccessibleEvent event(&menu, QAccessible::Focus);
    event.setChild(menu.State().hotItem - 1);
    TellTools(std::move(event));
}

void TellMenuShown(frmMenus& menu, bool shown)
{
    TellTools(
        QAccessibleEvent(&menu, shown ? QAccessible::ObjectCreated : QAccessible::ObjectDestroyed));
    TellTools(
        QAccessibleEvent(&menu, shown ? QAccessible::PopupMenuStart : QAccessible::PopupMenuEnd));
}

} // namespace lantern
