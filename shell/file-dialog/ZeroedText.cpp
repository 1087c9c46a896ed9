// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZeroedText.h"

#include <algorithm>

namespace lantern {

QString sLeftOfNull(const QString& text)
{
    const qsizetype end = text.indexOf(kNull);
    return end < 0 ? text : text.left(end);
}

QString sLeftOfDoubleNull(const QString& text)
{
    const qsizetype end = text.indexOf(QString(2, kNull));
    return end < 0 ? sLeftOfNull(text) : text.left(end);
}

void ZeroedText::Write(QStringView text)
{
    text.truncate(std::min<qsizetype>(text.size(), m_length));
    m_written = text.toString() + m_written.mid(text.size());
}

char16_t ZeroedText::At(std::int32_t position) const
{
    return position < m_written.size() ? m_written[position].unicode() : u'\0';
}

QString ZeroedText::LeftOfDoubleNull() const
{
    // Two of the zeros behind what was written tell as much as all of them.
    const qsizetype zerosBehind = std::min<qsizetype>(2, m_length - m_written.size());
    return sLeftOfDoubleNull(m_written + QString(zerosBehind, kNull));
}

QString ZeroedText::Left(std::int32_t count) const
{
    const qsizetype length = std::min(count, m_length);
    return m_written.left(length).leftJustified(length, kNull);
}

} // namespace lantern
