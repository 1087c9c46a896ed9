// SPDX-License-Identifier: GPL-3.0-or-later
#include "TellingNumbers.h"

namespace lantern::tool {

QString Grouped(std::int64_t number)
{
    QString text = QString::number(number);
    for (qsizetype i = text.size() - 3; i > 0; i -= 3)
        text.insert(i, u',');
    return text;
}

QString Counted(std::int64_t number, const char* thing)
{
    return Grouped(number) + u' ' + QString::fromLatin1(thing) +
           (number == 1 ? QString() : QStringLiteral("s"));
}

QString TimeText(std::int32_t timeMs)
{
    const std::int32_t seconds = timeMs / 1000;
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QChar(u'0'));
}

QString SpanText(std::int32_t timeMs)
{
    const std::int32_t seconds = (timeMs + 500) / 1000;
    if (seconds < 60)
        return QStringLiteral("%1 s").arg(seconds);
    return QStringLiteral("%1 min %2 s").arg(seconds / 60).arg(seconds % 60);
}

std::int32_t MsOfPacket(PacketIndex packet)
{
    return static_cast<std::int32_t>(std::int64_t{packet} * 1000 / kPacketsPerSecond);
}

std::vector<int> EntriesOf(std::uint16_t bits)
{
    std::vector<int> entries;
    for (int entry = 0; entry < 16; ++entry) {
        if ((bits >> entry & 1) != 0)
            entries.push_back(entry);
    }
    return entries;
}

} // namespace lantern::tool
