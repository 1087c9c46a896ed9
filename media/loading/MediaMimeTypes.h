// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <array>

namespace lantern {

// The kinds of file that the player takes, as desktops name them. The desktop entries list the
// same.
inline constexpr std::array<QStringView, 18> kMediaMimeTypes = {
    u"video/x-cdg", u"application/zip",    u"audio/mpeg",      u"audio/x-wav",  u"audio/vnd.wave",
    u"audio/ogg",   u"audio/x-vorbis+ogg", u"audio/x-ms-wma",  u"audio/flac",   u"audio/mp4",
    u"audio/x-mod", u"audio/x-xm",         u"audio/x-it",      u"audio/x-aiff", u"audio/aac",
    u"audio/basic", u"audio/x-ape",        u"audio/x-musepack"};

} // namespace lantern
