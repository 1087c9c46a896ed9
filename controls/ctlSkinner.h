// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Control.h"
#include "InteractiveMove.h"
#include "SkinLayout.h"

#include <optional>

namespace lantern {

// The chrome of a window that has no system frame: it covers the whole client area, paints a frame
// of nine picture elements and an optional title, and lets the user move and size the window by
// them. What the host puts into it stands in front.
class ctlSkinner : public Control {
public:
    explicit ctlSkinner(QWidget* parent, Ambient ambient = {});

    // The arguments of MouseDown and MouseUp are in the coordinates of the element that got the
    // mouse: no positions in the window.
    KeyHandler KeyDown;
    KeyHandler KeyUp;
    MouseHandler MouseUp;
    MouseHandler MouseDown;
    std::function<void()> DblClick;

    // The window to move and size. Before the call there is none, and both flags are false.
    void Initialize(QWidget* hostWindow, bool sizable, bool movable);

    ColourValue BackColor() const { return m_backColor; }
    void SetBackColor(ColourValue colour);
    const QString& Caption() const { return m_caption; }
    void SetCaption(const QString& caption);

    // Neither reports nor lays out.
    void Load(const PropertyBag& bag);
    void Save(PropertyBag& bag) const;

    const SkinLayout& Layout() const { return m_layout; }
    bool CaptionIsVisible() const { return m_captionIsVisible; }

    Spoken Speak() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    void RunLayout();
    void PaintElement(QPainter& painter, std::size_t index) const;
    std::optional<SkinPlace> PlaceOf(const QMouseEvent& event) const;
    bool MayDrag(std::size_t element) const;
    void SetPointer(int number);
    void DragBy(const QMouseEvent& event, HitCode code, const InteractiveMove::Ended& ended);

    QPointer<QWidget> m_hostWindow;
    bool m_sizable = false;
    bool m_movable = false;
    ColourValue m_backColor;
    QString m_caption;
    QFont m_captionFont;
    SkinLayout m_layout;
    bool m_captionIsVisible = false;
    int m_pointer = 0;
    std::optional<SkinPlace> m_pressed; // what has the mouse while a button is held
    bool m_pressIsSpent = false;        // a press moves or sizes once, even if that was given up
    InteractiveMove m_move;
};

} // namespace lantern
