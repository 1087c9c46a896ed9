// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlPicBtn.h"

#include <utility>

namespace lantern {

ctlPicBtn::ctlPicBtn(QWidget* parent, Ambient ambient)
    : ButtonControl(parent, std::move(ambient)), m_backColor(HostAmbient().backColor),
      m_foreColor(HostAmbient().foreColor), m_overColor(HostAmbient().foreColor)
{
    FirstCreated();
}

void ctlPicBtn::SetColour(ColourValue& field, ColourValue colour)
{
    Store(field, colour);
    ResolveColors();
    DrawLastState();
}

void ctlPicBtn::SetBackColor(ColourValue colour)
{
    SetColour(m_backColor, colour);
    Report(QStringLiteral("BackColor"));
}

void ctlPicBtn::SetForeColor(ColourValue colour)
{
    SetColour(m_foreColor, colour);
    Report(QStringLiteral("ForeColor"));
}

void ctlPicBtn::SetOverColor(ColourValue colour)
{
    SetColour(m_overColor, colour);
    Report(QStringLiteral("OverColor"));
}

void ctlPicBtn::SetPictureDown(const PictureReference& picture)
{
    StoreAndMeasure(m_pictureDown, picture);
    Report(QStringLiteral("PictureDown"));
}

void ctlPicBtn::SetPictureOver(const PictureReference& picture)
{
    StoreAndMeasure(m_pictureOver, picture);
    Report(QStringLiteral("PictureOver"));
}

void ctlPicBtn::SetPictureDisabled(const PictureReference& picture)
{
    StoreAndMeasure(m_pictureDisabled, picture);
    Report(QStringLiteral("PictureDisabled"));
}

template <typename Self, typename Each>
void ctlPicBtn::VisitProperties(Self& self, const Each& each)
{
    VisitText(self, each);
    each(QStringLiteral("BackColor"), self.m_backColor, self.HostAmbient().backColor);
    each(QStringLiteral("ForeColor"), self.m_foreColor, self.HostAmbient().foreColor);
    each(QStringLiteral("OverColor"), self.m_overColor, self.HostAmbient().foreColor);
    VisitPictures(self, each);
    each(QStringLiteral("PictureDown"), self.m_pictureDown, PictureReference());
    each(QStringLiteral("PictureOver"), self.m_pictureOver, PictureReference());
    each(QStringLiteral("PictureDisabled"), self.m_pictureDisabled, PictureReference());
    VisitCheckBox(self, each);
}

void ctlPicBtn::Load(const PropertyBag& bag)
{
    VisitProperties(*this, ReadFrom{bag});
    Loaded();
}

void ctlPicBtn::Save(PropertyBag& bag) const
{
    VisitProperties(*this, WriteTo{bag});
}

void ctlPicBtn::ResolveColors()
{
    Store(m_colours, Colours{.highlight = ResolveColour(SystemColour::ButtonHighlight),
                             .shadow = ResolveColour(SystemColour::ButtonShadow),
                             .fore = ResolveColour(m_foreColor),
                             .over = ResolveColour(m_overColor)});
}

void ctlPicBtn::LayoutRects()
{
    m_rects =
        LayoutPicButton(QSize(Width(), Height()), PictureSize(), IsCheckBox(), CaptionMeasure());
}

QRgb ctlPicBtn::BackOf(ButtonLook) const
{
    return ResolveColour(m_backColor);
}

void ctlPicBtn::DrawLook(ButtonLook look)
{
    DrawPictureState(look);
    DrawCaptionState(look);
}

const PictureReference& ctlPicBtn::PictureFor(ButtonLook look) const
{
    switch (look) {
    case ButtonLook::Hot:
        return m_pictureOver;
    case ButtonLook::Down:
        return m_pictureDown;
    case ButtonLook::Disabled:
        return m_pictureDisabled;
    default:
        return Picture();
    }
}

void ctlPicBtn::DrawPictureState(ButtonLook look)
{
    if (!Picture())
        return;
    const PictureReference& own = PictureFor(look);
    Surface().DrawPicture(own ? *own : *Picture(), 0, 0);
}

void ctlPicBtn::DrawCaptionState(ButtonLook look)
{
    const TextFlags flags = IsCheckBox() ? TextWrapped : TextWrapped | TextCentred;
    const auto draw = [this, flags](const Box& box, QRgb colour) {
        Surface().DrawText(Caption(), box, flags, Font(), colour);
    };
    if (look == ButtonLook::Disabled) {
        draw(m_rects.shadow, m_colours.highlight);
        draw(m_rects.text, m_colours.shadow);
    } else {
        draw(m_rects.text, look == ButtonLook::Hot ? m_colours.over : m_colours.fore);
    }
}

} // namespace lantern
