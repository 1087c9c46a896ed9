// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GalleryPage.h"
#include "ctlSkinner.h"

#include <QImage>

class QLabel;

namespace lantern {

class ctlMenus;

// One window with every control of the set in every state, for the eyes and for the hand.
class Gallery : public QWidget {
public:
    Gallery();

    // Told a line for each event of a control.
    std::function<void(const QString& line)> Told;

    // The whole window at the screen's ratio, with the buttons hot and pressed that are shown as
    // such. The window must be shown.
    QImage TakePicture();
    // A line for each control: its name and where it is on the screen, as x y width height.
    QStringList Places() const;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void FillShelves();

    ctlSkinner m_skinner;
    GalleryPage m_page;
    QLabel* m_lastEvent;
};

// The shelves, each with its headings, from a height downwards.
void ShelveFaces(GalleryPage& page, int top);
void ShelvePictureButtons(GalleryPage& page, QPoint corner);
void ShelveTextButtons(GalleryPage& page, QPoint corner);
void ShelveSliders(GalleryPage& page, QPoint corner);
void ShelveTickers(GalleryPage& page, QPoint corner);
void ShelveSkins(GalleryPage& page, QPoint corner);
void ShelveFrames(GalleryPage& page, QPoint corner);
// Pictures of menus, on the ground of the page.
void ShelveMenus(QWidget& ground, GalleryPage& page, QPoint corner);

// A menu to open and choose from.
ctlMenus& PlaceMenu(GalleryPage& page);
void OpenAtPointer(ctlMenus& menu);

} // namespace lantern
