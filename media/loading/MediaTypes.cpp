// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaTypes.h"

#include "PathHelpers.h"

#include <span>

namespace lantern {
namespace {

QString Joined(std::span<const QStringView> names, QStringView separator)
{
    QString text;
    for (const QStringView name : names) {
        if (!text.isEmpty())
            text += separator;
        text += name;
    }
    return text;
}

// The list is searched as one text, with a star around each of its extensions.
bool Lists(std::span<const QStringView> extensions, const QString& path)
{
    const auto starred = [](const QString& text) { return u'*' + text + u'*'; };
    return starred(Joined(extensions, u"*")).contains(starred(FileExtension(path)));
}

} // namespace

QString JoinedAudioExtensions(QStringView separator)
{
    return Joined(AudioExtensions, separator);
}

QString TrackTitle(const QString& path)
{
    return StripExtension(path.mid(FolderOf(path, u'/').size()));
}

bool IsAudioExtension(const QString& path)
{
    return Lists(AudioExtensions, path);
}

bool IsMediaExtension(const QString& path)
{
    return Lists(MediaExtensions, path);
}

} // namespace lantern
