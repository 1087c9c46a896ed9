// SPDX-License-Identifier: GPL-3.0-or-later
#include "LyricsText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lantern {
namespace {

const QString kNotice =
    QStringLiteral("Recognised from the picture by Lyric Lantern: letters and times may be wrong.");

std::int64_t MsOf(PacketIndex packet)
{
    return (std::int64_t{packet} * 1000 + kPacketsPerSecond / 2) / kPacketsPerSecond;
}

std::int64_t StartMs(const SongLine& line)
{
    return MsOf(line.words.front().start);
}

std::int64_t EndMs(const SongLine& line)
{
    return MsOf(std::max(line.words.back().end, line.words.front().start + 1));
}

QString Joined(const SongLine& line)
{
    QStringList words;
    for (const SongWord& word : line.words)
        words += word.text;
    return words.join(u' ');
}

std::vector<SongLine> SungAmong(const std::vector<SongLine>& lines)
{
    std::vector<SongLine> sung;
    std::ranges::copy_if(lines, std::back_inserter(sung), &SongLine::isSung);
    return sung.empty() ? lines : sung;
}

// As 01:02.34 with hundredths, or 00:01:02,345.
QString LrcTime(std::int64_t ms)
{
    const std::int64_t hundredths = (ms + 5) / 10;
    return QStringLiteral("%1:%2.%3")
        .arg(hundredths / 6000, 2, 10, QChar(u'0'))
        .arg(hundredths / 100 % 60, 2, 10, QChar(u'0'))
        .arg(hundredths % 100, 2, 10, QChar(u'0'));
}

QString SrtTime(std::int64_t ms)
{
    return QStringLiteral("%1:%2:%3,%4")
        .arg(ms / 3600000, 2, 10, QChar(u'0'))
        .arg(ms / 60000 % 60, 2, 10, QChar(u'0'))
        .arg(ms / 1000 % 60, 2, 10, QChar(u'0'))
        .arg(ms % 1000, 3, 10, QChar(u'0'));
}

QString Txt(const std::vector<SongLine>& lines)
{
    constexpr std::int64_t kPauseMs = 4000;
    QString text = QStringLiteral("# %1\n\n").arg(kNotice);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i > 0 && StartMs(lines[i]) - EndMs(lines[i - 1]) > kPauseMs)
            text += u'\n';
        text += Joined(lines[i]) + u'\n';
    }
    return text;
}

QString Lrc(const std::vector<SongLine>& lines)
{
    QString text = QStringLiteral("[re:%1]\n").arg(kNotice);
    for (const SongLine& line : lines) {
        text += QStringLiteral("[%1]").arg(LrcTime(StartMs(line)));
        // Words need not be sung in the order in which they stand, but players go forward only.
        PacketIndex before = 0;
        for (const SongWord& word : line.words) {
            if (&word != &line.words.front())
                text += u' ';
            if (!word.isInterpolated && word.start >= before) {
                text += QStringLiteral("<%1>").arg(LrcTime(MsOf(word.start)));
                before = word.start;
            }
            text += word.text;
        }
        text += u'\n';
    }
    return text;
}

QString Cue(int number, std::int64_t fromMs, std::int64_t toMs, const QString& text)
{
    return QStringLiteral("%1\n%2 --> %3\n%4\n\n")
        .arg(QString::number(number), SrtTime(fromMs), SrtTime(std::max(toMs, fromMs + 1)), text);
}

// A subtitle stays for a moment, but not into the next one.
QString Srt(const std::vector<SongLine>& lines)
{
    constexpr std::int64_t kNoticeMs = 2000;
    constexpr std::int64_t kStayMs = 1000;
    const std::int64_t first = lines.empty() ? kNoticeMs : StartMs(lines.front());
    QString text = Cue(1, 0, std::min(kNoticeMs, first), kNotice);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::int64_t end = EndMs(lines[i]) + kStayMs;
        if (i + 1 < lines.size())
            end = std::min(end, StartMs(lines[i + 1]));
        text += Cue(static_cast<int>(i) + 2, StartMs(lines[i]), end, Joined(lines[i]));
    }
    return text;
}

QJsonObject JsonLine(const SongLine& line)
{
    QJsonArray words;
    for (const SongWord& word : line.words) {
        words.append(
            QJsonObject{{QStringLiteral("text"), word.text},
                        {QStringLiteral("start_ms"), qint64{MsOf(word.start)}},
                        {QStringLiteral("end_ms"), qint64{MsOf(word.end)}},
                        {QStringLiteral("confidence"), std::round(word.confidence * 100) / 100},
                        {QStringLiteral("interpolated"), word.isInterpolated}});
    }
    return {{QStringLiteral("text"), Joined(line)},
            {QStringLiteral("start_ms"), qint64{StartMs(line)}},
            {QStringLiteral("end_ms"), qint64{EndMs(line)}},
            {QStringLiteral("shown_ms"), qint64{MsOf(line.shown)}},
            {QStringLiteral("gone_ms"), qint64{MsOf(line.gone)}},
            {QStringLiteral("sung"), line.isSung},
            {QStringLiteral("words"), words}};
}

QByteArray Json(const std::vector<SongLine>& lines)
{
    QJsonArray all;
    for (const SongLine& line : lines)
        all.append(JsonLine(line));
    return QJsonDocument(
               QJsonObject{{QStringLiteral("notice"), kNotice}, {QStringLiteral("lines"), all}})
        .toJson();
}

} // namespace

QByteArray LyricsText(const std::vector<SongLine>& lines, LyricsFormat format)
{
    switch (format) {
    case LyricsFormat::Txt:
        return Txt(SungAmong(lines)).toUtf8();
    case LyricsFormat::Lrc:
        return Lrc(SungAmong(lines)).toUtf8();
    case LyricsFormat::Srt:
        return Srt(SungAmong(lines)).toUtf8();
    case LyricsFormat::Json:
        break;
    }
    return Json(lines);
}

} // namespace lantern
