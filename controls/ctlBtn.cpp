// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlBtn.h"

#include "Blanks.h"

#include <utility>

namespace lantern {

ctlBtn::ctlBtn(QWidget* parent, Ambient ambient) : ButtonControl(parent, std::move(ambient))
{
    FirstCreated();
}

void ctlBtn::SetButtonType(std::int32_t type)
{
    Store(m_buttonType, type);
    Resize();
    Report(QStringLiteral("ButtonType"));
}

void ctlBtn::SetMaskColor(ColourValue colour)
{
    Store(m_maskColor, colour);
    ResolveColors();
    DrawLastState();
    Report(QStringLiteral("MaskColor"));
}

void ctlBtn::SetUseMaskColor(bool useMaskColor)
{
    Store(m_useMaskColor, useMaskColor);
    if (Picture())
        DrawLastState();
    Report(QStringLiteral("UseMaskColor"));
}

void ctlBtn::SetPicturePosition(std::int32_t position)
{
    Store(m_picturePosition, position);
    if (!Report(QStringLiteral("PicPosition")))
        return;
    Relayout();
    DrawLastState();
}

template <typename Self, typename Each>
void ctlBtn::VisitProperties(Self& self, const Each& each)
{
    each(QStringLiteral("ButtonType"), self.m_buttonType, std::int32_t{0});
    VisitText(self, each);
    each(QStringLiteral("MaskColor"), self.m_maskColor, DirectColour(255, 0, 0));
    VisitPictures(self, each);
    each(QStringLiteral("UseMaskColor"), self.m_useMaskColor, true);
    each(QStringLiteral("PicPosition"), self.m_picturePosition, std::int32_t{4});
    VisitCheckBox(self, each);
}

void ctlBtn::Load(const PropertyBag& bag)
{
    VisitProperties(*this, ReadFrom{bag});
    Loaded();
}

void ctlBtn::Save(PropertyBag& bag) const
{
    VisitProperties(*this, WriteTo{bag});
}

void ctlBtn::ResolveColors()
{
    Store(m_colours, Colours{.highlight = ResolveColour(SystemColour::ButtonHighlight),
                             .shadow = ResolveColour(SystemColour::ButtonShadow),
                             .text = ResolveColour(SystemColour::ButtonText),
                             .mask = ResolveColour(m_maskColor)});
}

void ctlBtn::LayoutRects()
{
    m_rects = LayoutTextButton(m_rects, QSize(Width(), Height()), PictureSize(), m_picturePosition,
                               TrimBlanks(Caption()).isEmpty(), CaptionMeasure());
}

QRgb ctlBtn::BackOf(ButtonLook look) const
{
    return ResolveColour(look == ButtonLook::Down ? SystemColour::Light : SystemColour::ButtonFace);
}

bool ctlBtn::HasEdges(ButtonLook look) const
{
    return m_buttonType == 0 || look == ButtonLook::Hot || look == ButtonLook::Down;
}

void ctlBtn::DrawLook(ButtonLook look)
{
    DrawCaptionState(look);
    if (HasEdges(look)) {
        const bool isDown = look == ButtonLook::Down;
        DrawEdges(isDown ? m_colours.shadow : m_colours.highlight,
                  isDown ? m_colours.highlight : m_colours.shadow);
    }
    if (Picture())
        DrawPictureState(look);
}

void ctlBtn::DrawCaptionState(ButtonLook look)
{
    const auto draw = [this](const Box& box, QRgb colour) {
        Surface().DrawText(Caption(), box, m_rects.flags, Font(), colour);
    };
    if (look == ButtonLook::Disabled) {
        draw(m_rects.shifted, m_colours.highlight);
        draw(m_rects.text, m_colours.shadow);
    } else {
        draw(look == ButtonLook::Down ? m_rects.shifted : m_rects.text, m_colours.text);
    }
}

// Up the left side and along the top in the first colour, then down the right side and back along
// the bottom, corner included, in the second.
void ctlBtn::DrawEdges(QRgb first, QRgb second)
{
    const int right = Width() - 1;
    const int bottom = Height() - 1;
    Surface().Line(0, bottom, 0, 0, first);
    Surface().Line(0, 0, right, 0, first);
    Surface().Line(right, 0, right, bottom, second);
    Surface().Line(right, bottom, -1, bottom, second);
}

void ctlBtn::DrawPictureState(ButtonLook look)
{
    const int x = m_rects.pictureX;
    const int y = m_rects.pictureY;
    if (look == ButtonLook::Disabled) {
        // The dark parts only, in relief.
        DrawPictureAt(x + 1, y + 1, m_colours.highlight);
        DrawPictureAt(x, y, m_colours.shadow);
    } else {
        const int shift = look == ButtonLook::Down ? 1 : 0;
        DrawPictureAt(x + shift, y + shift, {});
    }
}

void ctlBtn::DrawPictureAt(int x, int y, std::optional<QRgb> colour)
{
    constexpr ColourValue kDirectBits = 0x00FFFFFF;
    MaskedPaint paint;
    if (m_useMaskColor)
        paint.mask = m_colours.mask;
    paint.colour = colour;
    paint.isMonochrome = colour.has_value();
    // Under an icon lies the mask colour as it is stored: the number of a system colour is not
    // looked up there, so that its parts which are transparent don't match the mask.
    paint.iconGround = ResolveColour(m_maskColor & kDirectBits);
    DrawMaskedPicture(Surface(), x, y, PictureSize().width(), PictureSize().height(), *Picture(),
                      paint);
}

} // namespace lantern
