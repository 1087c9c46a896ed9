// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaProperties.h"

#include <QDBusObjectPath>
#include <QStringList>

#include <array>

namespace lantern {
namespace {

// Another one for each track. Whatever is no letter of a path is a line below.
QString TrackPath(int number, const MediaIdentity& identity)
{
    QString path = u'/' + identity.desktopEntry;
    for (QChar& letter : path) {
        const bool isPlain = letter.unicode() < 0x80 && letter.isLetterOrNumber();
        if (letter == u'.')
            letter = u'/';
        else if (!isPlain && letter != u'/')
            letter = u'_';
    }
    return path + QStringLiteral("/track/%1").arg(number);
}

// A text goes over the bus as UTF-8, and can't hold what is none. A zero would end it.
QString Sendable(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair)
            ++i;
        else if (text[i].isSurrogate() || text[i].isNull())
            text[i] = QChar(QChar::ReplacementCharacter);
    }
    return text;
}

QVariant StatusText(MediaSession& session, const MediaIdentity&)
{
    switch (session.State().status) {
    case MediaStatus::Playing:
        return QStringLiteral("Playing");
    case MediaStatus::Paused:
        return QStringLiteral("Paused");
    case MediaStatus::Stopped:
        break;
    }
    return QStringLiteral("Stopped");
}

QVariant Metadata(MediaSession& session, const MediaIdentity& identity)
{
    QVariantMap data;
    if (const std::optional<MediaTrack>& track = session.State().track) {
        data[QStringLiteral("mpris:trackid")] =
            QVariant::fromValue(QDBusObjectPath(TrackPath(session.TrackNumber(), identity)));
        if (track->lengthMs > 0)
            data[QStringLiteral("mpris:length")] = qlonglong{track->lengthMs} * kUsPerMs;
        data[QStringLiteral("xesam:title")] = Sendable(track->title);
        if (!track->url.isEmpty())
            data[QStringLiteral("xesam:url")] = QString::fromLatin1(track->url);
    }
    return data;
}

template <bool value>
QVariant Always(MediaSession&, const MediaIdentity&)
{
    return value;
}

template <bool MediaState::*field>
QVariant Flag(MediaSession& session, const MediaIdentity&)
{
    return session.State().*field;
}

QVariant HasTrack(MediaSession& session, const MediaIdentity&)
{
    return session.State().track.has_value();
}

MediaAnswer SetTheRate(MediaSession& session, const QVariant& value)
{
    return session.SetRate(value.toDouble());
}

template <MediaAnswer (MediaSession::*wish)()>
MediaAnswer Plain(MediaSession& session, const MediaIdentity&, const QVariantList&)
{
    return (session.*wish)();
}

MediaAnswer SetPosition(MediaSession& session, const MediaIdentity& identity,
                        const QVariantList& arguments)
{
    const QString track = arguments[0].value<QDBusObjectPath>().path();
    if (track != TrackPath(session.TrackNumber(), identity))
        return MediaAnswer::Done; // a track of before
    return session.SetPosition(session.TrackNumber(), arguments[1].toLongLong());
}

constexpr std::array kProperties = {
    MediaProperty{kMediaRoot, u"CanQuit", u"b", true, Always<true>},
    MediaProperty{kMediaRoot, u"Fullscreen", u"b", true, Flag<&MediaState::isFullScreen>,
                  [](MediaSession& session, const QVariant& value) {
                      return session.SetFullScreen(value.toBool());
                  }},
    MediaProperty{kMediaRoot, u"CanSetFullscreen", u"b", true, Always<true>},
    MediaProperty{kMediaRoot, u"CanRaise", u"b", true, Always<true>},
    MediaProperty{kMediaRoot, u"HasTrackList", u"b", true, Always<false>},
    MediaProperty{
        kMediaRoot, u"Identity", u"s", true,
        [](MediaSession&, const MediaIdentity& identity) { return QVariant(identity.title); }},
    MediaProperty{kMediaRoot, u"DesktopEntry", u"s", true,
                  [](MediaSession&, const MediaIdentity& identity) {
                      return QVariant(identity.desktopEntry);
                  }},
    MediaProperty{kMediaRoot, u"SupportedUriSchemes", u"as", true,
                  [](MediaSession&, const MediaIdentity&) {
                      return QVariant(QStringList{QStringLiteral("file")});
                  }},
    MediaProperty{
        kMediaRoot, u"SupportedMimeTypes", u"as", true,
        [](MediaSession&, const MediaIdentity& identity) { return QVariant(identity.mimeTypes); }},
    MediaProperty{kMediaPlayer, u"PlaybackStatus", u"s", true, StatusText},
    MediaProperty{
        kMediaPlayer, u"Rate", u"d", true,
        [](MediaSession& session, const MediaIdentity&) { return QVariant(session.State().rate); },
        SetTheRate},
    MediaProperty{kMediaPlayer, u"Metadata", u"a{sv}", true, Metadata},
    MediaProperty{kMediaPlayer, u"Volume", u"d", true,
                  [](MediaSession& session, const MediaIdentity&) {
                      return QVariant(session.State().volume);
                  },
                  [](MediaSession& session, const QVariant& value) {
                      return session.SetVolume(value.toDouble());
                  }},
    MediaProperty{kMediaPlayer, u"Position", u"x", false,
                  [](MediaSession& session, const MediaIdentity&) {
                      return QVariant(qlonglong{session.PositionMs()} * kUsPerMs);
                  }},
    MediaProperty{kMediaPlayer, u"MinimumRate", u"d", true,
                  [](MediaSession& session, const MediaIdentity&) {
                      return QVariant(session.Rates().minimum);
                  }},
    MediaProperty{kMediaPlayer, u"MaximumRate", u"d", true,
                  [](MediaSession& session, const MediaIdentity&) {
                      return QVariant(session.Rates().maximum);
                  }},
    MediaProperty{kMediaPlayer, u"CanGoNext", u"b", true, Flag<&MediaState::canGoNext>},
    MediaProperty{kMediaPlayer, u"CanGoPrevious", u"b", true, Flag<&MediaState::canGoPrevious>},
    MediaProperty{kMediaPlayer, u"CanPlay", u"b", true, HasTrack},
    MediaProperty{kMediaPlayer, u"CanPause", u"b", true, HasTrack},
    MediaProperty{kMediaPlayer, u"CanSeek", u"b", true, Flag<&MediaState::canSeek>},
    MediaProperty{kMediaPlayer, u"CanControl", u"b", false, Always<true>},
};

constexpr std::array kMethods = {
    MediaMethod{kMediaRoot, u"Raise", u"", u"", Plain<&MediaSession::Raise>},
    MediaMethod{kMediaRoot, u"Quit", u"", u"", Plain<&MediaSession::Quit>},
    MediaMethod{kMediaPlayer, u"Next", u"", u"", Plain<&MediaSession::Next>},
    MediaMethod{kMediaPlayer, u"Previous", u"", u"", Plain<&MediaSession::Previous>},
    MediaMethod{kMediaPlayer, u"Pause", u"", u"", Plain<&MediaSession::Pause>},
    MediaMethod{kMediaPlayer, u"PlayPause", u"", u"", Plain<&MediaSession::PlayPause>},
    MediaMethod{kMediaPlayer, u"Stop", u"", u"", Plain<&MediaSession::Stop>},
    MediaMethod{kMediaPlayer, u"Play", u"", u"", Plain<&MediaSession::Play>},
    MediaMethod{kMediaPlayer, u"Seek", u"x", u"Offset",
                [](MediaSession& session, const MediaIdentity&, const QVariantList& arguments) {
                    return session.Seek(arguments[0].toLongLong());
                }},
    MediaMethod{kMediaPlayer, u"SetPosition", u"ox", u"TrackId Position", SetPosition},
    MediaMethod{kMediaPlayer, u"OpenUri", u"s", u"Uri",
                [](MediaSession& session, const MediaIdentity&, const QVariantList& arguments) {
                    return session.OpenUri(arguments[0].toString());
                }},
    MediaMethod{kMediaStage, u"Show", u"s", u"ActivationToken",
                [](MediaSession& session, const MediaIdentity&, const QVariantList& arguments) {
                    return session.ShowStage(arguments[0].toString().toUtf8());
                }},
};

} // namespace

std::span<const MediaProperty> MediaProperties()
{
    return kProperties;
}

std::span<const MediaMethod> MediaMethods()
{
    return kMethods;
}

} // namespace lantern
