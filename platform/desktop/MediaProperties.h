// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DesktopBus.h"
#include "MediaSession.h"

#include <QStringView>
#include <QVariant>

#include <span>

// What the object of a player has, by the text of MPRIS 2.2. What is optional there and makes no
// sense here is missing: a list of tracks, a loop, an order by chance.
namespace lantern {

inline constexpr QStringView kMediaPath = u"/org/mpris/MediaPlayer2";
inline constexpr QStringView kMediaRoot = u"org.mpris.MediaPlayer2";
// The player's own, beside what the text has.
inline constexpr QStringView kMediaStage = u"io.github.lyric_lantern.player.Stage";
inline constexpr QStringView kMediaPlayer = u"org.mpris.MediaPlayer2.Player";

struct MediaProperty {
    QStringView interface;
    QStringView name;
    QStringView type; // as the bus writes it
    bool isTold;      // by a signal when it changes
    QVariant (*get)(MediaSession& session, const MediaIdentity& identity);
    // The value has the type. None for a property that can only be read.
    MediaAnswer (*set)(MediaSession& session, const QVariant& value) = nullptr;
};

struct MediaMethod {
    QStringView interface;
    QStringView name;
    QStringView type;      // of its arguments
    QStringView arguments; // their names, with blanks between them
    MediaAnswer (*run)(MediaSession& session, const MediaIdentity& identity,
                       const QVariantList& arguments);
};

std::span<const MediaProperty> MediaProperties();
std::span<const MediaMethod> MediaMethods();

} // namespace lantern
