// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FrameLayout.h"
#include "OwnerDrawn.h"
#include "PropertyBag.h"

namespace lantern {

// A box around other controls, its caption set into the top edge; or, with the border style 7, a
// small title bar by which the user moves it within its parent.
class ctlFrame : public OwnerDrawn {
public:
    explicit ctlFrame(QWidget* parent, Ambient ambient = {});

    // Everything has been drawn: the host may add to it on hdc(). It must not destroy the frame.
    // While this runs, what the host sets is drawn without another one.
    std::function<void()> Paint;
    std::function<void()> Click;
    MouseHandler MouseDown; // places are in twips; a left press on a title bar is not told
    MouseHandler MouseUp;

    std::int32_t FrameBorder() const { return m_look.border; }
    void SetFrameBorder(std::int32_t border);
    bool FrameDivider() const { return m_look.isDivider; }
    void SetFrameDivider(bool divider);
    std::int32_t frameAlign() const { return m_look.align; }
    void SetFrameAlign(std::int32_t align);
    const QString& Caption() const { return m_look.caption; }
    void SetCaption(const QString& caption);
    ColourValue BackColor() const { return m_backColor; }
    void SetBackColor(ColourValue colour);
    ColourValue ForeColor() const { return m_foreColor; }
    void SetForeColor(ColourValue colour);
    const QFont& FrameFont() const { return m_font; }
    void SetFrameFont(const QFont& font);

    static constexpr std::int16_t ScaleMode() { return 1; } // twips
    RetainedSurface& hdc() { return Surface(); }
    WId hWnd() const { return effectiveWinId(); } // of the window that the frame is drawn in

    void Load(const PropertyBag& bag);
    void Save(PropertyBag& bag) const;

    Spoken Speak() const override;

protected:
    void SurfaceResized() override { Draw(); }
    void AmbientChanged() override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    // Stores, reports, draws. False if the host destroyed the frame on the report.
    template <typename Field>
    bool Set(Field& field, const Field& value, const QString& key);
    // Calls each with a key, a field and what a missing key means, in the order of the bag.
    template <typename Self, typename Each>
    static void Visit(Self& self, const Each& each);

    void Draw();
    void DrawSurface(); // and raises Paint
    void RaisePaint();

    FrameLook m_look;
    ColourValue m_backColor = 0;
    ColourValue m_foreColor = 0;
    QFont m_font;
    ColourValue m_ambientBackColor;
    bool m_isFresh = false; // drawn since the last paint event
    bool m_isInPaint = false;
    bool m_isPressed = false;
    bool m_isMoving = false;
    QPoint m_grip; // where the user holds a title bar
};

} // namespace lantern
