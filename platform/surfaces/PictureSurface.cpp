// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureSurface.h"

#include "DevicePixels.h"

#include <QDragEnterEvent>
#include <QPaintEvent>
#include <QPainter>

namespace lantern {
namespace {

// The smallest rectangle of whole units that holds a rectangle scaled by the factor.
QRect ScaledOutward(const QRect& rect, qreal factor)
{
    return QRectF(rect.x() * factor, rect.y() * factor, rect.width() * factor,
                  rect.height() * factor)
        .toAlignedRect();
}

} // namespace

// It covers all of its area, but doesn't say so to the toolkit: what is known as opaque is left
// out when the window behind it is painted anew, and some window systems lose the pixels at that
// moment.
PictureSurface::PictureSurface(QWidget* parent) : QWidget(parent)
{
    setAcceptDrops(true);
}

void PictureSurface::FitImage()
{
    const qreal ratio = devicePixelRatioF();
    const QSize wanted = DeviceSize(size(), ratio);
    if (m_image.size() == wanted && m_ratio == ratio)
        return;
    m_ratio = ratio;
    m_image = QImage(wanted, QImage::Format_RGB32);
    m_image.fill(m_backColor);
    ++m_generation;
}

SurfaceImage PictureSurface::Image()
{
    FitImage();
    if (m_image.isNull())
        return {};
    return {.pixels = reinterpret_cast<std::uint32_t*>(m_image.bits()),
            .width = m_image.width(),
            .height = m_image.height(),
            .stride = static_cast<int>(m_image.bytesPerLine() / 4),
            .devicePixelRatio = devicePixelRatioF(),
            .generation = m_generation,
            .look = m_look};
}

void PictureSurface::Changed(const DeviceRect& rect)
{
    update(ScaledOutward({rect.left, rect.top, rect.width, rect.height}, 1 / devicePixelRatioF()));
}

void PictureSurface::SetBackColor(QRgb colour)
{
    m_backColor = colour;
}

void PictureSurface::SetLook(PictureLook look)
{
    if (look == m_look)
        return;
    m_look = look;
    update();
}

void PictureSurface::AnswerDrag(QDropEvent& event, DragState state)
{
    DropData dragged(event.mimeData());
    const DropEffect effect = DragOver ? DragOver(dragged, state) : DropEffect::None;
    const Qt::DropAction action = HarmlessAction(effect, event.possibleActions());
    event.setDropAction(action);
    event.setAccepted(action != Qt::IgnoreAction);
}

// A drag that is refused here is never heard of again, not even when it leaves. So it is let in,
// and refused as it moves; a move follows at once.
void PictureSurface::dragEnterEvent(QDragEnterEvent* event)
{
    AnswerDrag(*event, DragState::Enter);
    event->accept();
}

void PictureSurface::dragMoveEvent(QDragMoveEvent* event)
{
    AnswerDrag(*event, DragState::Over);
}

void PictureSurface::dragLeaveEvent(QDragLeaveEvent*)
{
    DropData nothing(nullptr);
    if (DragOver)
        DragOver(nothing, DragState::Leave);
}

void PictureSurface::dropEvent(QDropEvent* event)
{
    DropData dropped(event->mimeData());
    const Qt::DropAction action = HarmlessAction(DropEffect::Move, event->possibleActions());
    const bool isTaken = action != Qt::IgnoreAction && Drop && Drop(dropped);
    event->setDropAction(isTaken ? action : Qt::IgnoreAction);
    event->setAccepted(isTaken);
}

void PictureSurface::paintEvent(QPaintEvent* event)
{
    if (PaintPicture)
        PaintPicture();
    FitImage();
    const qreal ratio = devicePixelRatioF();
    QPainter painter(this);
    UseDevicePixels(painter, ratio);
    for (const QRect& exposed : event->region()) {
        const QRect part = ScaledOutward(exposed, ratio) & m_image.rect();
        painter.drawImage(part.topLeft(), m_image, part);
    }
}

} // namespace lantern
