// SPDX-License-Identifier: GPL-3.0-or-later
#include "SettingText.h"

#include "HexDigit.h"

#include <optional>

namespace lantern {
namespace {

constexpr QChar kMark = u'\uFDD0';
constexpr qsizetype kDigits = 4;

bool BeginsWithPair(QStringView text)
{
    return text.size() > 1 && text[0].isHighSurrogate() && text[1].isLowSurrogate();
}

// The unit that the digits at the start of the text tell.
std::optional<QChar> UnitOfDigits(QStringView text)
{
    if (text.size() < kDigits)
        return std::nullopt;
    int unit = 0;
    for (const QChar digit : text.first(kDigits)) {
        const int value = HexDigitValue(digit.toLatin1());
        if (value < 0)
            return std::nullopt;
        unit = unit * 16 + value;
    }
    return QChar(static_cast<char16_t>(unit));
}

} // namespace

QString WrittenSetting(QStringView text)
{
    QString written;
    written.reserve(text.size());
    while (!text.isEmpty()) {
        const qsizetype taken = BeginsWithPair(text) ? 2 : 1;
        if (taken == 1 && (text[0].isSurrogate() || text[0] == kMark))
            written += kMark + QString::number(text[0].unicode(), 16).toUpper();
        else
            written += text.first(taken);
        text = text.sliced(taken);
    }
    return written;
}

QString ReadSetting(QStringView written)
{
    QString text;
    text.reserve(written.size());
    while (!written.isEmpty()) {
        const QChar first = written[0];
        written = written.sliced(1);
        const auto unit = first == kMark ? UnitOfDigits(written) : std::nullopt;
        text += unit.value_or(first);
        if (unit)
            written = written.sliced(kDigits);
    }
    return text;
}

} // namespace lantern
