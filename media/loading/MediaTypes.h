// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <array>

// Which files the player takes. The extension alone decides, in lower case.
namespace lantern {

// The order is the order of the search for the audio beside a packet file.
inline constexpr std::array<QStringView, 14> AudioExtensions = {
    u"mp3", u"wav", u"ogg", u"wma", u"flac", u"mp4", u"mod",
    u"xm",  u"it",  u"aif", u"aac", u"au",   u"ape", u"mpc"};
inline constexpr std::array<QStringView, 3> MediaExtensions = {u"cdg", u"bin", u"zip"};

// The audio extensions with the separator between each two, as filters of file names want them.
QString JoinedAudioExtensions(QStringView separator);

// What people call the track of that path: the file's name without its extension.
QString TrackTitle(const QString& path);

bool IsAudioExtension(const QString& path);
bool IsMediaExtension(const QString& path);

} // namespace lantern
