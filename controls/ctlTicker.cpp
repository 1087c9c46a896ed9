// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlTicker.h"

#include "ControlAccessibility.h"

#include <QMouseEvent>

#include <tuple>

namespace lantern {
namespace {

constexpr ColourValue kBack = DirectColour(0, 0, 0);

PictureReference Art(const QString& name, int width)
{
    return Picture::FromFile(QStringLiteral(":/ticker/%1.svg").arg(name),
                             QSize(width, kTickerHeight));
}

} // namespace

ctlTicker::ctlTicker(QWidget* parent, Ambient ambient)
    : OwnerDrawn(parent, std::move(ambient)), m_colon(Art(QStringLiteral("colon"), kColonWidth)),
      m_idle(Art(QStringLiteral("title"), kTickerWidth)),
      m_loading(Art(QStringLiteral("loading"), kTickerWidth))
{
    for (std::size_t digit = 0; digit < m_num.size(); ++digit)
        m_num[digit] = Art(QString::number(digit), kDigitWidth);
    resize(kTickerWidth, kTickerHeight);
    SetTicker(0, false);
}

void ctlTicker::SetTicker(std::int32_t& seconds, bool state)
{
    if (state == m_lastState && seconds == m_lastSeconds)
        return;
    const TickerCover cover = CoverFor(seconds, state);
    bool isNews = SetCover(cover);
    if (cover == TickerCover::None) {
        const TickerTime time = TimeOf(seconds);
        // What is kept has lost its minutes: from the first minute on no call is found to be like
        // the last one, and it is up to the digits that nothing is drawn in vain.
        seconds = time.seconds;
        isNews |= ChangeDigits(time.digits);
    }
    m_lastSeconds = seconds;
    m_lastState = state;
    if (isNews)
        TellDescriptionChanged(*this);
}

bool ctlTicker::ChangeDigits(const TickerDigits& digits)
{
    bool changes = false;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        // There is no glyph for what is no digit: its place stays as it is.
        if (digits[i] == m_shown[i] || digits[i] < 0)
            continue;
        m_shown[i] = digits[i];
        DrawDigit(i);
        update(kDigitLefts[i], 0, kDigitWidth, kTickerHeight);
        changes = true;
    }
    return changes;
}

bool ctlTicker::SetCover(TickerCover cover)
{
    if (cover == m_cover)
        return false;
    m_cover = cover;
    DrawAll();
    return true;
}

void ctlTicker::DrawAll()
{
    Surface().Clear(ResolveColour(kBack));
    for (std::size_t i = 0; i < m_shown.size(); ++i)
        DrawDigit(i);
    Surface().DrawPicture(*m_colon, kColonLeft, 0);
    if (m_cover != TickerCover::None)
        Surface().DrawPicture(m_cover == TickerCover::Idle ? *m_idle : *m_loading, 0, 0);
    ShowSurface();
}

void ctlTicker::DrawDigit(std::size_t index)
{
    const auto digit = static_cast<std::size_t>(m_shown[index]);
    Surface().DrawPicture(*m_num[digit], kDigitLefts[index], 0);
}

void ctlTicker::mousePressEvent(QMouseEvent* event)
{
    std::ignore = Raise(MouseDown, InTwips(PressReport(*event)));
}

void ctlTicker::mouseReleaseEvent(QMouseEvent* event)
{
    std::ignore = Raise(MouseUp, InTwips(PressReport(*event)));
}

// The time is told as the description, too: the bus that most tools listen on carries a value in
// words for no role.
Spoken ctlTicker::Speak() const
{
    Spoken spoken;
    spoken.role = QAccessible::StaticText;
    spoken.name = toolTip();
    spoken.value = ShownText();
    spoken.description = spoken.value;
    return spoken;
}

} // namespace lantern
