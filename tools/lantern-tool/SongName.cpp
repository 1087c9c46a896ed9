// SPDX-License-Identifier: GPL-3.0-or-later
#include "SongName.h"

#include <QRegularExpression>
#include <QStringList>

namespace lantern::tool {
namespace {

const QString kDash = QStringLiteral(" - ");

bool Fits(const QString& pattern, const QString& text)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text).hasMatch();
}

// The number of a disc and of a track on it; some artists look like the number of a disc alone, or
// of a track.
bool IsDiscAndTrack(const QString& text)
{
    return Fits(QStringLiteral("[A-Z]{1,8}[ -]?[0-9]{2,}[-. ][0-9]{1,2}[A-Z]?"), text);
}

bool MayBeNumber(const QString& text)
{
    return IsDiscAndTrack(text) || Fits(QStringLiteral("[A-Z]{0,8}[ -]?[0-9]{1,}[A-Z]?"), text);
}

QStringList PartsOf(const QString& trackTitle)
{
    QString text = trackTitle;
    if (!text.contains(u' '))
        text.replace(u'_', u' ');
    QStringList parts;
    for (const QString& part : text.split(kDash))
        if (const QString words = part.simplified(); !words.isEmpty())
            parts.append(words);
    return parts;
}

} // namespace

SongName SongNameFrom(const QString& trackTitle)
{
    QStringList parts = PartsOf(trackTitle);
    // Of what is left, there is an artist and a title.
    while (parts.size() > 2 && MayBeNumber(parts.first()))
        parts.removeFirst();
    if (parts.size() == 2 && IsDiscAndTrack(parts.first()))
        parts.removeFirst();
    SongName name;
    if (parts.size() > 1)
        name.artist = parts.takeFirst();
    name.title = parts.join(kDash);
    return name;
}

} // namespace lantern::tool
