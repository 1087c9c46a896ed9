// SPDX-License-Identifier: GPL-3.0-or-later
#include "SystemText.h"

#include "ProgramFonts.h"
#include "SystemColours.h"

namespace lantern {
namespace {

constexpr int kFontPixels = 11;

} // namespace

SystemText::SystemText(QWidget* parent) : QLabel(parent)
{
    setFont(ProgramFont(QStringLiteral("Tahoma"), kFontPixels));
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    setAutoFillBackground(true);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    ApplyColours();
    hide();
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
