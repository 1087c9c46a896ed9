// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlFrame.h"

#include "ControlAccessibility.h"
#include "ProgramFont.h"
#include "ScreenMetrics.h"

#include <QMouseEvent>

#include <algorithm>
#include <tuple>
#include <utility>

namespace lantern {
namespace {

constexpr int kFontPixels = 11; // 8.25 points
constexpr TwipSize kBuiltInSize = {2805, 1635};

QPoint WithinRect(QPoint point, const QRect& rect)
{
    return {std::clamp(point.x(), rect.left(), std::max(rect.left(), rect.right())),
            std::clamp(point.y(), rect.top(), std::max(rect.top(), rect.bottom()))};
}

} // namespace

ctlFrame::ctlFrame(QWidget* parent, Ambient ambient)
    : OwnerDrawn(parent, std::move(ambient)),
      m_font(ProgramFont(QStringLiteral("Arial"), kFontPixels, true)),
      m_ambientBackColor(HostAmbient().backColor)
{
    Load({});
    m_look.caption = HostAmbient().displayName;
    resize(PixelsOf(kBuiltInSize, ScreenTwips()));
}

template <typename Self, typename Each>
void ctlFrame::Visit(Self& self, const Each& each)
{
    each(QStringLiteral("FRAMEBORDER"), self.m_look.border, std::int32_t{1});
    each(QStringLiteral("FRAMEDIVIDER"), self.m_look.isDivider, false);
    each(QStringLiteral("FRAMEALIGN"), self.m_look.align, std::int32_t{AlignCaptionLeft});
    each(QStringLiteral("CAPTION"), self.m_look.caption, self.objectName());
    each(QStringLiteral("BACKCOLOR"), self.m_backColor, SystemReference(SystemColour::ButtonFace));
    each(QStringLiteral("FORECOLOR"), self.m_foreColor, SystemReference(SystemColour::ButtonText));
}

void ctlFrame::Load(const PropertyBag& bag)
{
    Visit(*this, ReadFrom{bag});
    m_font = bag.Read(QStringLiteral("FRAMEFONT"), m_font);
    Draw();
}

void ctlFrame::Save(PropertyBag& bag) const
{
    Visit(*this, WriteChangedTo{bag});
    // Without it, a frame would keep the font that it has when it is loaded.
    bag.Write(QStringLiteral("FRAMEFONT"), m_font);
}

template <typename Field>
bool ctlFrame::Set(Field& field, const Field& value, const QString& key)
{
    const bool changes = !(field == value);
    field = value;
    // The same value again would draw what is there already, unless the host adds to it.
    if (!Report(key))
        return false;
    if (changes || Paint)
        Draw();
    return true;
}

void ctlFrame::SetFrameBorder(std::int32_t border)
{
    Set(m_look.border, border, QStringLiteral("FRAMEBORDER"));
}

void ctlFrame::SetFrameDivider(bool divider)
{
    Set(m_look.isDivider, divider, QStringLiteral("FRAMEDIVIDER"));
}

void ctlFrame::SetFrameAlign(std::int32_t align)
{
    Set(m_look.align, align, QStringLiteral("FRAMEALIGN"));
}

void ctlFrame::SetCaption(const QString& caption)
{
    const bool changes = caption != m_look.caption;
    if (Set(m_look.caption, caption, QStringLiteral("CAPTION")) && changes)
        TellNameChanged(*this);
}

void ctlFrame::SetBackColor(ColourValue colour)
{
    Set(m_backColor, colour, QStringLiteral("BACKCOLOR"));
}

void ctlFrame::SetForeColor(ColourValue colour)
{
    Set(m_foreColor, colour, QStringLiteral("FORECOLOR"));
}

void ctlFrame::SetFrameFont(const QFont& font)
{
    Set(m_font, font, QStringLiteral("FRAMEFONT"));
}

void ctlFrame::Draw()
{
    ShowSurface();
    m_isFresh = true;
    DrawSurface();
}

void ctlFrame::DrawSurface()
{
    const FrameLayout layout =
        LayoutFrame(m_look, size(), ScreenTwips(), [this](const QString& text) {
            return RetainedSurface::PrintedSize(text, m_font);
        });
    const QRgb back = ResolveColour(m_backColor);
    Surface().Clear(back);
    Surface().Fill(layout.titleBar, ResolveColour(SystemColour::ActiveTitleBar));
    Surface().DrawEdge(layout.edge, layout.edgeLines, layout.edgeSides);
    const QPoint textPlace(layout.textLeft, layout.textTop);
    if (m_look.border == kTitleBarBorder) {
        Surface().Print(layout.text, textPlace, m_font, ResolveColour(SystemColour::TitleBarText));
    } else {
        Surface().PrintOpaque(layout.text, textPlace, m_font, ResolveColour(m_foreColor), back);
    }
    RaisePaint();
}

void ctlFrame::RaisePaint()
{
    if (m_isInPaint)
        return;
    m_isInPaint = true;
    if (Raise(Paint))
        m_isInPaint = false;
}

void ctlFrame::AmbientChanged()
{
    const ColourValue before = std::exchange(m_ambientBackColor, HostAmbient().backColor);
    if (m_ambientBackColor != before)
        Draw();
}

void ctlFrame::paintEvent(QPaintEvent* event)
{
    // A repaint that no change of the frame asked for: the window system did, or the host. What the
    // host changes in Paint asks for one more, which finds it drawn.
    if (!std::exchange(m_isFresh, false))
        DrawSurface();
    OwnerDrawn::paintEvent(event);
}

void ctlFrame::mousePressEvent(QMouseEvent* event)
{
    const MouseReport report = PressReport(*event);
    if (m_look.border == kTitleBarBorder && (report.button & LeftButton) != 0) {
        m_isMoving = true;
        m_grip = event->position().toPoint();
        return;
    }
    m_isPressed = true;
    std::ignore = Raise(MouseDown, InTwips(report));
}

void ctlFrame::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_isMoving)
        return;
    QPoint pointer = mapToParent(event->position().toPoint());
    if (!isWindow())
        pointer = WithinRect(pointer, parentWidget()->rect());
    move(pointer - m_grip);
}

void ctlFrame::mouseReleaseEvent(QMouseEvent* event)
{
    const MouseReport report = PressReport(*event);
    // As the end of a move, the release belongs to the move.
    if (report.button == LeftButton && std::exchange(m_isMoving, false))
        return;
    // Any button clicks, once none is held any more.
    const bool isOver = rect().contains(event->position().toPoint());
    const bool isClick = !IsAnyButtonHeld(*event) && std::exchange(m_isPressed, false) && isOver;
    if (Raise(MouseUp, InTwips(report)) && isClick)
        std::ignore = Raise(Click);
}

// Frames show an ampersand as it is, so it is read as it is.
Spoken ctlFrame::Speak() const
{
    Spoken spoken;
    spoken.role = QAccessible::Grouping;
    spoken.name = m_look.caption.trimmed();
    return spoken;
}

} // namespace lantern
