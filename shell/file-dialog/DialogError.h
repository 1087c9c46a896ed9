// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <exception>

namespace lantern {

enum class DialogKind { Open, Save };

// Codes that the dialog itself tells, as far as the program acts on them.
inline constexpr std::int32_t kCancelled = 0;
inline constexpr std::int32_t kBufferTooSmall = 12291;

// A file dialog that failed, or was cancelled where that counts as an error: the error's number,
// where it was raised, and what failed there.
class DialogError : public std::exception {
public:
    DialogError(std::int32_t code, DialogKind kind);
    const char* what() const noexcept override { return m_what.constData(); }

    const std::int32_t Number;
    const QString Source;
    const QString Description;

private:
    QByteArray m_what;
};

} // namespace lantern
