// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlSlide.h"

#include "ControlAccessibility.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <tuple>
#include <utility>

namespace lantern {
namespace {

constexpr int kTrackHalf = 2; // pixels above and below the middle
constexpr int kCentreHalf = 1;
constexpr int kRestMs = 1000;

} // namespace

ctlSlide::ctlSlide(QWidget* parent, Ambient ambient) : OwnerDrawn(parent, std::move(ambient))
{
    setFocusPolicy(Qt::StrongFocus);
    Load({});
    resize(320, 61);
}

template <typename Self, typename Each>
void ctlSlide::Visit(Self& self, const Each& each)
{
    each(QStringLiteral("MIN"), self.m_min, std::int32_t{0});
    each(QStringLiteral("MAX"), self.m_max, std::int32_t{100});
    each(QStringLiteral("VALUE"), self.m_value, std::int32_t{0});
    each(QStringLiteral("ENABLED"), self.m_enabled, true);
    each(QStringLiteral("SLIDERCOLOR"), self.m_colours[Filled], DirectColour(255, 0, 0));
    each(QStringLiteral("SLIDERBACK"), self.m_colours[Track], DirectColour(0, 0, 255));
    each(QStringLiteral("SLIDERBUTTON"), self.m_colours[Knob], DirectColour(255, 255, 255));
    each(QStringLiteral("BACKCOLOR"), self.m_colours[Back], self.HostAmbient().backColor);
    each(QStringLiteral("CENTERLINE"), self.m_centerLine, false);
    each(QStringLiteral("CENTERLINECOLOR"), self.m_colours[Centre], DirectColour(0, 255, 0));
}

void ctlSlide::Load(const PropertyBag& bag)
{
    Visit(*this, ReadFrom{bag});
    Redraw();
}

void ctlSlide::Save(PropertyBag& bag) const
{
    Visit(*this, WriteChangedTo{bag});
}

template <typename Field>
bool ctlSlide::Set(Field& field, const Field& value, const QString& key)
{
    const bool changes = field != value;
    field = value;
    if (!Report(key))
        return false;
    if (changes)
        Redraw();
    return true;
}

void ctlSlide::SetMin(std::int32_t min)
{
    Set(m_min, min, QStringLiteral("MIN"));
}

void ctlSlide::SetMax(std::int32_t max)
{
    Set(m_max, max, QStringLiteral("MAX"));
}

void ctlSlide::SetEnabled(bool enabled)
{
    const bool changes = m_enabled != enabled;
    if (Set(m_enabled, enabled, QStringLiteral("ENABLED")) && changes)
        TellEnabledChanged(*this);
}

void ctlSlide::SetSliderColor(ColourValue colour)
{
    Set(m_colours[Filled], colour, QStringLiteral("SLIDERCOLOR"));
}

void ctlSlide::SetSliderBack(ColourValue colour)
{
    Set(m_colours[Track], colour, QStringLiteral("SLIDERBACK"));
}

void ctlSlide::SetSliderButton(ColourValue colour)
{
    Set(m_colours[Knob], colour, QStringLiteral("SLIDERBUTTON"));
}

void ctlSlide::SetBackColor(ColourValue colour)
{
    Set(m_colours[Back], colour, QStringLiteral("BACKCOLOR"));
}

void ctlSlide::SetCenterLine(bool centerLine)
{
    Set(m_centerLine, centerLine, QStringLiteral("CENTERLINE"));
}

void ctlSlide::SetCenterLineColor(ColourValue colour)
{
    Set(m_colours[Centre], colour, QStringLiteral("CENTERLINECOLOR"));
}

void ctlSlide::SetValue(std::int32_t value)
{
    Take(value, false);
}

void ctlSlide::Take(std::int32_t value, bool isByUser)
{
    const std::int32_t taken = Scale().Clamp(value);
    if (taken == m_value)
        return;
    const int knobBefore = DrawnKnob();
    const std::int32_t before = std::exchange(m_value, taken);
    if (!Report(QStringLiteral("VALUE")))
        return;
    // A track moves on a hundred times a second, its knob by a pixel once in a while: what would
    // be drawn again is the same to the pixel.
    if (DrawnKnob() != knobBefore)
        Redraw();
    if (!isByUser && Glides(before, m_value) && m_restTimer.isActive())
        m_isNews = true;
    else
        TellValue();
    std::ignore = Raise(Change);
}

void ctlSlide::SetValues(std::int32_t min, std::int32_t max, std::int32_t value)
{
    m_min = min;
    m_max = max;
    m_value = value;
    Redraw();
    TellValue();
}

// Any way forward that is no longer than that of a second; a jump is longer or goes back.
bool ctlSlide::Glides(std::int32_t from, std::int32_t to) const
{
    return to > from && static_cast<std::int64_t>(to) - from <= m_glide;
}

void ctlSlide::TellValue()
{
    m_isNews = false;
    TellValueChanged(*this, m_value);
    if (m_glide > 0)
        m_restTimer.start(kRestMs, Qt::PreciseTimer, this);
}

void ctlSlide::timerEvent(QTimerEvent*)
{
    if (m_isNews)
        TellValue();
    else
        m_restTimer.stop();
}

void ctlSlide::ScrollTo(std::int32_t value)
{
    const QPointer<QWidget> control(this);
    Take(value, true);
    if (control)
        std::ignore = Raise(Scroll);
}

SlideScale ctlSlide::Scale() const
{
    return {m_min, m_max, width()};
}

int ctlSlide::DrawnKnob() const
{
    return m_enabled && Scale().Range() > 0 ? Scale().KnobLeft(m_value) : -kKnobWidth;
}

void ctlSlide::Redraw()
{
    const int middleX = width() / 2;
    const int middleY = height() / 2;
    const Box track = {0, middleY - kTrackHalf, width(), middleY + kTrackHalf};
    Surface().Clear(Colour(Back));
    if (m_centerLine) {
        Surface().Fill({middleX - kCentreHalf, 0, middleX + kCentreHalf, height()}, Colour(Centre));
    }
    Surface().Fill(track, Colour(Track));
    if (m_enabled && Scale().Range() > 0)
        DrawMovable(Scale(), track.top, track.bottom);
    ShowSurface();
}

void ctlSlide::DrawMovable(const SlideScale& scale, int trackTop, int trackBottom)
{
    const int left = scale.KnobLeft(m_value);
    Surface().Fill({0, trackTop, left, trackBottom}, Colour(Filled));
    Surface().Fill({left, 0, left + kKnobWidth, height()}, Colour(Knob));
}

void ctlSlide::FollowMouse(const MouseReport& report)
{
    if (m_enabled && m_dragging && report.button == LeftButton)
        ScrollTo(Scale().ValueAt(report.x));
}

void ctlSlide::mousePressEvent(QMouseEvent* event)
{
    m_dragging = true;
    FollowMouse(PressReport(*event));
}

void ctlSlide::mouseMoveEvent(QMouseEvent* event)
{
    FollowMouse(MoveReport(*event));
}

void ctlSlide::mouseReleaseEvent(QMouseEvent*)
{
    m_dragging = false;
}

void ctlSlide::TellKey(const KeyHandler& handler, QKeyEvent& event)
{
    event.ignore();
    if (m_enabled)
        ForwardKey(handler, event);
}

void ctlSlide::keyPressEvent(QKeyEvent* event)
{
    TellKey(KeyDown, *event);
}

void ctlSlide::keyReleaseEvent(QKeyEvent* event)
{
    TellKey(KeyUp, *event);
}

void ctlSlide::ChangeFocus(bool hasFocus)
{
    m_hasFocus = hasFocus;
    Redraw();
}

void ctlSlide::focusInEvent(QFocusEvent*)
{
    ChangeFocus(true);
}

void ctlSlide::focusOutEvent(QFocusEvent*)
{
    ChangeFocus(false);
}

Spoken ctlSlide::Speak() const
{
    constexpr std::int32_t kSteps = 100;
    Spoken spoken;
    spoken.role = QAccessible::Slider;
    spoken.name = toolTip();
    spoken.isDisabled = !m_enabled;
    spoken.range = {.minimum = m_min,
                    .maximum = m_max,
                    .value = m_value,
                    .step = std::max(Scale().Range() / kSteps, 1)};
    return spoken;
}

void ctlSlide::TakeValue(std::int32_t value)
{
    if (m_enabled)
        ScrollTo(value);
}

} // namespace lantern
