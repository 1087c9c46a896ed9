// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DropData.h"
#include "VirtualBuffers.h"

#include <QImage>
#include <QRgb>
#include <QWidget>

#include <functional>

namespace lantern {

// The widget that the picture is scaled onto. It keeps what was drawn as an image in device
// pixels, so that an exposed part is one copy, and a change costs only its own rectangle.
//
// The image is replaced when the widget's size or the screen's ratio of pixels changes; its
// contents are then lost, which the generation tells whoever draws.
class PictureSurface : public QWidget, public ScaleSurface {
public:
    explicit PictureSurface(QWidget* parent);

    SurfaceImage Image() override;
    void Changed(const DeviceRect& rect) override;

    QRgb BackColor() const { return m_backColor; }
    void SetBackColor(QRgb colour);

    // How the picture is to look; it is drawn anew, if that changes.
    PictureLook Look() const { return m_look; }
    void SetLook(PictureLook look);

    // Called at the start of each paint event: the moment to bring the image up to date.
    std::function<void()> PaintPicture;

    // Something is being dragged over the widget: what it would do with it. The first call of a
    // drag is of its entering, the last one, unless it is dropped, of its leaving.
    std::function<DropEffect(DropData& data, DragState state)> DragOver;
    // It was dropped: whether the widget took it.
    std::function<bool(DropData& data)> Drop;

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void AnswerDrag(QDropEvent& event, DragState state);
    void FitImage();

    QImage m_image;
    qreal m_ratio = 0; // device pixels per unit when the image was made
    QRgb m_backColor = 0xFF000000;
    PictureLook m_look = PictureLook::Sharp;
    std::uint64_t m_generation = 0;
};

} // namespace lantern
