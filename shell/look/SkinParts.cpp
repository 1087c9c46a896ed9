// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinParts.h"

#include "PlayerLook.h"
#include "SystemColours.h"

#include <algorithm>

namespace lantern {

const Ambient& SkinAmbient()
{
    static const Ambient ambient = {
        .font = PlayerFont(), .backColor = kBlack, .foreColor = kAccentColour, .displayName = {}};
    return ambient;
}

WhiteLabel::WhiteLabel(QWidget* parent) : QLabel(parent)
{
    QPalette colours;
    colours.setColor(QPalette::Window, QColor::fromRgb(ResolveColour(kBlack)));
    colours.setColor(QPalette::WindowText, QColor::fromRgb(ResolveColour(kWhite)));
    setPalette(colours);
    setAutoFillBackground(true);
    setFont(SkinAmbient().font);
    setTextFormat(Qt::PlainText);
}

void WhiteLabel::FitToText()
{
    const int missing = std::max(0, sizeHint().width() - width());
    const bool isRight = alignment().testFlag(Qt::AlignRight);
    setGeometry(geometry().adjusted(isRight ? -missing : 0, 0, isRight ? 0 : missing, 0));
}

} // namespace lantern
