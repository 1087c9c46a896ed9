// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumSurface.h"

#include "DevicePixels.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lantern {
namespace {

constexpr QRgb kBackColour = 0xFF000000;
constexpr qreal kUsualFramesPerSecond = 60.0;

QRgb Mixed(QRgb from, QRgb to, float part)
{
    const auto mixed = [part](int a, int b) {
        return static_cast<int>(
            std::lround(static_cast<float>(a) + part * static_cast<float>(b - a)));
    };
    return qRgb(mixed(qRed(from), qRed(to)), mixed(qGreen(from), qGreen(to)),
                mixed(qBlue(from), qBlue(to)));
}

// From the colour of the foot to that of the body, which it reaches half-way up.
QImage TallestBar(const SpectrumLayout& layout, QRgb foot, QRgb body)
{
    QImage bar(layout.barWidth, layout.height, QImage::Format_RGB32);
    for (int y = 0; y < bar.height(); ++y) {
        const float up = static_cast<float>(bar.height() - y) / static_cast<float>(bar.height());
        const QRgb colour = Mixed(foot, body, std::min(up * 2.0F, 1.0F));
        for (int x = 0; x < bar.width(); ++x)
            bar.setPixel(x, y, colour);
    }
    return bar;
}

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
    if (m_analyser != nullptr) {
        Rest();
        m_analyser->Started = nullptr;
    }
    m_analyser = analyser;
    if (m_analyser != nullptr)
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
    m_tallestBar = {};
    update();
}

void SpectrumSurface::SetSecondColour(ColourValue colour)
{
    m_secondColour = colour;
    m_tallestBar = {};
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
    if (!isVisible() || top.isMinimized() || handle == nullptr || !handle->isExposed())
        return false;
    return isWindow() || top.childAt(mapTo(window(), rect().center())) == this;
}

bool SpectrumSurface::HasWork() const
{
    return m_isOn && m_analyser != nullptr && (m_analyser->IsSounding() || !m_motion.IsAtRest());
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
    if (std::exchange(m_layout, layout) != layout)
        m_tallestBar = {};
    m_motion.SetBarCount(layout.count);
    m_strengths.resize(static_cast<std::size_t>(layout.count));
    if (m_tallestBar.isNull() && layout.count > 0)
        m_tallestBar =
            TallestBar(layout, ResolveColour(m_secondColour), ResolveColour(m_firstColour));
}

void SpectrumSurface::DrawBars(QPainter& painter) const
{
    const QRgb capColour = ResolveColour(m_secondColour);
    int index = 0;
    for (const SpectrumBar& bar : m_motion.Bars()) {
        const QRect body = m_layout.Bar(index, bar.height);
        painter.drawImage(body.topLeft(), m_tallestBar,
                          QRect(0, body.top(), body.width(), body.height()));
        painter.fillRect(m_layout.Cap(index, bar.cap), capColour);
        ++index;
    }
}

// It may have come to be seen just now.
void SpectrumSurface::paintEvent(QPaintEvent*)
{
    Wake();
    FitBars();
    QPainter painter(this);
    painter.fillRect(rect(), kBackColour);
    UseDevicePixels(painter, devicePixelRatioF());
    DrawBars(painter);
}

} // namespace lantern
