// SPDX-License-Identifier: GPL-3.0-or-later
#include "Gallery.h"

#include "ButtonArt.h"
#include "ButtonDress.h"
#include "ctlBtn.h"
#include "ctlPicBtn.h"

namespace lantern {
namespace {

constexpr int kMargin = 20;
constexpr int kLabelWidth = 60;

QString NameOf(const ButtonDrawing& drawing)
{
    return QString::fromLatin1(drawing.name.data(), static_cast<int>(drawing.name.size()));
}

QString Named(const QString& kind, Pose pose)
{
    return (kind + QLatin1Char('.') + NameOf(pose)).toLower();
}

// The poses side by side, each with its name above.
template <typename Button>
void PlaceRow(GalleryPage& page, const QString& kind, QPoint corner, QSize size,
              const std::function<void(Button&)>& dress)
{
    constexpr int kGap = 8;
    page.Label(kind, QRect(corner, QSize(kLabelWidth, size.height())));
    int left = corner.x() + kLabelWidth;
    for (const Pose pose : kPoses) {
        dress(page.PlaceButton<Button>(Named(kind, pose), QRect(QPoint(left, corner.y()), size),
                                       pose));
        left += size.width() + kGap;
    }
}

void PlaceNames(GalleryPage& page, QPoint corner, int step)
{
    int left = corner.x() + kLabelWidth;
    for (const Pose pose : kPoses) {
        page.Label(NameOf(pose), {left, corner.y(), step, 14});
        left += step;
    }
}

// A red cross on white, which is the colour to leave out.
constexpr ColourValue kMask = DirectColour(255, 255, 255);
PictureReference SmallPicture()
{
    static const QByteArray kSvg = "<svg xmlns='http://www.w3.org/2000/svg' width='12' height='12'>"
                                   "<path fill='#ffffff' d='M0 0h12v12H0z'/>"
                                   "<path fill='#a01010' d='M5 1h2v4h4v2H7v4H5V7H1V5h4z'/></svg>";
    return Picture::FromSvg(kSvg, {12, 12});
}

} // namespace

// Every face of the player, a column each, with its poses below each other.
void ShelveFaces(GalleryPage& page, int top)
{
    constexpr int kRowHeight = 26;
    constexpr int kGap = 4;
    page.Heading(QStringLiteral("Picture buttons: the faces"), {kMargin, top});
    int row = top + 20;
    for (const Pose pose : kPoses) {
        page.Label(NameOf(pose), {kMargin, row, kLabelWidth, 24});
        int left = kMargin + kLabelWidth;
        for (const ButtonDrawing& drawing : kButtonDrawings) {
            const bool isShown = pose != Pose::Checked || !drawing.downName.empty();
            const QRect place(left, row + (24 - drawing.height) / 2, drawing.width, drawing.height);
            left += drawing.width + kGap;
            if (isShown)
                GiveFace(page.PlaceButton<ctlPicBtn>(Named(NameOf(drawing), pose), place, pose),
                         drawing.face);
        }
        row += kRowHeight;
    }
}

void ShelvePictureButtons(GalleryPage& page, QPoint corner)
{
    page.Heading(QStringLiteral("Picture buttons: captions"), corner);
    PlaceNames(page, corner + QPoint(0, 18), 98);
    PlaceRow<ctlPicBtn>(page, QStringLiteral("Caption"), corner + QPoint(0, 36), {90, 16},
                        [](ctlPicBtn& button) {
                            button.SetOverColor(kAccent);
                            button.SetCaption(QStringLiteral("Audio device"));
                        });
    PlaceRow<ctlPicBtn>(page, QStringLiteral("Both"), corner + QPoint(0, 58), {90, 16},
                        [](ctlPicBtn& button) {
                            GiveFace(button, ButtonFace::RememberDevice);
                            button.SetOverColor(kAccent);
                            button.SetCaption(QStringLiteral("Remember"));
                        });
    PlaceRow<ctlPicBtn>(page, QStringLiteral("System"), corner + QPoint(0, 80), {90, 18},
                        [](ctlPicBtn& button) {
                            button.SetBackColor(SystemReference(SystemColour::ButtonFace));
                            button.SetForeColor(SystemReference(SystemColour::ButtonText));
                            button.SetOverColor(DirectColour(0, 0, 160));
                            button.SetCaption(QStringLiteral("&System"));
                        });
}

void ShelveTextButtons(GalleryPage& page, QPoint corner)
{
    page.Heading(QStringLiteral("Text buttons"), corner);
    PlaceNames(page, corner + QPoint(0, 18), 98);
    PlaceRow<ctlBtn>(page, QStringLiteral("Raised"), corner + QPoint(0, 36), {90, 22},
                     [](ctlBtn& button) { button.SetCaption(QStringLiteral("&Raised")); });
    PlaceRow<ctlBtn>(page, QStringLiteral("Flat"), corner + QPoint(0, 64), {90, 22},
                     [](ctlBtn& button) {
                         button.SetButtonType(1);
                         button.SetCaption(QStringLiteral("Flat"));
                     });
    PlaceRow<ctlBtn>(page, QStringLiteral("Picture"), corner + QPoint(0, 92), {90, 22},
                     [](ctlBtn& button) {
                         button.SetPicture(SmallPicture());
                         button.SetMaskColor(kMask);
                         button.SetPicturePosition(3);
                         button.SetCaption(QStringLiteral("Larger"));
                     });
    for (int position = 0; position < 9; ++position) {
        const QRect place(corner.x() + kLabelWidth + position * 55, corner.y() + 124, 48, 40);
        ctlBtn& button = page.PlaceButton<ctlBtn>(QStringLiteral("position.%1").arg(position),
                                                  place, Pose::Normal);
        button.SetPicture(SmallPicture());
        button.SetMaskColor(kMask);
        button.SetPicturePosition(position);
        button.SetCaption(QString::number(position));
    }
    page.Label(QStringLiteral("Positions"), {corner.x(), corner.y() + 124, kLabelWidth, 40});
}

} // namespace lantern
