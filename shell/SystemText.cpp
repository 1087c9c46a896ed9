// SPDX-License-Identifier: GPL-3.0-or-later
#include "SystemText.h"

#include "ProgramFonts.h"
#include "SystemColours.h"

#include <QPaintEvent>
#include <QPainter>

namespace lantern {
namespace {

constexpr int kFontPixels = 11;

} // namespace

SystemText::SystemText(QWidget* parent) : QLabel(parent)
{
    setFont(ProgramFont(QStringLiteral("Tahoma"), kFontPixels));
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    ApplyColours();
    hide();
}

// The background is filled here, so that the toolkit doesn't take the label for opaque and leave
// it out when the window behind it is painted.
void SystemText::paintEvent(QPaintEvent* event)
{
    QPainter(this).fillRect(event->rect(), palette().color(QPalette::Window));
    QLabel::paintEvent(event);
}

void SystemText::SetForeColor(ColourValue colour)
{
    m_foreColor = colour;
    ApplyColours();
}

void SystemText::SetBackColor(ColourValue colour)
{
    m_backColor = colour;
    ApplyColours();
}

void SystemText::ApplyColours()
{
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, QColor::fromRgb(ResolveColour(m_foreColor)));
    colours.setColor(QPalette::Window, QColor::fromRgb(ResolveColour(m_backColor)));
    setPalette(colours);
}

} // namespace lantern
