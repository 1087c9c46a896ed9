// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OwnerDrawn.h"
#include "PropertyBag.h"
#include "SlideScale.h"

#include <QBasicTimer>

#include <array>

namespace lantern {

// A horizontal slider: a track through the middle, filled up to the knob, and a mark at its centre
// if wanted. A press or drag of the mouse moves it; keys are only told to the host.
//
// A slider that is not Enabled is no disabled widget: a press on it counts as held as soon as it
// becomes Enabled.
class ctlSlide : public OwnerDrawn {
public:
    explicit ctlSlide(QWidget* parent, Ambient ambient = {});

    std::function<void()> Change; // Value was set to another
    std::function<void()> Scroll; // the mouse was somewhere in a drag; after Change
    KeyHandler KeyDown;
    KeyHandler KeyUp;

    std::int32_t Min() const { return m_min; }
    void SetMin(std::int32_t min); // leaves Value as it is, as SetMax does
    std::int32_t Max() const { return m_max; }
    void SetMax(std::int32_t max);
    std::int32_t Value() const { return m_value; }
    void SetValue(std::int32_t value);
    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool enabled);
    ColourValue SliderColor() const { return m_colours[Filled]; }
    void SetSliderColor(ColourValue colour);
    ColourValue SliderBack() const { return m_colours[Track]; }
    void SetSliderBack(ColourValue colour);
    ColourValue SliderButton() const { return m_colours[Knob]; }
    void SetSliderButton(ColourValue colour);
    ColourValue BackColor() const { return m_colours[Back]; }
    void SetBackColor(ColourValue colour);
    bool CenterLine() const { return m_centerLine; }
    void SetCenterLine(bool centerLine);
    ColourValue CenterLineColor() const { return m_colours[Centre]; }
    void SetCenterLineColor(ColourValue colour);

    // The three as they are: no clamp, no report, no event.
    void SetValues(std::int32_t min, std::int32_t max, std::int32_t value);
    // Ends a drag: the mouse does nothing until it is pressed again.
    void CancelScroll() { m_dragging = false; }

    bool HasFocus() const { return m_hasFocus; }

    // Neither raises an event.
    void Load(const PropertyBag& bag);
    void Save(PropertyBag& bag) const;

    // What dragging the knob to the value does, for those who don't use the mouse.
    void ScrollTo(std::int32_t value);

    // How far a value that moves on by itself gets in a second. Assistive tools are told of such a
    // movement once a second, and of any other change at once.
    void SetGlide(std::int32_t perSecond) { m_glide = perSecond; }

    Spoken Speak() const override;
    void TakeValue(std::int32_t value) override;

protected:
    void SurfaceResized() override { Redraw(); }
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    enum Part : std::size_t { Filled, Track, Knob, Centre, Back, kParts };

    // Stores, reports, redraws. False if the host destroyed the slider on the report.
    template <typename Field>
    bool Set(Field& field, const Field& value, const QString& key);
    // Calls each with a key, a field and what a missing key means, in the order of the bag.
    template <typename Self, typename Each>
    static void Visit(Self& self, const Each& each);

    SlideScale Scale() const;
    int DrawnKnob() const; // its left edge; outside the slider if there is none
    QRgb Colour(Part part) const { return ResolveColour(m_colours[part]); }
    void Take(std::int32_t value, bool isByUser);
    bool Glides(std::int32_t from, std::int32_t to) const;
    void TellValue();
    void Redraw();
    void DrawMovable(const SlideScale& scale, int trackTop, int trackBottom);
    void FollowMouse(const MouseReport& report);
    void TellKey(const KeyHandler& handler, QKeyEvent& event);
    void ChangeFocus(bool hasFocus);

    std::int32_t m_min = 0;
    std::int32_t m_max = 100;
    std::int32_t m_value = 0;
    bool m_enabled = true;
    std::array<ColourValue, kParts> m_colours{};
    bool m_centerLine = false;
    bool m_hasFocus = false;
    bool m_dragging = false;
    std::int32_t m_glide = 0;
    QBasicTimer m_restTimer; // runs for a second after a value was told
    bool m_isNews = false;   // a value that was not
};

} // namespace lantern
