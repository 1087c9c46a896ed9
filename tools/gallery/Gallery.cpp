// SPDX-License-Identifier: GPL-3.0-or-later
#include "Gallery.h"

#include "ProgramFont.h"

#include <QLabel>

namespace lantern {
namespace {

constexpr QSize kSize(1110, 690);
constexpr int kMargin = 20;

} // namespace

Gallery::Gallery() : m_skinner(this), m_page(m_skinner), m_lastEvent(new QLabel(&m_skinner))
{
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setWindowTitle(QStringLiteral("Gallery of the controls"));
    setObjectName(QStringLiteral("gallery"));
    m_skinner.setObjectName(QStringLiteral("skin"));
    m_skinner.Initialize(this, true, true);
    m_skinner.SetBackColor(kBlack);
    m_skinner.SetCaption(QStringLiteral("  ") + windowTitle());
    m_skinner.DblClick = m_page.Teller(m_skinner, "DblClick");
    m_page.Told = [this](const QString& line) {
        m_lastEvent->setText(line);
        if (Told)
            Told(line);
    };
    FillShelves();
    m_skinner.MouseUp = [&menu = PlaceMenu(m_page)](const MouseReport& report) {
        if (report.button == RightButton)
            OpenAtPointer(menu);
    };
    resize(kSize);
}

void Gallery::FillShelves()
{
    QPalette palette = m_lastEvent->palette();
    palette.setColor(QPalette::WindowText, Qt::white);
    m_lastEvent->setPalette(palette);
    m_lastEvent->setFont(ProgramFont(QStringLiteral("Arial"), 11));
    m_lastEvent->setAttribute(Qt::WA_TransparentForMouseEvents);

    ShelveFaces(m_page, 30);
    ShelvePictureButtons(m_page, {kMargin, 190});
    ShelveSliders(m_page, {590, 190});
    ShelveTextButtons(m_page, {kMargin, 300});
    ShelveTickers(m_page, {590, 360});
    ShelveSkins(m_page, {590, 420});
    ShelveFrames(m_page, {kMargin, 500});
    ShelveMenus(m_skinner, m_page, {950, 190});
}

QImage Gallery::TakePicture()
{
    m_page.StrikePoses();
    const qreal ratio = devicePixelRatioF();
    QImage picture((QSizeF(size()) * ratio).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    render(&picture);
    return picture;
}

QStringList Gallery::Places() const
{
    QStringList places;
    const auto add = [&places](const QWidget& widget) {
        const QPoint corner = widget.mapToGlobal(QPoint(0, 0));
        places += QStringLiteral("%1 %2 %3 %4 %5")
                      .arg(widget.objectName())
                      .arg(corner.x())
                      .arg(corner.y())
                      .arg(widget.width())
                      .arg(widget.height());
    };
    add(m_skinner);
    for (const Control* control : m_page.Controls())
        add(*control);
    return places;
}

void Gallery::resizeEvent(QResizeEvent*)
{
    m_skinner.resize(size());
    m_lastEvent->setGeometry(kMargin, height() - 26, width() - 2 * kMargin, 14);
}

} // namespace lantern
