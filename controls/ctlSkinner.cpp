// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlSkinner.h"

#include "ControlAccessibility.h"
#include "ProgramFont.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <cmath>
#include <tuple>
#include <utility>

namespace lantern {
namespace {

constexpr QSize kDesignPixels(320, 240);
constexpr ColourValue kCaptionColour = 0x0008ABFF;
constexpr int kCaptionPixels = 11; // 8.25 points

const QString& BackColorKey()
{
    static const QString key = QStringLiteral("BACKCOLOR");
    return key;
}

const QString& CaptionKey()
{
    static const QString key = QStringLiteral("CAPTION");
    return key;
}

// Where the device's pixels begin for one of the equal parts of a length.
int PartEdge(int from, int to, int part, qreal ratio)
{
    return static_cast<int>(std::lround((from + (to - from) * part / 5.0) * ratio));
}

MouseReport In(const Box& box, MouseReport report)
{
    report.x -= static_cast<float>(box.left);
    report.y -= static_cast<float>(box.top);
    return report;
}

} // namespace

ctlSkinner::ctlSkinner(QWidget* parent, Ambient ambient)
    : Control(parent, std::move(ambient)), m_backColor(HostAmbient().backColor),
      m_captionFont(ProgramFont(QStringLiteral("Arial"), kCaptionPixels, true))
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    resize(kDesignPixels);
    RunLayout();
}

void ctlSkinner::Initialize(QWidget* hostWindow, bool sizable, bool movable)
{
    m_hostWindow = hostWindow;
    m_sizable = sizable;
    m_movable = movable;
}

void ctlSkinner::SetBackColor(ColourValue colour)
{
    m_backColor = colour;
    update();
    Report(QStringLiteral("BackColor"));
}

void ctlSkinner::SetCaption(const QString& caption)
{
    const bool changes = m_caption != caption;
    m_caption = caption;
    if (!Report(CaptionKey()))
        return;
    RunLayout();
    if (changes)
        TellNameChanged(*this);
}

void ctlSkinner::Load(const PropertyBag& bag)
{
    m_backColor = bag.Read(BackColorKey(), m_backColor);
    m_caption = bag.Read(CaptionKey(), QString());
    update();
}

void ctlSkinner::Save(PropertyBag& bag) const
{
    bag.Write(BackColorKey(), m_backColor);
    bag.Write(CaptionKey(), m_caption);
}

void ctlSkinner::RunLayout()
{
    m_layout = LayOutSkin(width(), height(), QFontMetrics(m_captionFont).height());
    m_captionIsVisible = !m_caption.isEmpty();
    update();
}

void ctlSkinner::resizeEvent(QResizeEvent*)
{
    RunLayout();
}

void ctlSkinner::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    for (const QRect& rect : event->region())
        painter.fillRect(rect, QColor::fromRgb(ResolveColour(m_backColor)));
    // From back to front, as they overlap where the control is small.
    for (std::size_t i = kSkinElements; i-- > 0;) {
        const std::size_t element = kSkinFrontToBack[i];
        if (element != kSkinCentre)
            PaintElement(painter, element);
    }
    if (!m_captionIsVisible)
        return;
    const Box& box = m_layout.caption;
    painter.setFont(m_captionFont);
    painter.setPen(QColor::fromRgb(ResolveColour(kCaptionColour)));
    painter.drawText(QRect(box.left, box.top, box.Width(), box.Height()), Qt::TextShowMnemonic,
                     m_caption);
}

// In device pixels, so that the frame is crisp where the ratio is a fraction.
void ctlSkinner::PaintElement(QPainter& painter, std::size_t index) const
{
    const Box& box = m_layout.elements[index];
    if (box.Width() <= 0 || box.Height() <= 0)
        return;
    const qreal ratio = devicePixelRatioF();
    painter.save();
    painter.scale(1 / ratio, 1 / ratio);
    for (int row = 0; row < kSkinBitmapSize; ++row) {
        const int top = PartEdge(box.top, box.bottom, row, ratio);
        const int bottom = PartEdge(box.top, box.bottom, row + 1, ratio);
        for (int column = 0; column < kSkinBitmapSize; ++column) {
            const int left = PartEdge(box.left, box.right, column, ratio);
            const int right = PartEdge(box.left, box.right, column + 1, ratio);
            const char letter =
                kSkin[index]
                    .bitmap[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
            painter.fillRect(left, top, right - left, bottom - top,
                             QColor::fromRgb(SkinColour(letter)));
        }
    }
    painter.restore();
}

std::optional<SkinPlace> ctlSkinner::PlaceOf(const QMouseEvent& event) const
{
    if (m_pressed)
        return m_pressed;
    const QPointF position = event.position();
    return PlaceAt(m_layout, m_captionIsVisible, static_cast<int>(std::floor(position.x())),
                   static_cast<int>(std::floor(position.y())));
}

void ctlSkinner::mousePressEvent(QMouseEvent* event)
{
    m_pressIsSpent = false;
    m_pressed = PlaceOf(*event);
    if (m_pressed)
        std::ignore = Raise(MouseDown, In(m_pressed->box, PressReport(*event)));
}

void ctlSkinner::mouseReleaseEvent(QMouseEvent* event)
{
    const std::optional<SkinPlace> place = PlaceOf(*event);
    if (!IsAnyButtonHeld(*event))
        m_pressed.reset();
    if (place)
        std::ignore = Raise(MouseUp, In(place->box, PressReport(*event)));
}

void ctlSkinner::mouseDoubleClickEvent(QMouseEvent* event)
{
    // It stands in the place of the second press.
    m_pressIsSpent = false;
    m_pressed = PlaceOf(*event);
    if (m_pressed && !m_pressed->isCaption)
        std::ignore = Raise(DblClick);
}

void ctlSkinner::mouseMoveEvent(QMouseEvent* event)
{
    if (!IsAnyButtonHeld(*event)) {
        m_pressed.reset(); // the release may have gone to the window system
        m_pressIsSpent = false;
    }
    const std::optional<SkinPlace> place = PlaceOf(*event);
    if (!place)
        return;
    if (place->isCaption) {
        // The title moves even a window that isn't movable, and without a layout afterwards.
        SetPointer(0);
        DragBy(*event, HitCode::Caption, {});
        return;
    }
    if (!MayDrag(place->element)) {
        SetPointer(0);
        return;
    }
    SetPointer(kSkin[place->element].pointer);
    DragBy(*event, kSkin[place->element].hitCode, [this] { RunLayout(); });
}

bool ctlSkinner::MayDrag(std::size_t element) const
{
    return element == kSkinCentre ? m_movable : m_sizable;
}

void ctlSkinner::SetPointer(int number)
{
    if (number == m_pointer)
        return;
    m_pointer = number;
    if (number == 0)
        unsetCursor();
    else
        setCursor(PointerShape(number));
}

void ctlSkinner::DragBy(const QMouseEvent& event, HitCode code, const InteractiveMove::Ended& ended)
{
    if (MoveReport(event).button != LeftButton || m_pressIsSpent || !m_hostWindow)
        return;
    m_pressIsSpent = true;
    m_pressed.reset(); // the operation takes the mouse and its release
    m_move.Start(*m_hostWindow, code, event.globalPosition().toPoint(), ended);
}

void ctlSkinner::keyPressEvent(QKeyEvent* event)
{
    ForwardKey(KeyDown, *event);
}

void ctlSkinner::keyReleaseEvent(QKeyEvent* event)
{
    ForwardKey(KeyUp, *event);
}

Spoken ctlSkinner::Speak() const
{
    Spoken spoken;
    spoken.role = QAccessible::Pane;
    spoken.name = SpokenName(m_caption, toolTip());
    return spoken;
}

} // namespace lantern
