// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QChar>
#include <QString>
#include <QStringView>

#include <cstdint>

namespace lantern {

// What ends a text in a buffer, and each entry of a list.
inline constexpr QChar kNull = u'\0';

// The text up to its first zero character; all of it if there is none.
QString sLeftOfNull(const QString& text);
// The text up to its first two zero characters in a row; without any, as sLeftOfNull.
QString sLeftOfDoubleNull(const QString& text);

// A buffer of a fixed number of characters, which are zero until they are written. Only what was
// written takes memory, so that a buffer can be as large as its owner asks for.
class ZeroedText {
public:
    ZeroedText() = default;
    explicit ZeroedText(std::int32_t length) : m_length(length) {}

    std::int32_t Length() const { return m_length; }
    // Overwrites the start of the buffer; what is behind stays. What does not fit is dropped.
    void Write(QStringView text);
    char16_t At(std::int32_t position) const; // zero beyond the buffer, too

    QString LeftOfNull() const { return sLeftOfNull(m_written); }
    QString LeftOfDoubleNull() const;
    // From a position to the first zero character from there on.
    QString MidToNull(std::int32_t position) const { return sLeftOfNull(m_written.mid(position)); }
    QString Left(std::int32_t count) const;

private:
    std::int32_t m_length = 0;
    QString m_written;
};

} // namespace lantern
