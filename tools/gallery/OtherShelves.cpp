// SPDX-License-Identifier: GPL-3.0-or-later
#include "Gallery.h"

#include "ctlFrame.h"
#include "ctlSlide.h"
#include "ctlTicker.h"

namespace lantern {
namespace {

struct SlideShown {
    const char* name;
    std::int32_t min;
    std::int32_t max;
    std::int32_t value;
    bool isCentred;
    bool isEnabled;
};
constexpr std::array kSlides{
    SlideShown{"plain", 0, 100, 40, false, true},
    SlideShown{"first", 0, 100, 0, false, true},
    SlideShown{"last", 0, 100, 100, false, true},
    SlideShown{"disabled", 0, 100, 40, false, false},
    SlideShown{"centred", -50, 50, 0, true, true},
    SlideShown{"offcentre", -10, 10, 4, true, true},
    SlideShown{"nocentre", -10, 10, 4, true, false},
};

void PlaceSlide(GalleryPage& page, const SlideShown& shown, QPoint place)
{
    const QString name = QString::fromLatin1(shown.name);
    page.Label(name, {place.x(), place.y() - 1, 60, 14});
    ctlSlide& slide = page.Place<ctlSlide>(QStringLiteral("slide.") + name,
                                           {place + QPoint(60, 0), QSize(270, 12)});
    slide.SetValues(shown.min, shown.max, shown.value);
    slide.SetSliderColor(kAccent);
    slide.SetSliderBack(shown.isCentred ? kAccent : kDarkGrey);
    slide.SetCenterLine(shown.isCentred);
    slide.SetCenterLineColor(DirectColour(128, 128, 128));
    slide.SetEnabled(shown.isEnabled);
    const auto tellValue = [&page, &slide](const char* event) {
        return [&page, &slide, event] {
            page.Tell(slide, QStringLiteral("%1 %2").arg(QLatin1String(event)).arg(slide.Value()));
        };
    };
    slide.Change = tellValue("Change");
    slide.Scroll = tellValue("Scroll");
    slide.KeyDown = [&slide, tell = page.KeyTeller(slide, "KeyDown")](KeyCode& key,
                                                                      ShiftBits shift) {
        tell(key, shift);
        if (key == KeyCode::Escape)
            slide.CancelScroll();
    };
    slide.KeyUp = page.KeyTeller(slide, "KeyUp");
}

} // namespace

void ShelveSliders(GalleryPage& page, QPoint corner)
{
    page.Heading(QStringLiteral("Sliders"), corner);
    int top = corner.y() + 20;
    for (const SlideShown& shown : kSlides) {
        PlaceSlide(page, shown, {corner.x(), top});
        top += 19;
    }
}

void ShelveTickers(GalleryPage& page, QPoint corner)
{
    page.Heading(QStringLiteral("Time tickers"), corner);
    struct Shown {
        const char* name;
        std::int32_t seconds;
        bool state;
    };
    int left = corner.x();
    for (const Shown& shown : {Shown{"idle", 0, false}, Shown{"loading", -1, false},
                               Shown{"start", 0, true}, Shown{"time", 754, true}}) {
        ctlTicker& ticker =
            page.Place<ctlTicker>(QStringLiteral("ticker.%1").arg(QLatin1String(shown.name)),
                                  {left, corner.y() + 20, kTickerWidth, kTickerHeight});
        ticker.SetTicker(std::int32_t{shown.seconds}, shown.state);
        ticker.MouseDown = page.MouseTeller(ticker, "MouseDown");
        ticker.MouseUp = page.MouseTeller(ticker, "MouseUp");
        left += kTickerWidth + 16;
    }
}

void ShelveSkins(GalleryPage& page, QPoint corner)
{
    page.Heading(QStringLiteral("Skins (and this window's)"), corner);
    const auto place = [&](const QString& name, int left, int width, const QString& caption) {
        ctlSkinner& skin = page.Place<ctlSkinner>(QStringLiteral("skin.") + name,
                                                  {corner.x() + left, corner.y() + 20, width, 40});
        skin.SetCaption(caption);
        skin.SetBackColor(kBlack);
    };
    place(QStringLiteral("caption"), 0, 154, QStringLiteral(" Options"));
    place(QStringLiteral("plain"), 170, 69, QString());
    place(QStringLiteral("small"), 255, 10, QString());
}

// The styles side by side, the alignments below each other, and the dividers.
void ShelveFrames(GalleryPage& page, QPoint corner)
{
    constexpr QSize kSize(94, 34);
    constexpr std::array kAlignments{"Left", "Right", "Centre"};
    page.Heading(QStringLiteral("Frames: styles 0 to 8, left, right, centre and as a divider"),
                 corner);
    for (int row = 0; row < 4; ++row) {
        for (int style = 0; style < 9; ++style) {
            const QPoint place(corner.x() + style * 101, corner.y() + 20 + row * 38);
            ctlFrame& frame =
                page.Place<ctlFrame>(QStringLiteral("frame.%1.%2").arg(style).arg(row),
                                     {place, row < 3 ? kSize : QSize(kSize.width(), 16)});
            if (row == 0) { // as the player's are; the others in the colours of the system
                frame.SetBackColor(kBlack);
                frame.SetForeColor(kAccent);
            }
            frame.SetFrameBorder(style);
            frame.SetFrameAlign(row % 3);
            frame.SetFrameDivider(row == 3);
            frame.SetCaption(row < 3 ? QLatin1String(kAlignments[static_cast<std::size_t>(row)])
                                     : QStringLiteral("Divider"));
            frame.Click = page.Teller(frame, "Click");
        }
    }
}

} // namespace lantern
