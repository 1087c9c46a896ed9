// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlMenus.h"

#include "MenuAccessible.h"
#include "ScreenMetrics.h"
#include "frmMenus.h"

#include <QCursor>
#include <QEventLoop>

#include <algorithm>
#include <limits>
#include <tuple>
#include <utility>

namespace lantern {
namespace {

constexpr TwipSize kDesignTwips = {480, 480};

MenuState& SharedMenuState()
{
    static MenuState state;
    return state;
}

ColourValue OrOwn(ColourValue asked, ColourValue own)
{
    return asked == ctlMenus::kColourOfControl ? own : asked;
}

// A place far off every screen is as good as any farther one.
int Placeable(std::int32_t pixel)
{
    constexpr int kFarthest = 32000;
    return std::clamp(pixel, -kFarthest, kFarthest);
}

} // namespace

ctlMenus::ctlMenus(QWidget* parent, Ambient ambient) : Control(parent, std::move(ambient))
{
    setFixedSize(PixelsOf(kDesignTwips, ScreenTwips()));
    hide();
    Load({}); // the defaults
}

ctlMenus::~ctlMenus()
{
    delete m_menu.data(); // as long as assistive tools may still ask for its parent
}

void ctlMenus::setVisible(bool)
{
    QWidget::setVisible(false);
}

template <typename Field, typename Value>
void ctlMenus::Set(Field& field, const Value& value, const QString& key)
{
    field = value;
    Report(key);
}

void ctlMenus::SetFont(const QFont& font)
{
    Set(m_font, font, QStringLiteral("Font"));
}

void ctlMenus::SetEnabled(bool enabled)
{
    Set(m_enabled, enabled, QStringLiteral("Enabled"));
}

void ctlMenus::SetItemForeColor(ColourValue colour)
{
    Set(m_itemForeColor, colour, QStringLiteral("ItemForeColor"));
}

void ctlMenus::SetItemHotForeColor(ColourValue colour)
{
    Set(m_itemHotForeColor, colour, QStringLiteral("ItemHotForeColor"));
}

void ctlMenus::SetBackColor(ColourValue colour)
{
    SharedMenuState().backColor = colour;
    Set(m_backColor, colour, QStringLiteral("BackColor"));
}

void ctlMenus::SetItemHotBackColor(ColourValue colour)
{
    Set(m_itemHotBackColor, colour, QStringLiteral("ItemHotBackColor"));
}

bool ctlMenus::UseIcons() const
{
    return SharedMenuState().useIcons;
}

void ctlMenus::SetUseIcons(bool useIcons)
{
    Set(SharedMenuState().useIcons, useIcons, QStringLiteral("UseIcons"));
}

bool ctlMenus::UseLeftImage() const
{
    return SharedMenuState().useLeftImage;
}

void ctlMenus::SetUseLeftImage(bool useLeftImage)
{
    Set(SharedMenuState().useLeftImage, useLeftImage, QStringLiteral("UseLeftImage"));
}

ColourValue ctlMenus::LeftPicBackColor() const
{
    return SharedMenuState().leftPicBackColor;
}

void ctlMenus::SetLeftPicBackColor(ColourValue colour)
{
    Set(SharedMenuState().leftPicBackColor, colour, QStringLiteral("LeftPicBackColor"));
}

template <typename Self, typename Each>
void ctlMenus::Visit(Self& self, const Each& each)
{
    constexpr ColourValue kFace = SystemReference(SystemColour::ButtonFace);
    MenuState& state = SharedMenuState();
    each(QStringLiteral("Font"), self.m_font, self.HostAmbient().font);
    each(QStringLiteral("Enabled"), self.m_enabled, true);
    each(QStringLiteral("ItemForeColor"), self.m_itemForeColor,
         SystemReference(SystemColour::MenuText));
    each(QStringLiteral("ItemHotForeColor"), self.m_itemHotForeColor,
         SystemReference(SystemColour::SelectedText));
    each(QStringLiteral("BackColor"), self.m_backColor, kFace);
    each(QStringLiteral("ItemHotBackColor"), self.m_itemHotBackColor,
         SystemReference(SystemColour::Selection));
    each(QStringLiteral("UseIcons"), state.useIcons, false);
    each(QStringLiteral("UseLeftImage"), state.useLeftImage, false);
    each(QStringLiteral("LeftPicBackColor"), state.leftPicBackColor, kFace);
}

void ctlMenus::Load(const PropertyBag& bag)
{
    Visit(*this, ReadFrom{bag});
    SharedMenuState().backColor = m_backColor;
    ResetMenu();
}

void ctlMenus::Save(PropertyBag& bag) const
{
    Visit(*this, WriteTo{bag});
}

// It changes the list, though that is common to all: NOLINTNEXTLINE(*-make-member-function-const)
void ctlMenus::AddItem(const QString& Caption, const QString& Key, bool Enabled,
                       const PictureReference& Picture, ColourValue ForeColor,
                       ColourValue HotForeColor, ColourValue HotBackColor)
{
    std::vector<MenuItem>& items = SharedMenuState().items;
    if (items.size() == std::numeric_limits<std::int16_t>::max())
        return; // an index has 16 bits
    MenuItem item{.key = Key,
                  .caption = Caption,
                  .enabled = Enabled,
                  .picture = Picture,
                  .foreColor = OrOwn(ForeColor, m_itemForeColor),
                  .hotForeColor = OrOwn(HotForeColor, m_itemHotForeColor),
                  .hotBackColor = OrOwn(HotBackColor, m_itemHotBackColor)};
    item.enabled = item.enabled && !item.IsSeparator();
    items.push_back(std::move(item));
}

void ctlMenus::AddChoice(const QString& Caption, const QString& Key, bool isChosen)
{
    const std::vector<MenuItem>& items = SharedMenuState().items;
    const std::size_t count = items.size();
    AddItem(Caption, Key);
    if (items.size() > count)
        SharedMenuState().items.back().isChosen = isChosen;
}

void ctlMenus::ResetMenu()
{
    SharedMenuState().items.clear();
}

void ctlMenus::ShowMenu(std::int32_t X, std::int32_t Y, const PictureReference& Picture)
{
    MenuState& state = SharedMenuState();
    if (!state.closed)
        return;
    const QPointer<ctlMenus> control(this);
    RunMenu(PlaceOfMenu(X, Y), Picture);
    if (!control)
        return;
    const MenuItem* choice = state.Choice();
    if (!choice) {
        ResetMenu();
        return;
    }
    std::int16_t index = state.hotItem;
    QString caption = choice->caption;
    QString key = choice->key;
    ResetMenu();
    std::ignore = Raise(ItemClicked, index, caption, key);
}

QPoint ctlMenus::PlaceOfMenu(std::int32_t x, std::int32_t y) const
{
    if (x == kAtPointer && y == kAtPointer)
        return QCursor::pos() - QPoint(kInsideMenu, kInsideMenu);
    return {Placeable(x), Placeable(y)};
}

void ctlMenus::RunMenu(QPoint place, const PictureReference& picture)
{
    MenuState& state = SharedMenuState();
    QEventLoop loop;
    const QPointer<frmMenus> menu = new frmMenus(*this, state);
    m_menu = menu;
    menu->move(place);
    menu->setFont(m_font);
    menu->setAccessibleName(accessibleName());
    state.sidePicture = picture;
    menu->Closed = [&loop] { loop.quit(); };
    // The owner may be destroyed while the menu is open, and the menu with it.
    connect(menu, &QObject::destroyed, &loop, &QEventLoop::quit);
    // Drawn before it is shown, so that nobody sees it grow.
    menu->DrawMenu(true, true, true);
    state.closed = false;
    unsetCursor();
    menu->show();
    loop.exec();
    delete menu.data(); // which closes it, should the program end meanwhile
}

frmMenus* ctlMenus::OpenMenu() const
{
    return m_menu;
}

QAccessibleInterface* ctlMenus::MakeAccessible()
{
    return new MenusAccessible(*this);
}

} // namespace lantern
