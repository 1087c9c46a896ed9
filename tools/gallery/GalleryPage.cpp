// SPDX-License-Identifier: GPL-3.0-or-later
#include "GalleryPage.h"

#include "ProgramFont.h"

#include <QCoreApplication>
#include <QLabel>
#include <QMouseEvent>

namespace lantern {
namespace {

constexpr int kFontPixels = 11; // 8.25 points

void SendMouse(QWidget& widget, QEvent::Type type, Qt::MouseButton button)
{
    const QPointF middle = QRectF(widget.rect()).center();
    QMouseEvent event(type, middle, widget.mapToGlobal(middle), button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

} // namespace

QString NameOf(Pose pose)
{
    switch (pose) {
    case Pose::Normal:
        return QStringLiteral("Normal");
    case Pose::Hot:
        return QStringLiteral("Hot");
    case Pose::Pressed:
        return QStringLiteral("Pressed");
    case Pose::Disabled:
        return QStringLiteral("Disabled");
    case Pose::Checked:
        return QStringLiteral("Checked");
    }
    return {};
}

Ambient GalleryPage::GalleryAmbient()
{
    return {.font = ProgramFont(QStringLiteral("Arial"), kFontPixels),
            .backColor = kBlack,
            .foreColor = kWhite,
            .displayName = {}};
}

void GalleryPage::Heading(const QString& text, QPoint place)
{
    PlaceText(text, QRect(place, QSize(400, 14)), true);
}

void GalleryPage::Label(const QString& text, const QRect& place)
{
    PlaceText(text, place, false);
}

void GalleryPage::PlaceText(const QString& text, const QRect& place, bool isHeading)
{
    auto* label = new QLabel(text, &m_ground);
    label->setFont(ProgramFont(QStringLiteral("Arial"), kFontPixels, isHeading));
    label->setGeometry(place);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, isHeading ? QColor(255, 171, 8) : QColor(160, 160, 160));
    label->setPalette(palette);
    label->setAttribute(Qt::WA_TransparentForMouseEvents); // the skin moves the window
}

void GalleryPage::Tell(const QWidget& control, const QString& event) const
{
    if (Told)
        Told(control.objectName() + QLatin1Char(' ') + event);
}

std::function<void()> GalleryPage::Teller(const QWidget& control, const char* event) const
{
    return [this, &control, event] { Tell(control, QString::fromLatin1(event)); };
}

MouseHandler GalleryPage::MouseTeller(const QWidget& control, const char* event) const
{
    return [this, &control, event](const MouseReport& report) {
        Tell(control, QStringLiteral("%1 %2 %3")
                          .arg(QLatin1String(event))
                          .arg(report.button)
                          .arg(report.shift));
    };
}

KeyHandler GalleryPage::KeyTeller(const QWidget& control, const char* event) const
{
    return [this, &control, event](KeyCode& keyCode, ShiftBits shift) {
        Tell(control, QStringLiteral("%1 %2 %3")
                          .arg(QLatin1String(event))
                          .arg(static_cast<int>(keyCode))
                          .arg(shift));
    };
}

void GalleryPage::Prepare(ButtonControl& button, Pose pose)
{
    button.Click = [this, &button] {
        Tell(button, button.IsCheckBox() ? QStringLiteral("Click %1").arg(int(button.Value()))
                                         : QStringLiteral("Click"));
    };
    button.MouseDown = MouseTeller(button, "MouseDown");
    button.MouseUp = MouseTeller(button, "MouseUp");
    button.MouseOver = Teller(button, "MouseOver");
    button.MouseOut = Teller(button, "MouseOut");
    button.KeyDown = KeyTeller(button, "KeyDown");
    button.KeyUp = KeyTeller(button, "KeyUp");
    button.KeyPress = [this, &button](std::int16_t character) {
        Tell(button, QStringLiteral("KeyPress %1").arg(character));
    };
    m_poses.emplace_back(&button, pose);
}

void GalleryPage::StrikePoses()
{
    const std::function<void(const QString&)> told = std::exchange(Told, nullptr);
    for (const auto& [button, pose] : m_poses) {
        if (pose == Pose::Hot)
            SendMouse(*button, QEvent::MouseMove, Qt::NoButton);
        else if (pose == Pose::Pressed)
            SendMouse(*button, QEvent::MouseButtonPress, Qt::LeftButton);
    }
    Told = told;
}

} // namespace lantern
