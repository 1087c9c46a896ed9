// SPDX-License-Identifier: GPL-3.0-or-later
#include "PathText.h"

#include <QStringConverter>

namespace lantern {
namespace {

constexpr char16_t kFirstByteAsText = 0xDC80;
constexpr char16_t kLastByteAsText = 0xDCFF;

// The length of the well-formed UTF-8 sequence at the start of the bytes; 0 if there is none.
// The ranges are those of table 3-7 of the Unicode standard.
qsizetype SequenceLength(QByteArrayView bytes)
{
    const auto at = [&](qsizetype i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = at(0);
    if (lead < 0x80)
        return 1;

    qsizetype length = 0;
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        lowest = lead == 0xE0 ? 0xA0 : 0x80;
        highest = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        lowest = lead == 0xF0 ? 0x90 : 0x80;
        highest = lead == 0xF4 ? 0x8F : 0xBF;
    }
    if (length == 0 || bytes.size() < length || at(1) < lowest || at(1) > highest)
        return 0;
    for (qsizetype i = 2; i < length; ++i) {
        if ((at(i) & 0xC0) != 0x80)
            return 0;
    }
    return length;
}

bool IsSurrogatePair(QStringView text, qsizetype position)
{
    return position + 1 < text.size() && text[position].isHighSurrogate() &&
           text[position + 1].isLowSurrogate();
}

// Qt's changes of letter case turn a lone surrogate into U+FFFD, and would make all names with
// such bytes the same. So only the stretches between them are changed.
template <typename Change>
QString ChangedBetweenLoneSurrogates(const QString& text, Change change)
{
    QString changed;
    qsizetype start = 0;
    qsizetype position = 0;
    while (position < text.size()) {
        if (IsSurrogatePair(text, position)) {
            position += 2;
        } else if (!text[position].isSurrogate()) {
            ++position;
        } else {
            changed += change(text.mid(start, position - start)) + text[position];
            start = ++position;
        }
    }
    return start == 0 ? change(text) : changed + change(text.mid(start));
}

} // namespace

QString TextFromNative(QByteArrayView bytes)
{
    QString text;
    text.reserve(bytes.size());
    qsizetype wellFormedStart = 0;
    qsizetype position = 0;
    // A name may begin with U+FEFF, which the toolkit takes for a mark and leaves out otherwise.
    QStringDecoder decode(QStringDecoder::Utf8, QStringConverter::Flag::ConvertInitialBom);
    const auto flush = [&] {
        text += decode(bytes.sliced(wellFormedStart, position - wellFormedStart));
    };
    while (position < bytes.size()) {
        const qsizetype length = SequenceLength(bytes.sliced(position));
        if (length > 0) {
            position += length;
            continue;
        }
        flush();
        text += QChar(static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(bytes[position])));
        wellFormedStart = ++position;
    }
    flush();
    return text;
}

QByteArray NativeFromText(QStringView text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    qsizetype plainStart = 0;
    qsizetype position = 0;
    const auto flush = [&] { bytes += text.sliced(plainStart, position - plainStart).toUtf8(); };
    while (position < text.size()) {
        const char16_t unit = text[position].unicode();
        if (IsSurrogatePair(text, position)) {
            position += 2;
        } else if (unit >= kFirstByteAsText && unit <= kLastByteAsText) {
            flush();
            bytes += static_cast<char>(unit & 0xFF);
            plainStart = ++position;
        } else {
            ++position;
        }
    }
    flush();
    return bytes;
}

QString LowerCase(const QString& text)
{
    return ChangedBetweenLoneSurrogates(text,
                                        [](const QString& stretch) { return stretch.toLower(); });
}

QString FoldedName(const QString& name)
{
    return ChangedBetweenLoneSurrogates(
        name.normalized(QString::NormalizationForm_C),
        [](const QString& stretch) { return stretch.toCaseFolded(); });
}

} // namespace lantern
