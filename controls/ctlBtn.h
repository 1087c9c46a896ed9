// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ButtonControl.h"
#include "ButtonLayout.h"
#include "MaskedPicture.h"

namespace lantern {

// A push button in system colours, with one-pixel edges, a caption, and at most one picture, in one
// of nine positions around the caption and with one colour of it left out.
class ctlBtn : public ButtonControl {
public:
    explicit ctlBtn(QWidget* parent = nullptr, Ambient ambient = {});

    // 0 is raised; any other is flat, with edges only while hot or down.
    std::int32_t ButtonType() const { return m_buttonType; }
    void SetButtonType(std::int32_t type);
    ColourValue MaskColor() const { return m_maskColor; }
    void SetMaskColor(ColourValue colour);
    bool UseMaskColor() const { return m_useMaskColor; }
    void SetUseMaskColor(bool useMaskColor);
    std::int32_t PicturePosition() const { return m_picturePosition; } // 0 to 8, in reading order
    void SetPicturePosition(std::int32_t position);

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
        QRgb text = 0;
        QRgb mask = 0;
        bool operator==(const Colours&) const = default;
    };

    template <typename Self, typename Each>
    static void VisitProperties(Self& self, const Each& each);
    bool HasEdges(ButtonLook look) const;
    void DrawCaptionState(ButtonLook look);
    void DrawEdges(QRgb first, QRgb second);
    void DrawPictureState(ButtonLook look);
    void DrawPictureAt(int x, int y, std::optional<QRgb> colour);

    std::int32_t m_buttonType = 0;
    ColourValue m_maskColor = DirectColour(255, 0, 0);
    bool m_useMaskColor = true;
    std::int32_t m_picturePosition = 4;
    TextButtonRects m_rects;
    Colours m_colours;
};

} // namespace lantern
