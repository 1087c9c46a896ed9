// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessibleWidget>

namespace lantern {

class ctlSlide;

// A slider as assistive tools know it: named by its tool tip unless the host names it, with its
// range and its value, which they can set.
class SlideAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit SlideAccessible(ctlSlide& slide);

    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    ctlSlide& m_slide;
};

// To those tools, from the slider.
void TellValueChanged(ctlSlide& slide);

} // namespace lantern
