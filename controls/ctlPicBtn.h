// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ButtonControl.h"
#include "ButtonLayout.h"

namespace lantern {

// A push button whose look comes from up to four pictures, shown unscaled at its top left corner,
// and a caption over them. Without a Picture, the other three aren't shown either.
class ctlPicBtn : public ButtonControl {
public:
    explicit ctlPicBtn(QWidget* parent = nullptr, Ambient ambient = {});

    ColourValue BackColor() const { return m_backColor; }
    void SetBackColor(ColourValue colour);
    ColourValue ForeColor() const { return m_foreColor; }
    void SetForeColor(ColourValue colour);
    ColourValue OverColor() const { return m_overColor; } // of the caption while hot
    void SetOverColor(ColourValue colour);
    const PictureReference& PictureDown() const { return m_pictureDown; }
    void SetPictureDown(const PictureReference& picture);
    const PictureReference& PictureOver() const { return m_pictureOver; }
    void SetPictureOver(const PictureReference& picture);
    const PictureReference& PictureDisabled() const { return m_pictureDisabled; }
    void SetPictureDisabled(const PictureReference& picture);

    void Load(const PropertyBag& bag) override;
    void Save(PropertyBag& bag) const override;

protected:
    void ResolveColors() override;
    void LayoutRects() override;
    QRgb BackOf(ButtonLook look) const override;
    void DrawLook(ButtonLook look) override;

private:
    struct Colours {
        QRgb highlight = 0;
        QRgb shadow = 0;
        QRgb fore = 0;
        QRgb over = 0;
        bool operator==(const Colours&) const = default;
    };

    template <typename Self, typename Each>
    static void VisitProperties(Self& self, const Each& each);
    void SetColour(ColourValue& field, ColourValue colour);
    const PictureReference& PictureFor(ButtonLook look) const;
    void DrawPictureState(ButtonLook look);
    void DrawCaptionState(ButtonLook look);

    ColourValue m_backColor;
    ColourValue m_foreColor;
    ColourValue m_overColor;
    PictureReference m_pictureDown;
    PictureReference m_pictureOver;
    PictureReference m_pictureDisabled;
    PicButtonRects m_rects;
    Colours m_colours;
};

} // namespace lantern
