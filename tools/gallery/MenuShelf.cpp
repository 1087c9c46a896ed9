// SPDX-License-Identifier: GPL-3.0-or-later
#include "Gallery.h"

#include "ArtPictures.h"
#include "ButtonArt.h"
#include "ProgramFont.h"
#include "ctlMenus.h"
#include "frmMenus.h"

#include <QLabel>
#include <QPixmap>

namespace lantern {
namespace {

struct Entry {
    const char* caption;
    bool isEnabled = true;
    std::optional<ButtonFace> icon = {};
};
constexpr std::array kEntries{
    Entry{"Open a track..."},
    Entry{"-", false},
    Entry{"Play"},
    Entry{"Stop", false},
    Entry{"-", false},
    Entry{"Larger", true, ButtonFace::Larger},
    Entry{"Smaller", false, ButtonFace::Smaller},
    Entry{"-", false},
    Entry{"Options"},
    Entry{"Exit"},
};
constexpr std::int16_t kHotEntry = 6; // counted from 1

QFont MenuFont()
{
    return ProgramFont(QStringLiteral("Arial"), 11);
}

PictureReference IconOf(const Entry& entry)
{
    return entry.icon ? ButtonPicture(*entry.icon, FaceState::Normal) : PictureReference();
}

MenuState StateOf(bool useIcons, bool useLeftImage)
{
    MenuState state;
    for (const Entry& entry : kEntries) {
        state.items.push_back({.key = {},
                               .caption = QString::fromLatin1(entry.caption),
                               .enabled = entry.isEnabled,
                               .picture = IconOf(entry),
                               .foreColor = kWhite,
                               .hotForeColor = kBlack,
                               .hotBackColor = kAccent});
    }
    state.useIcons = useIcons;
    state.useLeftImage = useLeftImage;
    state.sidePicture = MenuSidePicture();
    state.backColor = kBlack;
    state.leftPicBackColor = kBlack;
    return state;
}

// A menu as it is when it is open with the pointer on an entry.
QImage OpenMenu(QWidget& owner, MenuState state)
{
    frmMenus menu(owner, state);
    menu.setFont(MenuFont());
    menu.DrawMenu(true, true, true);
    state.hotItem = kHotEntry;
    menu.DrawMenu(false, false, false);
    return menu.SurfaceImage();
}

} // namespace

void ShelveMenus(QWidget& ground, GalleryPage& page, QPoint corner)
{
    page.Heading(QStringLiteral("Menus (right click)"), corner);
    int top = corner.y() + 20;
    for (const auto& [useIcons, useLeftImage] :
         {std::pair(false, false), std::pair(true, false), std::pair(true, true)}) {
        auto* picture = new QLabel(&ground);
        picture->setPixmap(QPixmap::fromImage(OpenMenu(ground, StateOf(useIcons, useLeftImage))));
        picture->setAttribute(Qt::WA_TransparentForMouseEvents);
        picture->move(corner.x(), top);
        picture->resize(picture->sizeHint());
        top += picture->height() + 14;
    }
}

ctlMenus& PlaceMenu(GalleryPage& page)
{
    ctlMenus& menu = page.Place<ctlMenus>(QStringLiteral("menu"), {});
    menu.SetFont(MenuFont());
    menu.SetItemForeColor(kWhite);
    menu.SetItemHotForeColor(kBlack);
    menu.SetBackColor(kBlack);
    menu.SetItemHotBackColor(kAccent);
    menu.SetLeftPicBackColor(kBlack);
    menu.SetUseIcons(true);
    menu.SetUseLeftImage(true);
    menu.ItemClicked = [&page, &menu](std::int16_t& index, const QString&, const QString& key) {
        page.Tell(menu, QStringLiteral("ItemClicked %1 %2").arg(index).arg(key));
    };
    return menu;
}

void OpenAtPointer(ctlMenus& menu)
{
    menu.ResetMenu();
    int number = 0;
    for (const Entry& entry : kEntries)
        menu.AddItem(QString::fromLatin1(entry.caption), QString::number(++number), entry.isEnabled,
                     IconOf(entry));
    menu.ShowMenu(ctlMenus::kAtPointer, ctlMenus::kAtPointer, MenuSidePicture());
}

} // namespace lantern
