// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumSurface.h"

#include "DevicePixels.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <cmath>
#include <utility>

namespace lantern {
namespace {

constexpr QRgb kBackColour = 0xFF000000;
constexpr qreal kUsualFramesPerSecond = 60.0;

QAccessibleInterface* AccessibleFor(const QString&, QObject* object)
{
    auto* surface = dynamic_cast<SpectrumSurface*>(object);
    return surface ? new QAccessibleWidget(surface, QAccessible::Graphic) : nullptr;
}

} // namespace

int FrameMs(qreal framesPerSecond)
{
    const bool makesSense = framesPerSecond >= 20.0 && framesPerSecond <= 500.0;
    return static_cast<int>(
        std::lround(1000.0 / (makesSense ? framesPerSecond : kUsualFramesPerSecond)));
}

SpectrumSurface::SpectrumSurface(QWidget* parent) : QWidget(parent)
{
    QAccessible::installFactory(AccessibleFor); // which takes a second time for none
    setAccessibleName(QStringLiteral("Spectrum"));
    // It covers all of its area: nothing behind it need be drawn for each frame.
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, this, [this] { Advance(); });
}

SpectrumSurface::~SpectrumSurface()
{
    Attach(nullptr);
}

void SpectrumSurface::Attach(SpectrumAnalyser* analyser)
{
    if (m_analyser) {
        Rest();
        m_analyser->Started = nullptr;
    }
    m_analyser = analyser;
    if (m_analyser)
        m_analyser->Started = [this] { Wake(); };
    update();
    Wake();
}

void SpectrumSurface::SetOn(bool on)
{
    m_isOn = on;
    Rest();
    update();
    Wake();
}

void SpectrumSurface::SetFirstColour(ColourValue colour)
{
    m_firstColour = colour;
    m_hasNewColours = true;
    update();
}

void SpectrumSurface::SetSecondColour(ColourValue colour)
{
    m_secondColour = colour;
    m_hasNewColours = true;
    update();
}

void SpectrumSurface::showEvent(QShowEvent*)
{
    Wake();
}

void SpectrumSurface::hideEvent(QHideEvent*)
{
    Rest();
}

// Whatever lies in front of its middle hides it.
bool SpectrumSurface::CanBeSeen() const
{
    const QWidget& top = *window();
    const QWindow* handle = top.windowHandle();
    if (!isVisible() || top.isMinimized() || !handle || !handle->isExposed())
        return false;
    return isWindow() || top.childAt(mapTo(window(), rect().center())) == this;
}

bool SpectrumSurface::HasWork() const
{
    return m_isOn && m_analyser && (m_analyser->IsSounding() || !m_motion.IsAtRest());
}

void SpectrumSurface::Wake()
{
    if (IsRunning() || !HasWork() || !CanBeSeen())
        return;
    m_analyser->Listen(true);
    m_sinceAdvance.start();
    m_timer.start(FrameMs(screen()->refreshRate()));
}

void SpectrumSurface::Rest()
{
    if (IsRunning()) {
        m_timer.stop();
        m_analyser->Listen(false);
    }
    m_motion.Clear();
}

void SpectrumSurface::Advance()
{
    if (!HasWork() || !CanBeSeen()) {
        Rest();
        return;
    }
    FitBars();
    m_analyser->Measure(m_strengths);
    const auto seconds = static_cast<float>(m_sinceAdvance.nsecsElapsed()) * 1e-9F;
    m_sinceAdvance.start();
    if (m_motion.Advance(m_strengths, seconds))
        update();
}

void SpectrumSurface::FitBars()
{
    const qreal ratio = devicePixelRatioF();
    const SpectrumLayout layout = LayOutSpectrum(DeviceSize(size(), ratio), ratio);
    const bool isOther = std::exchange(m_layout, layout) != layout;
    if (isOther || std::exchange(m_hasNewColours, false))
        m_paint =
            SpectrumPaint(layout, ResolveColour(m_firstColour), ResolveColour(m_secondColour));
    m_motion.SetBarCount(layout.count);
    m_strengths.resize(static_cast<std::size_t>(layout.count));
}

// It may have come to be seen just now.
void SpectrumSurface::paintEvent(QPaintEvent*)
{
    Wake();
    FitBars();
    QPainter painter(this);
    painter.fillRect(rect(), kBackColour);
    UseDevicePixels(painter, devicePixelRatioF());
    m_paint.DrawBars(painter, m_motion.Bars());
}

} // namespace lantern
