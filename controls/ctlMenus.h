// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Control.h"
#include "MenuState.h"

#include <QPointer>

namespace lantern {

class frmMenus;

// Collects the items of a pop-up menu, shows it, and tells what was chosen. It shows nothing
// itself. The items and some of the properties are common to all of its kind, as only one menu can
// be open in the program.
class ctlMenus : public Control {
public:
    static constexpr std::int32_t kAtPointer = -1;
    static constexpr ColourValue kColourOfControl = 0xFFFFFFFF;

    explicit ctlMenus(QWidget* parent, Ambient ambient = {});
    ~ctlMenus() override;

    // Index counts from 1. The menu has closed and the list is empty by then, so the handler may
    // show the next menu.
    std::function<void(std::int16_t& Index, QString& Caption, QString& Key)> ItemClicked;

    QFont Font() const { return m_font; }
    void SetFont(const QFont& font);
    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool enabled);
    ColourValue ItemForeColor() const { return m_itemForeColor; }
    void SetItemForeColor(ColourValue colour);
    ColourValue ItemHotForeColor() const { return m_itemHotForeColor; }
    void SetItemHotForeColor(ColourValue colour);
    ColourValue BackColor() const { return m_backColor; }
    void SetBackColor(ColourValue colour);
    ColourValue ItemHotBackColor() const { return m_itemHotBackColor; }
    void SetItemHotBackColor(ColourValue colour);
    bool UseIcons() const;
    void SetUseIcons(bool useIcons);
    bool UseLeftImage() const;
    void SetUseLeftImage(bool useLeftImage);
    ColourValue LeftPicBackColor() const;
    void SetLeftPicBackColor(ColourValue colour);

    void Load(const PropertyBag& bag); // empties the list
    void Save(PropertyBag& bag) const;

    // A caption of "-" makes a separator, which is never enabled.
    void AddItem(const QString& Caption, const QString& Key, bool Enabled = true,
                 const PictureReference& Picture = {}, ColourValue ForeColor = kColourOfControl,
                 ColourValue HotForeColor = kColourOfControl,
                 ColourValue HotBackColor = kColourOfControl);
    // An item among several of which one holds, as assistive tools are told.
    void AddChoice(const QString& Caption, const QString& Key, bool isChosen);
    // At a place on the screen in pixels. Returns when the menu has closed and ItemClicked has been
    // raised; meanwhile everything else in the program goes on. A second call meanwhile does
    // nothing.
    void ShowMenu(std::int32_t X = kAtPointer, std::int32_t Y = kAtPointer,
                  const PictureReference& Picture = {});
    void ResetMenu();

    void setVisible(bool visible) override; // it never is

    frmMenus* OpenMenu() const; // null while none is open
    QAccessibleInterface* MakeAccessible() override;

private:
    template <typename Field, typename Value>
    void Set(Field& field, const Value& value, const QString& key);
    // Calls each with a key, a field and what a missing key means, in the order of the bag.
    template <typename Self, typename Each>
    static void Visit(Self& self, const Each& each);
    QPoint PlaceOfMenu(std::int32_t x, std::int32_t y) const;
    void RunMenu(QPoint place, const PictureReference& picture);

    QPointer<frmMenus> m_menu;
    QFont m_font;
    bool m_enabled = true;
    ColourValue m_itemForeColor = 0;
    ColourValue m_itemHotForeColor = 0;
    ColourValue m_backColor = 0;
    ColourValue m_itemHotBackColor = 0;
};

} // namespace lantern
