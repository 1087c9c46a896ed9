// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TextLines.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <exception>

namespace lantern {

// How text stands in a file. The numbers are those of the kinds of byte order mark, too.
enum class TextEncoding : std::int16_t {
    Latin1 = 0,            // one byte for each 16-bit character, its low byte; only written
    Utf8WithMark = 1,      // only read
    Utf8 = 2,              // without a mark; only written
    Utf16LittleEndian = 3, // with a mark; only read
    Utf16BigEndian = 4,    // with a mark; only read
};

// A conversion that failed: the error's number, where it was raised, and what failed there.
class FileIOError : public std::exception {
public:
    FileIOError(int errorNumber, QString errorSource, QString errorDescription);
    const char* what() const noexcept override { return m_what.constData(); }

    const int Number;
    const QString Source;
    const QString Description;

private:
    QByteArray m_what;
};

// Reads and writes text files, and converts between text and bytes. Text is UTF-16; a path may
// hold any bytes. One file at most is open for writing, and an object takes it along when it goes.
// Nothing here blocks: what is not a regular file reads as empty.
class clsFileIO {
public:
    // A file above this size is no text file and reads as empty.
    static constexpr std::int64_t kLargestFile = std::int64_t{64} << 20;

    clsFileIO() = default;
    ~clsFileIO();
    clsFileIO(const clsFileIO&) = delete;
    clsFileIO& operator=(const clsFileIO&) = delete;

    // The file's text; empty if there is no such file. Without any carriage return and line feed
    // in it, line ends of one other kind can be made so. Throws FileIOError for a file that holds
    // nothing but the mark of UTF-8.
    QString FileRead(const QString& path, bool normaliseLineEnds) const;
    bool Kill(const QString& path) const;

    // Whether the bytes survive the way to text and back without a change of length.
    bool IsUTF8Ex(QByteArrayView bytes) const;
    // Whether the first bytes, limit of them at most, hold at least one well-formed sequence of
    // several bytes and no malformed one.
    bool IsUTF8(QByteArrayView bytes, std::int32_t limit) const;
    QString GetShortPath(const QString& path) const; // there are no short paths here: as it is

    // Both throw FileIOError for nothing to convert. What can't be decoded or encoded becomes
    // U+FFFD, each byte on its own.
    QByteArray ToUTF8(const QString& text) const;
    QString FromUTF8(QByteArrayView bytes, std::int32_t start) const;
    QString ToUnicode(QByteArrayView bytes) const;
    QByteArray FromUnicode(const QString& text) const;

    // ReadLoad gives the whole text as FileRead does; its lines are then taken one by one.
    QString ReadLoad(const QString& path);
    QString ReadLine(); // empty if no line is left
    std::int32_t ReadCount() const { return m_linesLeft; }

    // Empties or makes the file. The result is a message, empty on success.
    QString WriteOpen(const QString& path, TextEncoding encoding);
    // Append to the file; without an open file they do nothing. False if the system did not take
    // all of it; LastErrorText then tells why.
    bool WriteLine(const QString& text);
    bool WriteData(const QString& text);
    void WriteClose();

private:
    static bool HasByteOrderMark(QByteArrayView bytes, TextEncoding kind);
    QString Decoded(QByteArrayView bytes) const;
    QByteArray Encoded(const QString& text) const;

    int m_writeHandle = 0; // 0: none; -1: the last WriteOpen failed
    TextEncoding m_writeEncoding = TextEncoding::Latin1;
    QString m_loadedText;
    TextLines m_lines; // of the loaded text, not yet taken
    std::int32_t m_linesLeft = 0;
};

// The file's text with its line ends as they are.
QString ReadTextFile(const QString& path);

} // namespace lantern
