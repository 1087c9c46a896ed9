// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace lantern {

inline const QString kLineEnd = QStringLiteral("\r\n");

// Takes a text apart at each carriage return and line feed, in place. Other line ends are part of
// a line, a last line end is followed by an empty line, and empty text has no lines.
class TextLines {
public:
    TextLines() = default;
    explicit TextLines(QStringView text) : m_rest(text), m_isDone(text.isEmpty()) {}

    std::optional<QStringView> Next()
    {
        if (m_isDone)
            return std::nullopt;
        const qsizetype end = m_rest.indexOf(kLineEnd);
        m_isDone = end < 0;
        if (m_isDone)
            return m_rest;
        const QStringView line = m_rest.first(end);
        m_rest = m_rest.sliced(end + kLineEnd.size());
        return line;
    }

private:
    QStringView m_rest;
    bool m_isDone = true;
};

} // namespace lantern
