// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Control.h"
#include "RetainedSurface.h"

namespace lantern {

// A control that draws itself on a surface that keeps what was drawn: a change of state redraws at
// once, and a paint event only copies.
class OwnerDrawn : public Control {
public:
    explicit OwnerDrawn(QWidget* parent, Ambient ambient = {});

    const QImage& SurfaceImage() const { return m_surface.Image(); }

protected:
    // The surface was made anew, because the size or the screen's ratio changed: draw all of it.
    virtual void SurfaceResized() = 0;

    RetainedSurface& Surface() { return m_surface; }
    // Makes the surface fit at once, for a control that draws before it is shown.
    void FitSurface();
    void ShowSurface() { update(); }

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    RetainedSurface m_surface;
};

} // namespace lantern
