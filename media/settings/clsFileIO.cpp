// SPDX-License-Identifier: GPL-3.0-or-later
#include "clsFileIO.h"

#include "LastErrorText.h"
#include "NativeFile.h"
#include "PathHelpers.h"
#include "PathText.h"
#include "ReplaceFile.h"

#include <QStringConverter>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <span>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace lantern {
namespace {

constexpr QChar kCarriageReturn = u'\r';
constexpr QChar kLineFeed = u'\n';

// The whole file, or nothing if it is none that can be taken for text.
QByteArray ReadBytes(const QString& path)
{
    std::optional<NativeFile> file = NativeFile::OpenForReading(path);
    if (!file || file->Size() < 1 || file->Size() > clsFileIO::kLargestFile)
        return {};
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file->Size()));
    bytes.resize(ReadInPieces(*file, bytes, bytes.size()));
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

// An odd last byte is half a character, and dropped.
QString FromUtf16(QByteArrayView bytes, bool isBigEndian)
{
    QString text;
    text.reserve(bytes.size() / 2);
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2) {
        const auto low = static_cast<unsigned char>(bytes[isBigEndian ? i + 1 : i]);
        const auto high = static_cast<unsigned char>(bytes[isBigEndian ? i : i + 1]);
        text += QChar(static_cast<char16_t>(high << 8 | low));
    }
    return text;
}

QString WithLineEnds(QString text)
{
    if (text.contains(kLineEnd))
        return text;
    const QChar other = text.contains(kLineFeed) ? kLineFeed : kCarriageReturn;
    return text.replace(other, kLineEnd);
}

// How many bytes the lead byte of a sequence says will follow.
std::int32_t AnnouncedBytes(unsigned char lead)
{
    if (lead >= 0xFC)
        return 5;
    if (lead >= 0xF8)
        return 4;
    if (lead >= 0xF0)
        return 3;
    return lead >= 0xE0 ? 2 : 1;
}

bool IsContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// An existing file is found whatever the letter case, as reading finds it.
QByteArray NativeTarget(const QString& path)
{
    const QString existing = ResolveName(path);
    return NativeFromText(existing.isEmpty() ? path : existing);
}

// The descriptor of the file, emptied; -1 on failure. Above 2, since 0 stands for no file.
int CreateEmptied(const QString& path)
{
    if (path.contains(QChar(u'\0'))) {
        errno = EINVAL;
        return -1;
    }
    // Without O_NONBLOCK, opening a FIFO waits for its reader.
    const int descriptor =
        open(NativeTarget(path).constData(),
             O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666);
    if (descriptor < 0 || descriptor > STDERR_FILENO)
        return descriptor;
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(descriptor);
    return moved;
}

} // namespace

FileIOError::FileIOError(int errorNumber, QString errorSource, QString errorDescription)
    : Number(errorNumber), Source(std::move(errorSource)), Description(std::move(errorDescription)),
      m_what((Source + QStringLiteral(": ") + Description).toUtf8())
{
}

clsFileIO::~clsFileIO()
{
    WriteClose();
}

QString clsFileIO::FileRead(const QString& path, bool normaliseLineEnds) const
{
    if (FileCheck(path).isEmpty())
        return {};
    const QByteArray bytes = ReadBytes(path);
    if (bytes.isEmpty())
        return {};
    try {
        QString text = Decoded(bytes);
        return normaliseLineEnds ? WithLineEnds(std::move(text)) : text;
    } catch (const FileIOError& error) {
        throw FileIOError(error.Number, QStringLiteral("FileRead"), error.Description);
    }
}

bool clsFileIO::Kill(const QString& path) const
{
    const QString name = ResolveName(path);
    return !name.isEmpty() && unlink(NativeFromText(name).constData()) == 0;
}

bool clsFileIO::HasByteOrderMark(QByteArrayView bytes, TextEncoding kind)
{
    switch (kind) {
    case TextEncoding::Utf8WithMark:
        return bytes.startsWith("\xEF\xBB\xBF");
    case TextEncoding::Utf16LittleEndian:
        return bytes.startsWith("\xFF\xFE");
    case TextEncoding::Utf16BigEndian:
        return bytes.startsWith("\xFE\xFF");
    default:
        return false;
    }
}

QString clsFileIO::Decoded(QByteArrayView bytes) const
{
    if (HasByteOrderMark(bytes, TextEncoding::Utf16LittleEndian))
        return FromUtf16(bytes.sliced(2), false);
    if (HasByteOrderMark(bytes, TextEncoding::Utf16BigEndian))
        return FromUtf16(bytes.sliced(2), true);
    if (HasByteOrderMark(bytes, TextEncoding::Utf8WithMark))
        return FromUTF8(bytes, 3);
    if (IsUTF8Ex(bytes))
        return FromUTF8(bytes, 0);
    return ToUnicode(bytes);
}

bool clsFileIO::IsUTF8Ex(QByteArrayView bytes) const
{
    return ToUTF8(FromUTF8(bytes, 0)).size() == bytes.size();
}

bool clsFileIO::IsUTF8(QByteArrayView bytes, std::int32_t limit) const
{
    if (limit < 0)
        return false;
    const qsizetype end = std::min<qsizetype>(limit, bytes.size());
    bool found = false;
    qsizetype i = 0;
    while (i < end) {
        const auto lead = static_cast<unsigned char>(bytes[i]);
        if (lead < 0x80 || lead >= 0xFE) {
            ++i;
            continue;
        }
        if (lead < 0xC0)
            return false;
        const std::int32_t announced = AnnouncedBytes(lead);
        // A sequence that the limit cuts off is not held against the bytes.
        if (i + announced >= end)
            break;
        const QByteArrayView following = bytes.sliced(i + 1, announced);
        if (!std::all_of(following.begin(), following.end(), IsContinuation))
            return false;
        i += 1 + announced;
        found = true;
    }
    return found;
}

QString clsFileIO::GetShortPath(const QString& path) const
{
    return path;
}

QByteArray clsFileIO::ToUTF8(const QString& text) const
{
    if (text.isEmpty()) {
        throw FileIOError(EINVAL, QStringLiteral("ToUTF8"), QStringLiteral("WideCharToMultiByte"));
    }
    // QString::toUtf8 would write a question mark for a lone surrogate.
    QString wellFormed = text;
    for (qsizetype i = 0; i < wellFormed.size(); ++i) {
        if (!wellFormed[i].isSurrogate())
            continue;
        const bool isPair = wellFormed[i].isHighSurrogate() && i + 1 < wellFormed.size() &&
                            wellFormed[i + 1].isLowSurrogate();
        if (isPair)
            ++i;
        else
            wellFormed[i] = QChar(QChar::ReplacementCharacter);
    }
    return wellFormed.toUtf8();
}

QString clsFileIO::FromUTF8(QByteArrayView bytes, std::int32_t start) const
{
    if (start < 0 || start >= bytes.size()) {
        throw FileIOError(EINVAL, QStringLiteral("FromUTF8"),
                          QStringLiteral("MultiByteToWideChar"));
    }
    // A mark inside the range is a character like any other.
    QStringDecoder decode(QStringConverter::Utf8, QStringConverter::Flag::Stateless |
                                                      QStringConverter::Flag::ConvertInitialBom);
    return decode(bytes.sliced(start));
}

QString clsFileIO::ToUnicode(QByteArrayView bytes) const
{
    return QString::fromLatin1(bytes);
}

QByteArray clsFileIO::FromUnicode(const QString& text) const
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar character : text)
        bytes += static_cast<char>(character.unicode() & 0xFF);
    return bytes;
}

QString clsFileIO::ReadLoad(const QString& path)
{
    m_lines = TextLines();
    m_linesLeft = 0;
    m_loadedText = FileRead(path, false);
    m_lines = TextLines(m_loadedText);
    if (!m_loadedText.isEmpty())
        m_linesLeft = static_cast<std::int32_t>(m_loadedText.count(kLineEnd)) + 1;
    return m_loadedText;
}

QString clsFileIO::ReadLine()
{
    const std::optional<QStringView> line = m_lines.Next();
    if (!line)
        return {};
    --m_linesLeft;
    return line->toString();
}

QString clsFileIO::WriteOpen(const QString& path, TextEncoding encoding)
{
    WriteClose();
    m_writeHandle = -1;
    if (path.isEmpty())
        return QStringLiteral("Filename is empty");
    const int descriptor = CreateEmptied(path);
    if (descriptor < 0)
        return LastErrorText();
    m_writeHandle = descriptor;
    m_writeEncoding = encoding;
    return {};
}

bool clsFileIO::WriteLine(const QString& text)
{
    return WriteData(text + kLineEnd);
}

bool clsFileIO::WriteData(const QString& text)
{
    return m_writeHandle > 0 && WriteAll(m_writeHandle, Encoded(text));
}

QByteArray clsFileIO::Encoded(const QString& text) const
{
    switch (m_writeEncoding) {
    case TextEncoding::Utf8:
        return ToUTF8(text);
    case TextEncoding::Latin1:
        return FromUnicode(text);
    default:
        return {};
    }
}

void clsFileIO::WriteClose()
{
    if (m_writeHandle > 0) {
        close(m_writeHandle);
        m_writeHandle = 0;
    }
}

QString ReadTextFile(const QString& path)
{
    return clsFileIO().FileRead(path, false);
}

} // namespace lantern
