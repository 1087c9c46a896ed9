// SPDX-License-Identifier: GPL-3.0-or-later
#include "SlideAccessible.h"

#include "ControlAccessibility.h"
#include "ctlSlide.h"

namespace lantern {

SlideAccessible::SlideAccessible(ctlSlide& slide)
    : QAccessibleWidget(&slide, QAccessible::Slider), m_slide(slide)
{
}

QAccessible::State SlideAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.disabled = state.disabled || !m_slide.Enabled();
    return state;
}

QString SlideAccessible::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Name)
        return SpokenName(m_slide.accessibleName(), m_slide.toolTip());
    if (kind == QAccessible::Value)
        return QString::number(m_slide.Value());
    return QAccessibleWidget::text(kind);
}

void* SlideAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QVariant SlideAccessible::currentValue() const
{
    return m_slide.Value();
}

void SlideAccessible::setCurrentValue(const QVariant& value)
{
    if (m_slide.Enabled())
        m_slide.ScrollTo(value.toInt());
}

QVariant SlideAccessible::maximumValue() const
{
    return m_slide.Max();
}

QVariant SlideAccessible::minimumValue() const
{
    return m_slide.Min();
}

QVariant SlideAccessible::minimumStepSize() const
{
    return 1;
}

void TellValueChanged(ctlSlide& slide)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(&slide, slide.Value());
    QAccessible::updateAccessibility(&event);
}

} // namespace lantern
