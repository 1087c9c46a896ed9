// SPDX-License-Identifier: GPL-3.0-or-later
#include "OwnerDrawn.h"

#include <QPaintEvent>
#include <QPainter>

#include <utility>

namespace lantern {

OwnerDrawn::OwnerDrawn(QWidget* parent, Ambient ambient) : Control(parent, std::move(ambient))
{
    // The surface covers every pixel, so nothing has to be erased first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
}

void OwnerDrawn::FitSurface()
{
    if (m_surface.Fit(size(), devicePixelRatioF()))
        SurfaceResized();
}

void OwnerDrawn::paintEvent(QPaintEvent* event)
{
    FitSurface(); // the window may have moved to a screen of another ratio
    if (m_surface.IsEmpty())
        return;
    QPainter painter(this);
    const qreal ratio = m_surface.DevicePixelRatio();
    for (const QRect& rect : event->region()) {
        const QRectF source(QPointF(rect.topLeft()) * ratio, QSizeF(rect.size()) * ratio);
        painter.drawImage(QRectF(rect), m_surface.Image(), source);
    }
}

void OwnerDrawn::resizeEvent(QResizeEvent*)
{
    FitSurface();
}

void OwnerDrawn::showEvent(QShowEvent*)
{
    FitSurface();
}

} // namespace lantern
